// Text put together in a room of fixed size.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>

/// Fills a room of `size` bytes, 1 or more, of which it leaves the last to the caller; what goes beyond is cut.
class BoundedText
{
public:
    BoundedText(char* room, std::size_t size) : begin_(room), end_(room), last_(room + size - 1) {}

    std::string_view text() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }

    void add(std::string_view piece)
    {
        const auto room = static_cast<std::size_t>(last_ - end_);
        if (piece.size() <= room) [[likely]]
            append(piece.data(), piece.size()); // of a literal the compiler knows the size here
        else
            append(piece.data(), room);
    }

    void add(int number)
    {
        char digits[12];
        const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
        add({digits, static_cast<std::size_t>(end - digits)});
    }

    /// A query with each blank as "%20" and everything else as it is.
    void addEscaped(std::string_view query)
    {
        for (std::size_t blank = query.find(' '); blank != query.npos; blank = query.find(' ')) {
            add(query.substr(0, blank));
            add("%20");
            query.remove_prefix(blank + 1);
        }
        add(query);
    }

private:
    void append(const char* bytes, std::size_t size)
    {
        std::memcpy(end_, bytes, size);
        end_ += size;
    }

    char* begin_;
    char* end_;
    char* last_;
};
