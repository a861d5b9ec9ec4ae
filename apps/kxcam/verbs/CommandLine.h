// The command line: options of every verb, and what the chosen verb does.
#pragma once

#include <functional>
#include <optional>

#include "Console.h"
#include "Failure.h"
#include "Session.h"

namespace CLI
{
class App;
}

namespace kxcam
{

struct CommandLine
{
    Target target;
    bool json = false;
    bool verbose = false;
    std::function<ExitCode(Console&)> verb; // set by the verb that the person chose
};

/// Reads the arguments. Gives the exit code when that was all: help printed, or a complaint.
std::optional<ExitCode> parse(int argc, char** argv, CommandLine& line, Console& console);

// Each adds a verb, its options and its help. `line` outlives the parser.
void addDiscover(CLI::App& app, CommandLine& line);
void addGet(CLI::App& app, CommandLine& line);
void addSet(CLI::App& app, CommandLine& line);
void addTestSmtp(CLI::App& app, CommandLine& line);
void addInfo(CLI::App& app, CommandLine& line);
void addCapabilities(CLI::App& app, CommandLine& line);
void addReboot(CLI::App& app, CommandLine& line);
void addReset(CLI::App& app, CommandLine& line);
void addPtz(CLI::App& app, CommandLine& line);
void addUpdate(CLI::App& app, CommandLine& line);
void addUsers(CLI::App& app, CommandLine& line);
void addCard(CLI::App& app, CommandLine& line);
void addRecordings(CLI::App& app, CommandLine& line);
void addUpload(CLI::App& app, CommandLine& line);
void addDownload(CLI::App& app, CommandLine& line);
void addLive(CLI::App& app, CommandLine& line);
void addSnapshot(CLI::App& app, CommandLine& line);
void addRecord(CLI::App& app, CommandLine& line);
void addPlay(CLI::App& app, CommandLine& line);

} // namespace kxcam
