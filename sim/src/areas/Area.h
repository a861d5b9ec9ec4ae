// What a settings area of the camera is made of: its part of the camera's language, as tables.
#pragma once

#include "../Settings.h"

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
    ReadOnly,
    Hidden ///< kept, but neither told nor set by a settings query
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
};

/// A word without a value, which makes the camera do something.
struct Command
{
    std::string_view word;
    bool (*run)(Settings& settings);
};

/// A request "path?action=name".
struct Action
{
    std::string_view path;
    std::string_view name;
    std::vector<std::string> (*answer)(const Settings& settings); ///< lines of the reply's body
    std::string_view lineEnd = {};                                ///< empty: as in the camera's other replies
};

/// A path that is a request of its own.
struct Page
{
    std::string_view path;
    std::vector<std::string> (*answer)(Settings& settings, std::string_view query); ///< lines, as above
};

/// What a file means to the camera.
enum class Content
{
    Plain,
    Configuration, ///< the camera's settings, under the heading "[param]"
    Firmware       ///< installed; the version follows from a first line "firmware VERSION"
};

/// A target that takes a file.
struct Upload
{
    std::string_view target;
    std::string_view place; ///< where the file is kept; after a last '/' under its own name
    Content content = Content::Plain;
    unsigned chips = AnyChip;
};

/// A target that hands out a file.
struct Download
{
    std::string_view target; ///< its beginning
    std::string_view place;  ///< of the file; empty or with a last '/': the rest of the target completes it
    Content content = Content::Plain;
};

/// A file of a camera fresh from the factory.
struct StoredFile
{
    std::string_view path;
    std::string_view content;
};

struct Area
{
    std::span<const Setting> settings = {};
    std::span<const SetRule> setRules = {};
    std::span<const Command> commands = {};
    std::span<const Action> actions = {};
    std::span<const Page> pages = {};
    std::span<const Upload> uploads = {};
    std::span<const Download> downloads = {};
    std::span<const StoredFile> files = {};
};

/// A set rule for a value that is read back under another name.
template <const char* Key>
bool keepAs(Settings& settings, const std::string& value)
{
    return settings.keep(Key, value);
}

extern const Area networkArea;
extern const Area systemArea;
extern const Area transferArea;
extern const Area usersArea;

} // namespace kxsim
