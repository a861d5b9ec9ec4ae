#include "verbs/CommandLine.h"

#include <iostream>
#include <sstream>

#include <CLI/CLI.hpp>

#include "verbs/Verb.h"

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

void addCommonOptions(const Verb& kxcam, CommandLine& line)
{
    kxcam.option("--host", "HOST", &line.target.host, "The camera's IPv4 address or host name");
    kxcam.option("--port", "PORT", &line.target.port, "The camera's HTTP port")
        .within(1, 65535)
        .showDefault();
    kxcam.option("--user", "NAME", &line.target.user, "User name").showDefault();
    kxcam.flag("--json", &line.json, "Print one JSON object, for programs");
    kxcam.flag("--verbose", &line.verbose, "Show on standard error what the library says");
}

void addVerbs(const Verb& kxcam)
{
    addDiscover(kxcam);
    addGet(kxcam);
    addSet(kxcam);
    addTestSmtp(kxcam);
    addInfo(kxcam);
    addCapabilities(kxcam);
    addReboot(kxcam);
    addReset(kxcam);
    addPtz(kxcam);
    addUpdate(kxcam);
    addUsers(kxcam);
    addCard(kxcam);
    addRecordings(kxcam);
    addUpload(kxcam);
    addDownload(kxcam);
    addLive(kxcam);
    addSnapshot(kxcam);
    addRecord(kxcam);
    addPlay(kxcam);
}

} // namespace

std::optional<ExitCode> parse(int argc, char** argv, CommandLine& line, Console& console)
{
    CLI::App app(overview, "kxcam");
    app.fallthrough(); // options may follow the verb
    app.failure_message(complaint);
    app.footer(examples + ("\n" + exitCodeHelp()));
    const Verb kxcam(app, line);
    addCommonOptions(kxcam, line);
    app.set_version_flag("--version", "kxcam " KXCAM_VERSION);
    addVerbs(kxcam);
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
