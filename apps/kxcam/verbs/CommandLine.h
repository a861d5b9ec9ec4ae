// The command line: options of every verb, and what the chosen verb does.
#pragma once

#include <functional>
#include <optional>

#include "Console.h"
#include "Failure.h"
#include "Session.h"

namespace kxcam
{

class Verb;
struct CommandLine;

/// What a verb does.
using Work = std::function<ExitCode(const CommandLine& line, Console& console)>;

struct CommandLine
{
    Target target;
    bool json = false;
    bool verbose = false;
    Work work; // of the verb that the person chose
};

/// Reads the arguments. Gives the exit code when that was all: help printed, or a complaint.
std::optional<ExitCode> parse(int argc, char** argv, CommandLine& line, Console& console);

// Each adds a verb, its options and its help.
void addDiscover(const Verb& kxcam);
void addGet(const Verb& kxcam);
void addSet(const Verb& kxcam);
void addTestSmtp(const Verb& kxcam);
void addInfo(const Verb& kxcam);
void addCapabilities(const Verb& kxcam);
void addReboot(const Verb& kxcam);
void addReset(const Verb& kxcam);
void addPtz(const Verb& kxcam);
void addUpdate(const Verb& kxcam);
void addUsers(const Verb& kxcam);
void addCard(const Verb& kxcam);
void addRecordings(const Verb& kxcam);
void addUpload(const Verb& kxcam);
void addDownload(const Verb& kxcam);
void addLive(const Verb& kxcam);
void addSnapshot(const Verb& kxcam);
void addRecord(const Verb& kxcam);
void addPlay(const Verb& kxcam);

} // namespace kxcam
