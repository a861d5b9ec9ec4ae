#include "inirw/IniScanner.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace inirw
{
namespace
{

enum class CharClass : std::uint8_t
{
    text,
    blank,
    quote,
    comment,
    endOfLine
};

constexpr auto charClasses = [] {
    std::array<CharClass, 256> classes{};
    classes[' '] = classes['\t'] = classes['\v'] = classes['\f'] = CharClass::blank;
    classes['"'] = classes['\''] = CharClass::quote;
    classes['#'] = classes[';'] = CharClass::comment;
    classes['\r'] = classes['\n'] = classes['\0'] = CharClass::endOfLine;
    return classes;
}();

constexpr CharClass classOf(char c)
{
    return charClasses[static_cast<unsigned char>(c)];
}

constexpr bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// What is learnt about a line while its characters pass by.
class ContentScan
{
public:
    void take(const char* at)
    {
        switch (classOf(*at)) {
        case CharClass::blank:
            ++blanks_;
            break;
        case CharClass::quote:
            takeQuote(*at);
            break;
        case CharClass::comment:
            if (!openQuote_ && !comment_)
                comment_ = at - blanks_;
            break;
        default:
            if (!comment_ && !content_)
                content_ = at;
            blanks_ = 0;
        }
    }

    Line finish(const char* lineEnd, const char* nextLine) const
    {
        Line line{blankLine, {}, comment_ ? comment_ : lineEnd, lineEnd, nextLine};
        if (!content_)
            return line;

        line.kind = otherLine;
        // The blanks at the end of a comment count here too, although they are no part of the content:
        // cameras' texts are read like that, so "k=val ;note" followed by two blanks has the value "v".
        const std::ptrdiff_t length = line.commentPos - content_ - blanks_;
        if (length < 0 || length >= std::ptrdiff_t{lineBufferSize})
            return line;

        line.content = {content_, static_cast<std::size_t>(length)};
        if (line.content.starts_with('[') && line.content.ends_with(']'))
            line.kind = sectionHeader;
        else if (line.content.find('=') != std::string_view::npos)
            line.kind = keyLine;
        return line;
    }

private:
    void takeQuote(char quote)
    {
        if (!openQuote_)
            openQuote_ = quote;
        else if (openQuote_ == quote)
            openQuote_ = '\0';
    }

    const char* content_ = nullptr;
    const char* comment_ = nullptr;
    std::ptrdiff_t blanks_ = 0; // since the last text; neither quotes nor comment characters reset it
    char openQuote_ = '\0';
};

/// The start of the line after the one that ends at `lineEnd`.
const char* skipLineEnd(const char* lineEnd, const char* end)
{
    if (lineEnd == end)
        return end;
    const char* next = lineEnd + 1;
    if (*lineEnd == '\0' || next == end || classOf(*next) != CharClass::endOfLine)
        return next;
    if (*next == '\0')
        return next + 1;

    // Two of a kind are two line ends, unless the text is over after them.
    const char* afterTwo = next + 1;
    if (afterTwo != end && *afterTwo == '\0')
        return afterTwo + 1;
    return *next == *lineEnd && afterTwo != end ? next : afterTwo;
}

/// The first place from `start` on where the text is `wanted`; `end` if there is none.
const char* findText(std::string_view wanted, const char* start, const char* end)
{
    if (wanted.empty())
        return start;
    const void* hit = memmem(start, static_cast<std::size_t>(end - start), wanted.data(), wanted.size());
    return hit != nullptr ? static_cast<const char*>(hit) : end;
}

/// The name inside a header's brackets.
std::string_view sectionName(std::string_view header)
{
    return strip(header.substr(1, header.size() - 2));
}

} // namespace

Line scanLine(const char* start, const char* end)
{
    ContentScan scan;
    const char* at = start;
    for (; at != end && classOf(*at) != CharClass::endOfLine; ++at)
        scan.take(at);
    return scan.finish(at, skipLineEnd(at, end));
}

std::string_view strip(std::string_view text)
{
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    return text;
}

KeyValue splitKeyLine(std::string_view content)
{
    const std::size_t equals = content.find('=');
    return {strip(content.substr(0, equals)), strip(content.substr(equals + 1))};
}

SectionWalk::SectionWalk(std::string_view text, const char* section, std::string_view key)
    : section_(section ? section : ""), key_(key), inSection_(!section), lineStart_(text.data()),
      nextLine_(text.data()), end_(text.data() + text.size()), keyHit_(findText(key, nextLine_, end_))
{
}

bool SectionWalk::next()
{
    while (jumpToNextOfConcern()) {
        line_ = scanLine(lineStart_, end_);
        nextLine_ = line_.nextLine;
        if (line_.kind == sectionHeader && inSection_)
            return false;
        if (line_.kind == sectionHeader ? enterSection() : line_.kind == keyLine && inSection_)
            return true;
    }
    return false;
}

/// Goes on to the next line with an opening bracket, as every header has one, or, in the section, with the
/// key. A search for these two is two to four times as fast as a look at every line of a camera's reply;
/// "ini/inirw" in bench times it.
bool SectionWalk::jumpToNextOfConcern()
{
    if (inSection_ && keyHit_ < nextLine_)
        keyHit_ = findText(key_, nextLine_, end_);
    const char* hit = findText("[", nextLine_, inSection_ ? keyHit_ : end_);
    if (hit == end_)
        return false;
    while (hit != nextLine_ && classOf(hit[-1]) != CharClass::endOfLine)
        --hit;
    lineStart_ = hit;
    return true;
}

bool SectionWalk::enterSection()
{
    inSection_ = sectionName(line_.content) == section_;
    return inSection_;
}

} // namespace inirw

namespace
{

void store(const char** where, const char* what)
{
    if (where)
        *where = what;
}

} // namespace

int GetLine(const char* start, std::size_t remaining, char* out, const char** commentPos,
            const char** lineEnd, const char** nextLine)
{
    const inirw::Line line = inirw::scanLine(start, start ? start + remaining : start);
    if (out && line.content.data()) {
        line.content.copy(out, line.content.size());
        out[line.content.size()] = '\0';
    }
    store(commentPos, line.commentPos);
    store(lineEnd, line.lineEnd);
    store(nextLine, line.nextLine);
    return line.kind;
}

void StrStrip(char* text)
{
    if (!text)
        return;
    const std::string_view inner = inirw::strip(text);
    std::memmove(text, inner.data(), inner.size());
    text[inner.size()] = '\0';
}
