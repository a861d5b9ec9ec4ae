#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <locale.h>
#include <string_view>

#include "inirw/IniFile.h"
#include "inirw/IniScanner.h"
#include "inirw/inirw.h"

namespace
{

/// A text whose data is null if the caller has none.
std::string_view viewOf(const char* text)
{
    return text ? std::string_view(text) : std::string_view();
}

/// The raw value on the first line with the key; empty if there is none.
std::string_view findValue(std::string_view text, const char* section, std::string_view key)
{
    for (inirw::SectionWalk walk(text, section, key); walk.next();) {
        if (walk.line().kind != inirw::keyLine)
            continue;
        const auto [name, value] = inirw::splitKeyLine(walk.line().content);
        if (name == key)
            return value;
    }
    return {};
}

void copyCut(char* out, int size, std::string_view text)
{
    if (!out || size < 1)
        return;
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    if (length > 0)
        std::memmove(out, text.data(), length); // the default may stand in `out` itself
    out[length] = '\0';
}

int readValue(std::string_view text, const char* section, const char* key, char* out, int size,
              const char* defaultValue)
{
    const bool searchable = text.data() && key;
    const std::string_view value = searchable ? findValue(text, section, key) : std::string_view();
    if (!value.empty()) {
        copyCut(out, size, value);
        return 1;
    }
    copyCut(out, size, searchable ? viewOf(defaultValue) : std::string_view());
    return 0;
}

void removeQuotes(char* text)
{
    const std::string_view value(text);
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    if (quoted)
        copyCut(text, static_cast<int>(value.size()), value.substr(1, value.size() - 2));
}

int readString(std::string_view text, const char* section, const char* key, char* out, int size,
               const char* defaultValue)
{
    const int found = readValue(text, section, key, out, size, defaultValue);
    if (found && out && size > 0)
        removeQuotes(out);
    return found;
}

template <typename Number, typename Convert>
Number readNumber(std::string_view text, const char* section, const char* key, Number defaultValue,
                  Convert convert)
{
    char value[64];
    return readValue(text, section, key, value, sizeof value, nullptr) ? convert(value) : defaultValue;
}

int toInt(const char* value)
{
    return static_cast<int>(std::strtol(value, nullptr, 0));
}

unsigned long toUlong(const char* value)
{
    return std::strtoul(value, nullptr, 0);
}

long long toLonglong(const char* value)
{
    return std::strtoll(value, nullptr, 10);
}

double toDouble(const char* value)
{
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return cLocale ? strtod_l(value, nullptr, cLocale) : std::strtod(value, nullptr);
}

} // namespace

int iniGetValue(const char* section, const char* key, char* out, int size, const char* defaultValue)
{
    return readValue(inirw::loadedText(), section, key, out, size, defaultValue);
}

int iniGetValueFromStr(const char* text, const char* section, const char* key, char* out, int size,
                       const char* defaultValue)
{
    return readValue(viewOf(text), section, key, out, size, defaultValue);
}

int iniGetString(const char* section, const char* key, char* out, int size, const char* defaultValue)
{
    return readString(inirw::loadedText(), section, key, out, size, defaultValue);
}

int iniGetStringFromStr(const char* text, const char* section, const char* key, char* out, int size,
                        const char* defaultValue)
{
    return readString(viewOf(text), section, key, out, size, defaultValue);
}

int iniGetInt(const char* section, const char* key, int defaultValue)
{
    return readNumber(inirw::loadedText(), section, key, defaultValue, toInt);
}

int iniGetIntFromStr(const char* text, const char* section, const char* key, int defaultValue)
{
    return readNumber(viewOf(text), section, key, defaultValue, toInt);
}

unsigned long iniGetUlong(const char* section, const char* key, unsigned long defaultValue)
{
    return readNumber(inirw::loadedText(), section, key, defaultValue, toUlong);
}

unsigned long iniGetUlongFromStr(const char* text, const char* section, const char* key,
                                 unsigned long defaultValue)
{
    return readNumber(viewOf(text), section, key, defaultValue, toUlong);
}

long long iniGetLonglongFromStr(const char* text, const char* section, const char* key,
                                long long defaultValue)
{
    return readNumber(viewOf(text), section, key, defaultValue, toLonglong);
}

unsigned long long iniGetUlonglongFromStr(const char* text, const char* section, const char* key,
                                          unsigned long long defaultValue)
{
    return static_cast<unsigned long long>(
        iniGetLonglongFromStr(text, section, key, static_cast<long long>(defaultValue)));
}

double iniGetDouble(const char* section, const char* key, double defaultValue)
{
    return readNumber(inirw::loadedText(), section, key, defaultValue, toDouble);
}

double iniGetDoubleFromStr(const char* text, const char* section, const char* key, double defaultValue)
{
    return readNumber(viewOf(text), section, key, defaultValue, toDouble);
}
