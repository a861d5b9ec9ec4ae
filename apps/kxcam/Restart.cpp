#include "Restart.h"

#include <KxIpcSDK/KxSdk.h>
#include <KxIpcSDK/KxSystem.h>

#include "Interruption.h"

namespace kxcam
{
namespace
{

constexpr std::chrono::milliseconds betweenQuestions{250};

} // namespace

std::optional<std::string> askVersion(const Session& session)
{
    SystemInfo info{};
    if (Kx_Ipc_GetSystemInfo(session.userId(), &info) != 0)
        return std::nullopt;
    return info.softversion;
}

std::string versionAfterRestart(const Session& session, const std::optional<std::string>& before,
                                std::chrono::seconds patience)
{
    using Clock = std::chrono::steady_clock;
    const SignalHold signals;
    bool wasGone = false;
    for (const auto deadline = Clock::now() + patience; Clock::now() < deadline;) {
        const auto version = askVersion(session);
        if (version && (wasGone || (before && *version != *before)))
            return *version;
        if (!version && Kx_Sdk_GetLastError() == KX_ERROR_UNAUTHORISED)
            throw sdkFailure("the camera has restarted; logging in");
        wasGone = wasGone || !version;
        if (signals.pause(betweenQuestions))
            throw Interruption("no longer waiting; the camera has the file and goes on by itself");
    }
    const std::string time = std::to_string(patience.count()) + " seconds";
    if (wasGone)
        throw Failure(ExitCode::Unreachable, "the camera went to restart and is not back after " + time +
                                                 ". It may need longer, or have another address now");
    throw Failure(ExitCode::NotKept,
                  "the camera took the file, but has not restarted within " + time + ": it runs as before");
}

} // namespace kxcam
