// What the camera asks of its users beyond the settings language.
#pragma once

#include "../Settings.h"

#include <string_view>

namespace kxsim
{

/// Gives the camera its own user, an administrator that can not be deleted.
void setOwnUser(Settings& camera, std::string_view name, std::string_view password);

/// Whether the value of an Authorization header is that of one of the users.
bool isUser(const Settings& camera, std::string_view authorization);

/// Forgets that the administrator's password was proven.
void forgetProof(Settings& camera);

} // namespace kxsim
