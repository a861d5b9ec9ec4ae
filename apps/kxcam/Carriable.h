// What the language of cameras can carry.
#pragma once

#include <optional>
#include <string>

namespace kxcam
{

/// Why a text can not be sent as a value: "contains '&', which …"; nothing when it can. What the SDK encodes meets fewer
/// obstacles.
std::optional<std::string> obstacle(const std::string& text, bool encoded = false);

} // namespace kxcam
