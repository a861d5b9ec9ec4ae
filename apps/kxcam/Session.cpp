#include "Session.h"

#include <algorithm>
#include <utility>

#include <KxIpcSDK/KxIpcSDK.h>

#include "Failure.h"
#include "Reading.h"
#include "SecretInput.h"

namespace kxcam
{
namespace
{

// What the SDK keeps of a login; it would cut longer texts without a word.
constexpr std::size_t longestName = 62;

void requireLength(const std::string& text, std::size_t limit, const std::string& what)
{
    if (text.size() > limit)
        throw Failure(ExitCode::Usage, what + " is longer than " + std::to_string(limit) + " bytes");
}

std::string passwordFor(const Target& target)
{
    if (target.host.empty())
        throw Failure(ExitCode::Usage, "which camera? Give its address with --host");
    requireLength(target.host, longestName, "--host");
    requireLength(target.user, longestName, "--user");
    std::string password = loginPassword(target.user + " at " + target.address());
    requireLength(password, longestPassword, "the password");
    return password;
}

std::string doingWith(const char* what, const Area& area, const Target& target)
{
    return std::string(what) + " " + std::string(area.name) + " of " + target.address();
}

Failure nothingTold(const Area& area, const Target& target)
{
    return {ExitCode::Refused, doingWith("reading", area, target) +
                                   " failed: the answer holds none of its settings. Check that --host and "
                                   "--port are those of a camera, and that its model has this function."};
}

} // namespace

std::string Target::commandLine() const
{
    return "kxcam --host " + host + (port == Target{}.port ? "" : " --port " + std::to_string(port)) +
           (user == Target{}.user ? "" : " --user " + user);
}

Sdk::Sdk()
{
    if (Kx_Sdk_Init() != 0)
        throw Failure(ExitCode::ThisComputer, "the streaming library can not be started");
}

Sdk::~Sdk()
{
    Kx_Sdk_Destroy();
}

Session::Session(Target target) : target_(std::move(target)), password_(passwordFor(target_))
{
    login();
}

Session::~Session()
{
    Kx_Ipc_Logout(userId_);
}

void Session::login()
{
    userId_ =
        Kx_Ipc_Login("kxcam", target_.host.c_str(), target_.port, target_.user.c_str(), password_.c_str());
    if (userId_ < 0)
        throw sdkFailure("login to " + target_.address() + " as " + target_.user);
}

void Session::logInWith(const std::string& password)
{
    password_ = password;
    login();
}

void Session::get(const Area& area, Record& record)
{
    bool done = area.get(userId_, record.data()) == 0;
    if (!done && Kx_Sdk_GetLastError() == KX_ERROR_UNKNOWN_USER) {
        login();
        done = area.get(userId_, record.data()) == 0;
    }
    if (!done)
        throw sdkFailure(doingWith("reading", area, target_));
}

std::optional<Record> Session::tryRead(const Area& area)
{
    return readTold(area, [&](Record& asked) { get(area, asked); });
}

Record Session::read(const Area& area)
{
    const auto record = tryRead(area);
    if (!record)
        throw nothingTold(area, target_);
    return *record;
}

std::vector<StreamRecord> Session::readStreams(const Area& area)
{
    std::vector<StreamRecord> streams;
    for (const Stream& stream : area.streams)
        streams.push_back({&stream, tryRead(*stream.area)});
    if (std::none_of(streams.begin(), streams.end(), [](const StreamRecord& one) { return one.record; }))
        throw nothingTold(area, target_);
    return streams;
}

void Session::write(const Area& area, Record record)
{
    if (area.set(userId_, record.data()) != 0)
        throw sdkFailure(doingWith("writing", area, target_));
}

} // namespace kxcam
