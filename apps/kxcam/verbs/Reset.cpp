// kxcam reset: brings the factory's settings back.
#include <algorithm>
#include <iterator>

#include <KxIpcSDK/KxSystem.h>

#include "Terminal.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(
--keep says what survives:
  ip            the network address; users and all else go back to the factory's
  user          users and passwords; the address and all else go back
  all-defaults  nothing: everything goes back to the factory's defaults

kxcam asks on the terminal before it acts; --yes answers for scripts.

Examples:
  kxcam --host 192.168.1.20 reset --keep ip
  kxcam --host 192.168.1.20 reset --keep all-defaults --yes

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

struct Options
{
    std::string keep;
    bool yes = false;
};

struct Reset
{
    const char* keep;
    int (*run)(long userId);
    const char* loses;
};

constexpr Reset resets[] = {
    {"ip", Kx_Ipc_ResetSystemOnlyKeepIp, "all settings but its network address"},
    {"user", Kx_Ipc_ResetSystemOnlyKeepUser, "all settings but its users; it may get another address"},
    {"all-defaults", Kx_Ipc_ResetSystem, "all settings, users and passwords too; it may get another address"},
};

ExitCode reset(const Options& options, const CommandLine& line, Console& console)
{
    const auto* chosen = std::find_if(std::begin(resets), std::end(resets),
                                      [&](const Reset& candidate) { return candidate.keep == options.keep; });
    requireConsent("The camera at " + line.target.address() + " will lose " + chosen->loses + ".",
                   options.yes);
    const Session session(line.target);
    if (chosen->run(session.userId()) != 0)
        throw sdkFailure("the reset of " + line.target.address());
    console.print(line.json ? "{\"reset\": true}\n" : "reset; the camera restarts\n");
    return ExitCode::Ok;
}

} // namespace

void addReset(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb verb = kxcam.add("reset", "Bring the factory's settings back", footer).does(reset, options);
    verb.option("--keep", "WHAT", &options->keep, "What survives: ip, user or all-defaults")
        .required()
        .oneOf({"ip", "user", "all-defaults"});
    verb.flag("--yes", &options->yes, "Do not ask");
}

} // namespace kxcam
