// kxcam get AREA: prints an area's settings.
#include <memory>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "areas/Areas.h"
#include "verbs/CommandLine.h"

namespace kxcam
{
namespace
{

struct Options
{
    std::string area;
    bool json = false;
    bool showSecrets = false;
};

constexpr char footer[] = R"help(
What a camera has no answer for shows as "(not told)", in JSON as null.

Examples:
  kxcam --host 192.168.1.20 get network
  kxcam --host 192.168.1.20 get ftp --json --show-secrets

Run 'kxcam --help' for --host, --port, --user and the exit codes.)help";

void printTable(const Area& area, const Record& record, bool showSecrets, Console& console)
{
    std::vector<TableLine> lines;
    for (const Field& field : area.fields)
        if (field.isRead())
            lines.push_back({std::string(field.key), displayed(field, record.value(field), showSecrets),
                             std::string(console.isTerminal() ? field.help : "")});
    console.table(lines);
}

nlohmann::ordered_json jsonOf(const Field& field, const Value& value, bool showSecrets)
{
    if (!isTold(value))
        return nullptr;
    if (const int* number = std::get_if<int>(&value))
        return *number;
    const std::string& text = std::get<std::string>(value);
    return field.secret && !showSecrets ? masked(text) : text;
}

void printJson(const Area& area, const Record& record, bool showSecrets, Console& console)
{
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (const Field& field : area.fields)
        if (field.isRead())
            object[std::string(field.key)] = jsonOf(field, record.value(field), showSecrets);
    // A camera's text need not be UTF-8; JSON must be.
    console.print(object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
}

ExitCode get(const Options& options, const Target& target, Console& console)
{
    const Area& area = findArea(options.area);
    const Record record = Session(target).read(area);
    (options.json ? printJson : printTable)(area, record, options.showSecrets, console);
    return ExitCode::Ok;
}

} // namespace

void addGet(CLI::App& app, CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    CLI::App* verb = app.add_subcommand("get", "Show the settings of an area");
    verb->add_option("AREA", options->area, "What to show; see below")->type_name("")->required();
    verb->add_flag("--json", options->json, "Print one JSON object, for programs");
    verb->add_flag("--show-secrets", options->showSecrets, "Print passwords and keys instead of asterisks");
    verb->footer(areaHelp() + footer);
    verb->callback([options, &line] {
        line.verb = [options, &line](Console& console) { return get(*options, line.target, console); };
    });
}

} // namespace kxcam
