// What a settings area of the camera is made of: its part of the camera's language, as tables.
#pragma once

#include "../Settings.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
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
    Hidden ///< neither told nor set by a settings query
};

/// What a reset can be told to leave alone.
enum class Keep
{
    Nothing,
    Address,
    Users
};

/// A key that a get reads, with the value of a camera fresh from the factory.
struct Setting
{
    std::string_view key;
    std::string_view initial;
    Access access = Access::ReadWrite;
    unsigned chips = AnyChip;
    Keep keptWith = Keep::Nothing; ///< the resets that leave it alone, besides those of other keys
};

/// A setting that resets leave alone which keep this.
constexpr Setting kept(Keep with, Setting setting)
{
    setting.keptWith = with;
    return setting;
}

/// A key that a set writes and that is not simply kept under its own name.
struct SetRule
{
    std::string_view key;
    bool (*take)(Settings& settings, const std::string& value); ///< false: the value was not taken
    unsigned chips = AnyChip;
    std::string_view page = {}; ///< only in a query of this page; empty: in one of no page
};

/// What a query may open with, as "page=name".
struct Page
{
    std::string_view name;
    unsigned chips = AnyChip;
};

/// What a command does to the camera as a whole, once it has been answered.
enum class Effect
{
    None,
    Restart,
    Reset, ///< to how it left the factory, and restart
    ResetButAddress,
    ResetButUsers
};

/// A word without a value, which makes the camera do something.
struct Command
{
    std::string_view word;
    bool (*run)(Settings& settings);
    Effect effect = Effect::None; ///< when it has run
};

/// A word, with or without a value, that is answered with a line of its own.
struct Inquiry
{
    std::string_view word;
    std::optional<std::string> (*line)(Settings& settings, const std::string& value);
};

/// The camera's files, by path.
using Files = std::map<std::string, std::string, std::less<>>;

/// The same for what concerns the camera's files.
struct FileInquiry
{
    std::string_view word;
    std::optional<std::string> (*line)(Settings& settings, Files& files, const std::string& value);
};

/// A query's pieces "key=value", decoded.
using Parameters = std::map<std::string, std::string, std::less<>>;

/// A request "path?action=name&key=value".
struct Action
{
    std::string_view path;
    std::string_view name; ///< empty: a request "path?key=value"
    /// The lines of the reply's body.
    std::vector<std::string> (*answer)(Settings& settings, const Parameters& parameters);
};

constexpr std::string_view settingsPath = "/vb.htm";
constexpr std::string_view adminPath = "/cgi-bin/admin/admin.cgi";
constexpr std::string_view oemConfiguration = "/etc/oem.ini";

/// What a file means to the camera.
enum class Content
{
    Plain,
    Configuration, ///< the camera's settings, under the heading "[param]"
    Firmware       ///< installed; a first line "firmware VERSION" or "kernel VERSION" tells the version
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
    std::span<const Inquiry> inquiries = {};
    std::span<const Page> pages = {};
    std::span<const Upload> uploads = {};
    std::span<const Download> downloads = {};
    std::span<const StoredFile> files = {};
    std::span<const FileInquiry> fileInquiries = {};
    /// Brings settings up to date that follow from others, before each request.
    void (*refresh)(Settings& settings, const Files& files) = nullptr;
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

extern const Area audioArea;
extern const Area capabilitiesArea;
extern const Area clockArea;
extern const Area networkArea;
extern const Area osdArea;
extern const Area recordingsArea;
extern const Area storageArea;
extern const Area ptzArea;
extern const Area systemArea;
extern const Area updateArea;
extern const Area trackingArea;
extern const Area transferArea;
extern const Area usersArea;
extern const Area videoArea;

} // namespace kxsim
