#include "Carriable.h"

#include <algorithm>
#include <cctype>

namespace kxcam
{
namespace
{

/// Whether a camera would take this place of a text for an encoded character, as "%20" for a blank.
bool isEncoded(const std::string& text, std::size_t at)
{
    const auto isHex = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    return text[at] == '%' && at + 2 < text.size() && isHex(text[at + 1]) && isHex(text[at + 2]);
}

/// Why a camera would not take a text as it stands.
std::optional<std::string> misreading(const std::string& text)
{
    if (text.find('&') != std::string::npos)
        return "contains '&', which separates settings in the camera's language";
    for (std::size_t at = 0; at < text.size(); ++at)
        if (isEncoded(text, at))
            return "contains '%' and two hexadecimal digits, which the camera takes for one encoded "
                   "character";
    return std::nullopt;
}

} // namespace

std::optional<std::string> obstacle(const std::string& text, bool encoded)
{
    if (auto why = encoded ? std::nullopt : misreading(text))
        return why;
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    if (std::any_of(text.begin(), text.end(), isControl))
        return "contains a line break or another control character";
    return std::nullopt;
}

} // namespace kxcam
