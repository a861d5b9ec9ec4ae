// The camera's memory card, as far as it concerns more than its own area.
#pragma once

#include "../Settings.h"

#include <string_view>

namespace kxsim
{

constexpr std::string_view cardDirectory = "/sd/";

/// Whether the camera can get at a file: at those on the card as long as it is mounted.
bool isWithinReach(const Settings& camera, std::string_view path);

} // namespace kxsim
