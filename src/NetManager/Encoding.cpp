#include "NetManager/Encoding.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace
{

constexpr char base64Char[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The last places in get_url_encode's 1024 bytes where a character may begin.
constexpr std::size_t lastPlain = 1022;
constexpr std::size_t lastPercent = 1019;

std::uint32_t byteAt(const char* data, std::size_t index, std::size_t length)
{
    return index < length ? static_cast<unsigned char>(data[index]) : 0;
}

bool isPlain(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9');
}

/// "%2X" of the byte behind a percent sign: three characters.
std::array<char, 3> percent(char character, char leadingZero)
{
    constexpr char digits[] = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(character);
    return {'%', value < 16 ? leadingZero : digits[value / 16], digits[value % 16]};
}

} // namespace

char* base64Encode(const char* data, unsigned length)
{
    if (data == nullptr)
        return nullptr;
    const std::size_t groups = (std::size_t{length} + 2) / 3;
    char* text = static_cast<char*>(std::calloc(groups * 4 + 1, 1));
    if (text == nullptr)
        return nullptr;

    char* out = text;
    for (std::size_t i = 0; i < length; i += 3) {
        const std::uint32_t group =
            byteAt(data, i, length) << 16 | byteAt(data, i + 1, length) << 8 | byteAt(data, i + 2, length);
        *out++ = base64Char[group >> 18];
        *out++ = base64Char[group >> 12 & 63];
        *out++ = i + 1 < length ? base64Char[group >> 6 & 63] : '=';
        *out++ = i + 2 < length ? base64Char[group & 63] : '=';
    }
    return text;
}

void encodeURL(const char* source, char* destination)
{
    std::memset(destination, 0, urlBufferSize);
    const std::size_t length = std::strlen(source);
    if (length > urlBufferSize)
        return;

    constexpr std::size_t last = urlBufferSize - 1; // the terminator's place
    std::size_t used = 0;
    for (std::size_t i = 0; i < length; ++i) {
        const bool blank = source[i] == ' ';
        if (used + (blank ? 3 : 1) > last)
            return;
        if (blank)
            std::memcpy(destination + used, "%20", 3);
        else
            destination[used] = source[i];
        used += blank ? 3 : 1;
    }
}

std::string EncodeURI(const char* text)
{
    std::string encoded;
    for (; *text != '\0'; ++text) {
        if (std::strchr("!#$&'()*./:;=?@", *text) != nullptr)
            encoded += *text;
        else
            encoded.append(percent(*text, ' ').data(), 3);
    }
    return encoded;
}

void get_url_encode(const char* data, unsigned length, char* out)
{
    std::size_t used = 0;
    for (unsigned i = 0; i < length; ++i) {
        const bool plain = isPlain(data[i]);
        if (used > (plain ? lastPlain : lastPercent))
            break;
        if (plain)
            out[used] = data[i];
        else
            std::memcpy(out + used, percent(data[i], '0').data(), 3);
        used += plain ? 1 : 3;
    }
    out[used] = '\0';
}
