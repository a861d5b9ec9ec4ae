#include "NetManager/Encoding.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "NetManager/BoundedText.h"

namespace
{

constexpr char base64Char[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The last places in get_url_encode's 1024 bytes where a character may begin.
constexpr std::size_t lastPlain = 1022;
constexpr std::size_t lastPercent = 1019;

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

std::size_t encodeBase64(const char* data, std::size_t length, char* out)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    std::size_t i = 0;
    for (; i + 3 <= length; i += 3) {
        const auto group = static_cast<std::uint32_t>(bytes[i] << 16 | bytes[i + 1] << 8 | bytes[i + 2]);
        *out++ = base64Char[group >> 18];
        *out++ = base64Char[group >> 12 & 63];
        *out++ = base64Char[group >> 6 & 63];
        *out++ = base64Char[group & 63];
    }
    if (i < length) {
        const bool two = i + 1 < length;
        const auto group = static_cast<std::uint32_t>(bytes[i] << 16 | (two ? bytes[i + 1] << 8 : 0));
        *out++ = base64Char[group >> 18];
        *out++ = base64Char[group >> 12 & 63];
        *out++ = two ? base64Char[group >> 6 & 63] : '=';
        *out++ = '=';
    }
    *out = '\0';
    return base64Size(length) - 1;
}

char* base64Encode(const char* data, unsigned length)
{
    if (data == nullptr)
        return nullptr;
    char* text = static_cast<char*>(std::calloc(base64Size(length), 1));
    if (text != nullptr)
        encodeBase64(data, length, text);
    return text;
}

void encodeURL(const char* source, char* destination)
{
    std::memset(destination, 0, urlBufferSize);
    const std::string_view query(source);
    if (query.size() <= urlBufferSize)
        BoundedText(destination, urlBufferSize).addEscaped(query);
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
