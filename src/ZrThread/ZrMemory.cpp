#include "ZrThread/ZrMemory.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace
{

constexpr std::string_view whiteSpace = " \t\n\v\f\r"; // of the C locale, whatever the application has set

}

void* zr_malloc(std::size_t size)
{
    return std::calloc(1, size);
}

void zr_free(void* memory)
{
    std::free(memory);
}

char* zr_strncpy(char* dst, const char* src, int len)
{
    if (dst == nullptr || src == nullptr || len < 1)
        return dst;
    const auto size = static_cast<std::size_t>(len);
    const std::size_t kept = strnlen(src, size - 1);
    std::memcpy(dst, src, kept);
    std::memset(dst + kept, 0, size - kept);
    return dst;
}

int zr_char_trim(char* text)
{
    if (text == nullptr)
        return -1;
    const std::string_view whole = text;
    const std::size_t first = whole.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos) {
        *text = '\0';
        return -1;
    }
    const std::size_t length = whole.find_last_not_of(whiteSpace) + 1 - first;
    std::memmove(text, text + first, length);
    text[length] = '\0';
    return 0;
}
