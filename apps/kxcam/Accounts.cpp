#include "Accounts.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <KxIpcSDK/KxUsers.h>

#include "Carriable.h"
#include "Failure.h"

namespace kxcam
{
namespace
{

using Slots = std::array<UserListEntry, userSlots>;

// The SDK leaves alone what the camera does not tell: two reads over different bytes show it.
Slots readOver(std::uint8_t mark, const Session& session, const std::string& whereFrom)
{
    Slots slots{};
    for (UserListEntry& entry : slots)
        entry.authority = entry.privilege = mark;
    if (Kx_Ipc_GetAllUser(session.userId(), slots.data()) != 0)
        throw sdkFailure("reading the users of " + whereFrom);
    return slots;
}

std::optional<int> told(std::uint8_t first, std::uint8_t second)
{
    return first == second ? std::optional<int>(first) : std::nullopt;
}

// A camera that ends its lines with CR LF leaves the CR at the end of each name.
std::string nameOf(const UserListEntry& entry)
{
    std::string name = entry.name;
    if (name.ends_with('\r'))
        name.pop_back();
    return name;
}

void require(bool fits, const std::string& what, const std::string& why)
{
    if (!fits)
        throw Failure(ExitCode::Usage, what + " " + why);
}

void requireCarriable(const std::string& text, const std::string& what, std::size_t longest)
{
    require(!text.empty(), what, "is empty");
    require(text.size() <= longest, what, "is longer than " + std::to_string(longest) + " bytes");
    require(text.find(':') == std::string::npos, what,
            "contains ':', which separates name and password in the camera's language");
    if (const auto why = obstacle(text))
        require(false, what, *why);
}

} // namespace

std::vector<User> readUsers(const Session& session, const std::string& whereFrom)
{
    const Slots first = readOver(0x00, session, whereFrom);
    const Slots second = readOver(0xFF, session, whereFrom);
    std::vector<User> users;
    for (std::size_t slot = 0; slot < userSlots; ++slot) {
        const std::string name = nameOf(second[slot]);
        if (!name.empty())
            users.push_back({static_cast<int>(slot), name,
                             told(first[slot].authority, second[slot].authority),
                             told(first[slot].privilege, second[slot].privilege)});
    }
    if (users.empty())
        throw Failure(ExitCode::Refused, "reading the users of " + whereFrom +
                                             " failed: the answer names none. Check that --host and --port "
                                             "are those of a camera, and that its model has this function.");
    return users;
}

const User* findUser(const std::vector<User>& users, const std::string& name)
{
    const auto found =
        std::find_if(users.begin(), users.end(), [&name](const User& user) { return user.name == name; });
    return found == users.end() ? nullptr : &*found;
}

void requireUserName(const std::string& name)
{
    constexpr std::size_t longestName = sizeof UserAccountInfo::name - 1;
    requireCarriable(name, "the user name", longestName);
    require(name.find(' ') == std::string::npos, "the user name", "contains a blank");
    require(name.find('=') == std::string::npos, "the user name",
            "contains '=', which separates key and value in the camera's language");
}

void requireNewPassword(const std::string& password)
{
    requireCarriable(password, "the new password", longestPassword);
}

} // namespace kxcam
