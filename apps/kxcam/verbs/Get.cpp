// kxcam get AREA: prints an area's settings.
#include "Json.h"
#include "Table.h"
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
    bool showSecrets = false;
};

constexpr char footer[] = R"help(
What a camera has no answer for shows as "(not told)", in JSON as null. Areas that a camera
has once a stream (video, osd) show all streams, in JSON as an object each.

Examples:
  kxcam --host 192.168.1.20 get network
  kxcam --host 192.168.1.20 get ftp --json --show-secrets
  kxcam --host 192.168.1.20 get video --stream sub

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)help";

void printTable(const Area& area, const Record& record, bool showSecrets, Console& console)
{
    console.table(tableOf(area, record, showSecrets, console.isTerminal()));
}

void printTables(const std::vector<StreamRecord>& streams, bool showSecrets, Console& console)
{
    for (const auto& [stream, record] : streams) {
        const bool first = stream == streams.front().stream;
        console.print((first ? "" : "\n") + std::string(stream->name) + " stream" +
                      (record ? "\n" : ": (not told)\n"));
        if (record)
            printTable(*stream->area, *record, showSecrets, console);
    }
}

ExitCode getStreams(const Area& area, const Options& options, const CommandLine& line, Console& console)
{
    const auto streams = Session(line.target).readStreams(area);
    if (line.json)
        printJson(streams, options.showSecrets, console);
    else
        printTables(streams, options.showSecrets, console);
    return ExitCode::Ok;
}

ExitCode get(const Options& options, const CommandLine& line, Console& console)
{
    const Area& whole = findArea(options.area);
    if (!whole.streams.empty() && options.stream.empty())
        return getStreams(whole, options, line, console);
    const Area& area = findStream(whole, options.stream);
    const Record record = Session(line.target).read(area);
    if (line.json)
        printJson(area, record, options.showSecrets, console);
    else
        printTable(area, record, options.showSecrets, console);
    return ExitCode::Ok;
}

} // namespace

void addGet(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb verb =
        kxcam.add("get", "Show the settings of an area", areaHelp() + footer).does(get, options);
    verb.argument("AREA", &options->area, "What to show; see below").required();
    verb.option("--stream", "NAME", &options->stream, "Show only this stream: main, sub or third");
    verb.flag("--show-secrets", &options->showSecrets, "Print passwords and keys instead of asterisks");
}

} // namespace kxcam
