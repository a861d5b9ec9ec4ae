#include "NetManager/TransferReply.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "NetManager/ReplyFields.h"

namespace
{

/// One past the first blank line; npos when there is none.
std::size_t headerEnd(std::string_view reply)
{
    const std::size_t bare = reply.find("\n\n");
    const std::size_t dressed = reply.find("\r\n\r\n");
    if (bare == reply.npos && dressed == reply.npos)
        return reply.npos;
    return bare < dressed ? bare + 2 : dressed + 4;
}

} // namespace

bool holds(std::string_view reply, const char* text)
{
    // The needle and the reply are only read.
    return Kx_rStrstr(const_cast<char*>(reply.data()), static_cast<int>(reply.size()),
                      const_cast<char*>(text), 0) != nullptr;
}

std::optional<std::uint64_t> toldLength(std::string_view reply, std::uint64_t headerSize)
{
    constexpr std::string_view name = "\ncontent-length:";
    const std::size_t end = headerEnd(reply);
    if (end == reply.npos && headerSize == 0)
        return std::nullopt;
    if (end != reply.npos)
        headerSize = end;
    const std::string_view header =
        reply.substr(0, std::min(end, reply.rfind('\n') + 1)); // no line that is cut
    const auto sameLetter = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; };
    const auto found = std::search(header.begin(), header.end(), name.begin(), name.end(), sameLetter);
    if (found == header.end())
        return std::nullopt;
    const auto isBlank = [](char character) { return character == ' ' || character == '\t'; };
    const char* headerTail = header.data() + header.size();
    const char* digits = std::find_if_not(&*found + name.size(), headerTail, isBlank);
    std::uint64_t length = 0;
    if (std::from_chars(digits, headerTail, length).ec != std::errc())
        return std::nullopt;
    return headerSize + std::min(length, UINT64_MAX - headerSize);
}

bool isCutShort(std::uint64_t received, std::optional<std::uint64_t> told, ReplyEnd end)
{
    return told ? received < *told : end != ReplyEnd::Closed;
}
