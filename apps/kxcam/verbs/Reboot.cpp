// kxcam reboot: restarts the camera.
#include <KxIpcSDK/KxSystem.h>

#include "verbs/Verb.h"

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

void addReboot(const Verb& kxcam)
{
    kxcam.add("reboot", "Restart the camera", footer).does(reboot);
}

} // namespace kxcam
