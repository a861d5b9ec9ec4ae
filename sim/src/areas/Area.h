// What a settings area of the camera is made of: its part of the camera's language, as tables.
#pragma once

#include "../Settings.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kxsim
{

/// The chip families, as bits: a row names those whose cameras have it.
enum Chip : unsigned
{
    Ti = 1,
    Hisi = 2,
    ModelA = 4,
    NotTi = Hisi | ModelA,
    AnyChip = Ti | NotTi
};

enum class Access
{
    ReadWrite,
    ReadOnly
};

/// A key that a get reads, with the value of a camera fresh from the factory.
struct Setting
{
    std::string_view key;
    std::string_view initial;
    Access access = Access::ReadWrite;
    unsigned chips = AnyChip;
};

/// A key that a set writes and that is not simply kept under its own name.
struct SetRule
{
    std::string_view key;
    bool (*take)(Settings& settings, const std::string& value); ///< false: the value was not taken
    unsigned chips = AnyChip;
    std::string_view page = {}; ///< only in a query of this page; empty: in one of no page
};

/// What a query may open with, as "page=name".
struct QueryPage
{
    std::string_view name;
    unsigned chips = AnyChip;
};

/// A word without a value, which makes the camera do something.
struct Command
{
    std::string_view word;
    bool (*run)(Settings& settings);
};

/// What follows the name of an action: "key=value", decoded.
using Parameters = std::map<std::string, std::string, std::less<>>;

/// A request "path?action=name".
struct Action
{
    std::string_view path;
    std::string_view name;
    std::vector<std::string> (*answer)(Settings& settings,
                                       const Parameters& parameters); ///< the body's lines
};

struct Area
{
    std::span<const Setting> settings;
    std::span<const SetRule> setRules = {};
    std::span<const Command> commands = {};
    std::span<const Action> actions = {};
    std::span<const QueryPage> pages = {};
};

/// A key as a template's argument: keepAs<"wifissid">.
struct KeyName
{
    template <std::size_t Size>
    constexpr KeyName(const char (&key)[Size]) // implicit: that is its use
    {
        std::copy_n(key, Size, text);
    }

    char text[48] = {};
};

/// A set rule for a value that is read back under another name.
template <KeyName Key>
bool keepAs(Settings& settings, const std::string& value)
{
    return settings.keep(Key.text, value);
}

constexpr std::string_view adminPath = "/cgi-bin/admin/admin.cgi";

/// The line "key = 'value';" of an administrative reply.
inline std::string quoted(std::string_view key, std::string_view value)
{
    return std::string(key) + " = '" + std::string(value) + "';";
}

extern const Area audioArea;
extern const Area networkArea;
extern const Area osdArea;
extern const Area systemArea;
extern const Area videoArea;

} // namespace kxsim
