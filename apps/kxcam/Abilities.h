// What a camera can do, as answers of yes and no.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace kxcam
{

struct Ability
{
    std::string_view key;
    std::string_view name;
    std::optional<bool> has; // nothing: the camera does not tell
};

/// All abilities that the SDK knows questions for.
std::vector<Ability> askAbilities(long userId);

} // namespace kxcam
