// What the camera asks of its users beyond the settings language.
#pragma once

#include "../Settings.h"

#include <string>
#include <string_view>
#include <vector>

namespace kxsim
{

struct Credentials
{
    std::string name;
    std::string password;

    bool operator==(const Credentials&) const = default;
};

/// Gives the camera its own user, an administrator that can not be deleted.
void setOwnUser(Settings& camera, std::string_view name, std::string_view password);

std::vector<Credentials> usersOf(const Settings& camera);

/// Whether the value of an Authorization header is that of one of the users.
bool isUser(const Settings& camera, std::string_view authorization);

/// Forgets that the administrator's password was proven.
void forgetProof(Settings& camera);

} // namespace kxsim
