// INI text line by line: what kind of line it is, and which part of it has a meaning.
#pragma once

#include <cstddef>
#include <string_view>

namespace inirw
{

inline constexpr std::size_t lineBufferSize = 10240;

enum LineKind
{
    otherLine = 1,
    blankLine = 2,
    sectionHeader = 3,
    keyLine = 4
};

/// One line; everything points into the scanned text.
///
/// `content` is the meaningful part. It is null for a blank line, and for a part that is too long for the
/// line buffer or comes out with a negative length, because more blanks are taken off it than it has
/// characters. `commentPos` is the position of the comment less the blanks counted before it. Quotes and
/// comment characters don't interrupt that count, so it can lie inside quotes. Without a comment it is
/// `lineEnd`.
struct Line
{
    LineKind kind = blankLine;
    std::string_view content;
    const char* commentPos = nullptr;
    const char* lineEnd = nullptr; // the first byte of the line's end
    const char* nextLine = nullptr;
};

/// Reads the line at `start` of a text that ends before `end`.
Line scanLine(const char* start, const char* end);

/// The text without the white space at either end. The locale has no say in what is white space.
std::string_view strip(std::string_view text);

/// A key line's content, split at its first `=` and stripped.
struct KeyValue
{
    std::string_view key;
    std::string_view value;
};
KeyValue splitKeyLine(std::string_view content);

/// Walks the header and the key lines of one section; with a null section, the key lines before any header.
/// It passes over key lines in which neither `key` nor an opening bracket occurs; one that it stops at need
/// not have that key. An empty key occurs in all.
class SectionWalk
{
public:
    SectionWalk(std::string_view text, const char* section, std::string_view key = {});

    /// Goes on to the section's header or its next key line; false when the section has ended.
    bool next();

    const char* lineStart() const { return lineStart_; }
    const Line& line() const { return line_; }

private:
    bool jumpToNextOfConcern();
    bool enterSection();

    std::string_view section_;
    std::string_view key_;
    bool inSection_;
    Line line_;
    const char* lineStart_;
    const char* nextLine_;
    const char* end_;
    const char* keyHit_; // the first place behind the lines walked where the key may stand
};

} // namespace inirw

extern "C" {

/// Reads one line of at most `remaining` bytes and copies its meaningful part into `out`, of 10240 bytes.
///
/// `*commentPos` becomes the position of the comment less the blanks counted before it, which can lie inside
/// quotes (without a comment: `*lineEnd`), `*lineEnd` the first byte of the line's end, `*nextLine` the first
/// byte behind it. `out` is left untouched for a blank line and for a part too long or of negative length
/// (see inirw::Line). Any pointer may be null; a null text is an empty one.
/// Returns 1 (other line), 2 (blank or comment only), 3 (section header) or 4 (key line).
int GetLine(const char* start, std::size_t remaining, char* out, const char** commentPos,
            const char** lineEnd, const char** nextLine);

/// Removes trailing and leading white space from `text` in place. A null text is left alone.
void StrStrip(char* text);
}
