#include "verbs/CommandLine.h"

#include <iostream>
#include <sstream>

#include <CLI/CLI.hpp>

namespace kxcam
{
namespace
{

constexpr char overview[] = "Manages a network camera from the command line.";

constexpr char examples[] = R"(Examples:
  kxcam discover
  export KXCAM_PASSWORD=...
  kxcam --host 192.168.1.20 get network
  kxcam --host 192.168.1.20 set ftp ftpip=192.168.1.5 ftppassword=-
  kxcam --host 192.168.1.20 --port 8080 --user operator get ports --json

The password comes from the environment variable KXCAM_PASSWORD or, on a terminal,
from a prompt. Options may stand before or after the subcommand.
)";

std::string complaint(const CLI::App* app, const CLI::Error& error)
{
    std::string words = app->get_name();
    while (!app->get_subcommands().empty()) {
        app = app->get_subcommands().front();
        words += " " + app->get_name();
    }
    const std::string help = "\nRun '" + words + " --help' for more.\n";
    const auto verbs = app->get_subcommands({});
    if (verbs.empty())
        return "kxcam: " + std::string(error.what()) + help;
    std::string text = "kxcam: what is to be done? Give one of:";
    for (const CLI::App* verb : verbs)
        text += " " + verb->get_name();
    return text + help;
}

void addCommonOptions(CLI::App& app, CommandLine& line)
{
    app.add_option("--host", line.target.host, "The camera's IPv4 address or host name")->type_name("HOST");
    app.add_option("--port", line.target.port, "The camera's HTTP port")
        ->type_name("PORT")
        ->check(CLI::Range(1, 65535).description(""))
        ->capture_default_str();
    app.add_option("--user", line.target.user, "User name")->type_name("NAME")->capture_default_str();
    app.add_flag("--json", line.json, "Print one JSON object, for programs");
    app.add_flag("--verbose", line.verbose, "Show on standard error what the library says");
    app.set_version_flag("--version", "kxcam " KXCAM_VERSION);
}

} // namespace

std::optional<ExitCode> parse(int argc, char** argv, CommandLine& line, Console& console)
{
    CLI::App app(overview, "kxcam");
    app.fallthrough(); // options may follow the verb
    app.require_subcommand(1);
    app.failure_message(complaint);
    app.footer(examples + ("\n" + exitCodeHelp()));
    addCommonOptions(app, line);
    addDiscover(app, line);
    addGet(app, line);
    addSet(app, line);
    addTestSmtp(app, line);
    addInfo(app, line);
    addCapabilities(app, line);
    addReboot(app, line);
    addReset(app, line);
    addPtz(app, line);
    addUpdate(app, line);
    addUsers(app, line);
    addCard(app, line);
    addRecordings(app, line);
    addUpload(app, line);
    addDownload(app, line);
    addLive(app, line);
    addSnapshot(app, line);
    addRecord(app, line);
    addPlay(app, line);
    try {
        app.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        const bool done = app.exit(error, out, std::cerr) == 0;
        console.print(out.str());
        return done ? ExitCode::Ok : ExitCode::Usage;
    }
}

} // namespace kxcam
