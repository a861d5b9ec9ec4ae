#include "Core/PrintText.h"

std::size_t printTextAsFormat(char* out, std::size_t size, const char* text)
{
    if (!out || size == 0)
        return 0;

    std::size_t stored = 0;
    for (; text && *text && stored + 1 < size; ++text) {
        if (text[0] == '%' && text[1] == '%')
            ++text;
        out[stored++] = *text;
    }
    out[stored] = '\0';
    return stored;
}
