// kxcam get AREA: prints an area's settings.
#include <memory>

#include <CLI/CLI.hpp>

#include "Json.h"
#include "Table.h"
#include "areas/Areas.h"
#include "verbs/CommandLine.h"

namespace kxcam
{
namespace
{

struct Options
{
    std::string area;
    bool showSecrets = false;
};

constexpr char footer[] = R"help(
What a camera has no answer for shows as "(not told)", in JSON as null.

Examples:
  kxcam --host 192.168.1.20 get network
  kxcam --host 192.168.1.20 get ftp --json --show-secrets

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)help";

ExitCode get(const Options& options, const CommandLine& line, Console& console)
{
    const Area& area = findArea(options.area);
    const Record record = Session(line.target).read(area);
    if (line.json)
        printJson(area, record, options.showSecrets, console);
    else
        console.table(tableOf(area, record, options.showSecrets, console.isTerminal()));
    return ExitCode::Ok;
}

} // namespace

void addGet(CLI::App& app, CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    CLI::App* verb = app.add_subcommand("get", "Show the settings of an area");
    verb->add_option("AREA", options->area, "What to show; see below")->type_name("")->required();
    verb->add_flag("--show-secrets", options->showSecrets, "Print passwords and keys instead of asterisks");
    verb->footer(areaHelp() + footer);
    verb->callback([options, &line] {
        line.verb = [options, &line](Console& console) { return get(*options, line, console); };
    });
}

} // namespace kxcam
