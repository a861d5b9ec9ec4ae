// kxcam test-smtp: has the camera send a test mail.
#include <KxIpcSDK/KxNetwork.h>

#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(The mail goes out with the settings that `kxcam get smtp` shows.

Example:
  kxcam --host 192.168.1.20 test-smtp

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

ExitCode testSmtp(const CommandLine& line, Console& console)
{
    Session session(line.target);
    switch (Kx_Ipc_TestSMTP(session.userId())) {
    case 0:
        console.print(line.json ? "{\"sent\": true}\n" : "sent\n");
        return ExitCode::Ok;
    case 1:
        throw Failure(ExitCode::Refused, "the camera could not send the test mail; check `kxcam get smtp`");
    default:
        throw sdkFailure("the test mail of " + line.target.address());
    }
}

} // namespace

void addTestSmtp(const Verb& kxcam)
{
    kxcam.add("test-smtp", "Have the camera send a test mail", footer).does(testSmtp);
}

} // namespace kxcam
