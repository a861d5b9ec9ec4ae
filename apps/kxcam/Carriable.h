// What the language of cameras can carry.
#pragma once

#include <optional>
#include <string>

namespace kxcam
{

/// Why a text can not be sent as a value: "contains '&', which …"; nothing when it can.
std::optional<std::string> obstacle(const std::string& text);

} // namespace kxcam
