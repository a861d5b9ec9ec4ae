#include "Session.h"

#include <utility>

#include <KxIpcSDK/KxIpcSDK.h>

#include "Failure.h"
#include "SecretInput.h"

namespace kxcam
{
namespace
{

// What the SDK keeps of a login; it would cut longer texts without a word.
constexpr std::size_t longestName = 62;
constexpr std::size_t longestPassword = 30;

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

// A camera that ends its lines with CR LF leaves the CR at the end of each text.
void dropLineEnds(const Area& area, Record& record)
{
    for (const Field& field : area.fields) {
        Value value = record.value(field);
        auto* text = std::get_if<std::string>(&value);
        if (text == nullptr || !text->ends_with('\r'))
            continue;
        text->pop_back();
        record.setValue(field, value);
    }
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

Record Session::read(const Area& area)
{
    Record record(area);
    bool done = area.get(userId_, record.data()) == 0;
    if (!done && Kx_Sdk_GetLastError() == KX_ERROR_UNKNOWN_USER) {
        login();
        done = area.get(userId_, record.data()) == 0;
    }
    if (!done)
        throw sdkFailure("reading " + std::string(area.name) + " of " + target_.address());
    dropLineEnds(area, record);
    return record;
}

void Session::write(const Area& area, Record record)
{
    if (area.set(userId_, record.data()) != 0)
        throw sdkFailure("writing " + std::string(area.name) + " of " + target_.address());
}

} // namespace kxcam
