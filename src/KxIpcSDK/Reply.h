// A camera's reply to a get, and the verbs that read it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

/// Lines "OK key=value". A style finds a key's value and copies it, cut to the room it is given.
struct OkStyle
{
    /// False, with `value` untouched, when the key is absent.
    static bool find(const char* reply, const char* key, char* value, std::size_t size);
};

/// Lines "key=value", found wherever in the reply the text "key=" stands, a longer key's end included.
struct PlainStyle
{
    static bool find(const char* reply, const char* key, char* value, std::size_t size);
};

/// The same for lines that end with CR LF: a line feed alone does not end a value.
struct CrLfStyle
{
    static bool find(const char* reply, const char* key, char* value, std::size_t size);
};

/// Lines "key = 'value';". A value ends at the last quote before the semicolon.
struct QuotedStyle
{
    static bool find(const char* reply, const char* key, char* value, std::size_t size);
};

/// The raw reply, status line and headers included. False when the request failed or the reply is empty. A number is
/// read through a text of NumberSize bytes.
template <typename Style, std::size_t Size = 1024, std::size_t NumberSize = Size>
class Reply
{
public:
    static constexpr std::size_t size = Size;

    explicit operator bool() const { return received_ && raw_[0] != '\0'; }

    /// Whether the request succeeded, be the reply empty or not.
    bool received() const { return received_; }

    /// Reads a text, cut to its field. A key that is absent leaves the field as it is and gives false.
    template <std::size_t FieldSize>
    bool text(const char* key, char (&field)[FieldSize]) const
    {
        return text<FieldSize - 1>(key, field);
    }

    /// The same, cut to Longest characters, fewer than the field could hold.
    template <std::size_t Longest, std::size_t FieldSize>
    bool text(const char* key, char (&field)[FieldSize]) const
    {
        static_assert(Longest < FieldSize);
        return Style::find(raw_, key, field, Longest + 1);
    }

    /// The same for a room of the application's, of at least one byte.
    bool text(const char* key, char* room, std::size_t roomSize) const
    {
        return Style::find(raw_, key, room, std::min(roomSize, Size));
    }

    /// Reads a decimal number into a field of any integer type, keeping the bits that fit. A key that is absent
    /// leaves the field as it is and gives false.
    template <typename Number>
    bool number(const char* key, Number& field) const
    {
        char value[NumberSize];
        if (!Style::find(raw_, key, value, sizeof value))
            return false;
        field = static_cast<Number>(std::strtol(value, nullptr, 10));
        return true;
    }

    /// Whether the request succeeded and its reply has this text in it.
    bool contains(const char* text) const { return received_ && std::strstr(raw_, text) != nullptr; }

    /// The reply as it came, terminated; also what a failed request left of it.
    const char* raw() const { return raw_; }

private:
    friend class CameraCall;

    char raw_[Size] = {};
    bool received_ = false;
};

using OkReply = Reply<OkStyle>;

/// What a camera says to a command: little.
using CommandReply = Reply<OkStyle, 256>;
