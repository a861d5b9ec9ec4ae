// kxcam set AREA key=value...: changes settings and shows what became of them.
//
// A set of the SDK sends a whole record, so kxcam reads the record, applies what was given, writes it, and
// reads it back: a camera says "OK" to much that it does not keep.
#include "Assignment.h"
#include "Json.h"
#include "areas/Areas.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

struct Options
{
    std::string area;
    std::string stream;
    std::vector<std::string> assignments;
};

constexpr char footer[] = R"(
Without assignments, the keys of the area are listed.

A secret as an argument shows in the list of processes. Give '-' for its value, and
kxcam asks for it on the terminal, or reads a line of standard input when that is a
file or a pipe.

Examples:
  kxcam set ftp
  kxcam --host 192.168.1.20 set ftp ftpip=192.168.1.5 ftppassword=-
  kxcam --host 192.168.1.20 set smtp smtpip=mail.example.com smtpport=587 smtpauth=1
  kxcam --host 192.168.1.20 set video --stream sub framerate=10 bitrate=512

With --json, all settings of the area are printed as they are afterwards.

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

void printKeys(const Area& area, Console& console)
{
    std::vector<TableLine> lines;
    for (const Field& field : area.fields)
        lines.push_back({std::string(field.key), accepted(field), std::string(field.help)});
    console.print("Keys of " + std::string(area.name) + ":\n");
    console.table(lines);
}

Record applied(Record record, const Assignments& assignments)
{
    for (const Assignment& assignment : assignments)
        record.setValue(*assignment.field, assignment.value);
    return record;
}

/// What became of a field; empty when there is nothing to tell. Without an assignment, a change is the
/// camera's own.
std::string outcome(const Field& field, const Value& before, const Value& after, const Assignment* assignment)
{
    if (!isTold(after))
        return assignment != nullptr ? displayed(field, assignment->value, false) + " (sent)" : "";
    if (field.running && assignment == nullptr)
        return "";
    const std::string now = displayed(field, after, false);
    if (before != after)
        return displayed(field, before, false) + " -> " + now +
               (assignment != nullptr ? "" : " (by the camera)");
    return assignment != nullptr ? now + " (as before)" : "";
}

void printOutcome(const Area& area, const Record& before, const Record& after, const Assignments& assignments,
                  Console& console)
{
    std::vector<TableLine> lines;
    for (const Field& field : area.fields) {
        const std::string text =
            outcome(field, before.value(field), after.value(field), findAssignment(assignments, field));
        if (!text.empty())
            lines.push_back({std::string(field.key), text, ""});
    }
    console.table(lines);
}

std::string notKept(const Field& field, const Value& given, const Value& kept)
{
    const std::string text = "the camera did not keep the new " + std::string(field.key);
    if (field.secret)
        return text;
    return text + ": given " + displayed(field, given, false) + ", it has " + displayed(field, kept, false);
}

ExitCode judge(const Area& area, const Record& wanted, const Record& after, const Assignments& assignments)
{
    const bool wentOn = area.quirks.wentOn && area.quirks.wentOn(wanted.data(), after.data());
    ExitCode code = ExitCode::Ok;
    for (const auto& [field, given] : assignments) {
        const Value kept = after.value(*field);
        const bool unseen = !isTold(kept) && !field->someModels; // so nothing can be said of it
        if (unseen || kept == given || (field->running && wentOn))
            continue;
        code = ExitCode::NotKept;
        remark(notKept(*field, given, kept));
    }
    if (code != ExitCode::Ok && !area.quirks.whenNotKept.empty())
        remark(area.quirks.whenNotKept);
    return code;
}

/// Where the camera has gone with these settings; empty when it still answers where it was asked.
std::string movedTo(const Area& area, const Record& before, const Record& wanted, const Target& target)
{
    return area.quirks.moved ? area.quirks.moved(before.data(), wanted.data(), target) : "";
}

/// What became of the settings: for programs all of them, for people those that were to change.
void report(const Area& area, const Record& before, const Record& after, const Assignments& assignments,
            bool json, Console& console)
{
    if (json)
        printJson(area, after, false, console);
    else
        printOutcome(area, before, after, assignments, console);
}

ExitCode change(const Area& area, const Assignments& assignments, const CommandLine& line, Console& console)
{
    Session session(line.target);
    const Record before = session.read(area);
    const Record wanted = applied(before, assignments);
    requireTold(area, wanted);
    requireCarriable(area, wanted);
    if (!area.quirks.whySlow.empty())
        remark(area.quirks.whySlow);
    session.write(area, wanted);

    const std::string whereNow = movedTo(area, before, wanted, line.target);
    if (!whereNow.empty()) {
        report(area, before, wanted, assignments, line.json, console);
        remark("sent, but not read back. " + whereNow);
        return ExitCode::Ok;
    }
    const Record after = session.read(area);
    report(area, before, after, assignments, line.json, console);
    return judge(area, wanted, after, assignments);
}

ExitCode set(const Options& options, const CommandLine& line, Console& console)
{
    const Area& whole = findArea(options.area);
    if (!options.assignments.empty()) {
        const Area& area = findStream(whole, options.stream);
        return change(area, parseAssignments(area, options.assignments), line, console);
    }
    if (whole.streams.empty() || !options.stream.empty()) {
        printKeys(findStream(whole, options.stream), console);
        return ExitCode::Ok;
    }
    for (const Stream& stream : whole.streams)
        printKeys(*stream.area, console);
    return ExitCode::Ok;
}

} // namespace

void addSet(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb verb = kxcam.add("set", "Change settings of an area, or list its keys", areaHelp() + footer)
                          .does(set, options);
    verb.argument("AREA", &options->area, "What to change; see below").required();
    verb.argument("ASSIGNMENTS", &options->assignments, "key=value, one or more");
    verb.option("--stream", "NAME", &options->stream, "Which stream, for video and osd: main, sub or third");
}

} // namespace kxcam
