// The values that a camera keeps, by key.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kxsim
{

/// What a reply says of a setting.
using LineStyle = std::string (*)(std::string_view key, std::string_view value);

std::string plain(std::string_view key, std::string_view value);  ///< "key=value"
std::string quoted(std::string_view key, std::string_view value); ///< "key = 'value';"

class Settings
{
public:
    /// The value of a key, or nothing when the camera lacks the key.
    std::optional<std::string> find(std::string_view key) const;
    /// The same, with an empty text for a missing key.
    std::string text(std::string_view key) const { return find(key).value_or(""); }

    /// Gives the camera this key, if need be.
    void put(std::string_view key, std::string_view value);
    void remove(std::string_view key);
    /// Changes the value of a key that the camera has; false when it lacks the key.
    bool keep(std::string_view key, std::string_view value);

    /// A line of a reply for each of these keys that the camera has.
    std::vector<std::string> lines(std::span<const std::string_view> keys, LineStyle line = plain) const;
    const auto& all() const { return values_; }

private:
    std::map<std::string, std::string, std::less<>> values_;
};

} // namespace kxsim
