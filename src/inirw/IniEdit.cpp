#include <cstdio>
#include <initializer_list>
#include <string_view>

#include "inirw/IniFile.h"
#include "inirw/IniScanner.h"
#include "inirw/inirw.h"

namespace
{

/// Where an edit takes place in the loaded text.
struct EditPlace
{
    const char* sectionEnd = nullptr; // behind the section's last header or key line; null: no such section
    const char* keyStart = nullptr;   // the line of the key; null: no such key
    inirw::Line keyLine;
};

EditPlace findPlace(const char* section, std::string_view key)
{
    EditPlace place;
    for (inirw::SectionWalk walk(inirw::loadedText(), section); !place.keyStart && walk.next();) {
        place.sectionEnd = walk.line().nextLine;
        if (walk.line().kind == inirw::keyLine && inirw::splitKeyLine(walk.line().content).key == key) {
            place.keyStart = walk.lineStart();
            place.keyLine = walk.line();
        }
    }
    return place;
}

/// Writes the pieces to the loaded file, opened in `mode`; false unless every byte got there.
bool writeFile(const char* mode, std::initializer_list<std::string_view> pieces)
{
    std::FILE* file = std::fopen(gFilename, mode);
    if (!file)
        return false;
    bool written = true;
    for (const std::string_view piece : pieces)
        written = std::fwrite(piece.data(), 1, piece.size(), file) == piece.size() && written;
    return std::fclose(file) == 0 && written;
}

std::string_view before(const char* position)
{
    return {gBuffer.get(), static_cast<std::size_t>(position - gBuffer.get())};
}

std::string_view from(const char* position)
{
    return inirw::loadedText().substr(before(position).size());
}

bool appendSection(std::string_view section, std::string_view key, std::string_view value)
{
    return writeFile("ab", {"\n[", section, "]\n", key, " = ", value, "\n"});
}

bool deleteKey(const EditPlace& place)
{
    return writeFile("wb", {before(place.keyStart), from(place.keyLine.nextLine)});
}

bool replaceKey(const EditPlace& place, std::string_view key, std::string_view value)
{
    return writeFile("wb", {before(place.keyStart), key, " = ", value, from(place.keyLine.commentPos)});
}

bool addKey(const EditPlace& place, std::string_view key, std::string_view value)
{
    const std::string_view head = before(place.sectionEnd);
    // The file's last line may lack its end; the new key must not grow onto it.
    const bool open = !head.ends_with('\n') && !head.ends_with('\r') && !head.ends_with('\0');
    return writeFile("wb", {head, open ? "\n" : "", key, " = ", value, "\n", from(place.sectionEnd)});
}

bool edit(const char* section, const char* key, const char* value)
{
    const EditPlace place = findPlace(section, key);
    if (!value)
        return place.keyStart && deleteKey(place);
    if (place.keyStart)
        return replaceKey(place, key, value);
    if (place.sectionEnd)
        return addKey(place, key, value);
    return section && appendSection(section, key, value);
}

} // namespace

int iniSetString(const char* section, const char* key, const char* value)
{
    if (!gBuffer || !key || !edit(section, key, value))
        return 0;
    iniFileLoad(gFilename);
    return 1;
}

int iniSetInt(const char* section, const char* key, int value, int base)
{
    char text[64];
    if (base == 16)
        std::snprintf(text, sizeof text, "0x%x", static_cast<unsigned>(value));
    else if (base == 8)
        std::snprintf(text, sizeof text, "0%o", static_cast<unsigned>(value));
    else
        std::snprintf(text, sizeof text, "%d", value);
    return iniSetString(section, key, text);
}
