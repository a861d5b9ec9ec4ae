#include "Settings.h"

namespace kxsim
{

std::string plain(std::string_view key, std::string_view value)
{
    return std::string(key).append("=").append(value);
}

std::string quoted(std::string_view key, std::string_view value)
{
    return std::string(key).append(" = '").append(value).append("';");
}

std::optional<std::string> Settings::find(std::string_view key) const
{
    const auto found = values_.find(key);
    if (found == values_.end())
        return std::nullopt;
    return found->second;
}

void Settings::put(std::string_view key, std::string_view value)
{
    values_.insert_or_assign(std::string(key), std::string(value));
}

void Settings::remove(std::string_view key)
{
    const auto found = values_.find(key);
    if (found != values_.end())
        values_.erase(found);
}

bool Settings::keep(std::string_view key, std::string_view value)
{
    const auto found = values_.find(key);
    if (found == values_.end())
        return false;
    found->second = value;
    return true;
}

std::vector<std::string> Settings::lines(std::span<const std::string_view> keys, LineStyle line) const
{
    std::vector<std::string> lines;
    for (const std::string_view key : keys)
        if (const auto value = find(key))
            lines.push_back(line(key, *value));
    return lines;
}

} // namespace kxsim
