// kxcam reboot: restarts the camera.
#include <CLI/CLI.hpp>

#include <KxIpcSDK/KxSystem.h>

#include "verbs/CommandLine.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(The camera is out of reach until it has started again.

Example:
  kxcam --host 192.168.1.20 reboot

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

ExitCode reboot(const CommandLine& line, Console& console)
{
    const Session session(line.target);
    if (Kx_Ipc_RebootSystem(session.userId()) != 0)
        throw sdkFailure("the restart of " + line.target.address());
    console.print(line.json ? "{\"restarting\": true}\n" : "restarting\n");
    return ExitCode::Ok;
}

} // namespace

void addReboot(CLI::App& app, CommandLine& line)
{
    CLI::App* verb = app.add_subcommand("reboot", "Restart the camera");
    verb->footer(footer);
    verb->callback([&line] { line.verb = [&line](Console& console) { return reboot(line, console); }; });
}

} // namespace kxcam
