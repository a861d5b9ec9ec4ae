// The users of a camera, and what names and passwords its language can carry.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Session.h"

namespace kxcam
{

struct User
{
    int slot;
    std::string name;
    std::optional<int> authority; // nothing when the camera does not tell it
    std::optional<int> privilege;
};

inline constexpr std::size_t userSlots = 10;

/// The users in the camera's slots.
std::vector<User> readUsers(const Session& session, const std::string& whereFrom);

/// The user of this name, or null.
const User* findUser(const std::vector<User>& users, const std::string& name);

/// Each throws a Failure of usage that says what is wrong.
void requireUserName(const std::string& name);
void requireNewPassword(const std::string& password);

} // namespace kxcam
