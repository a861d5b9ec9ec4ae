#include "inirw/IniFile.h"

#include <cstdio>
#include <cstring>
#include <limits>
#include <new>

#include "Core/PrintText.h"
#include "inirw/inirw.h"

std::unique_ptr<char[]> gBuffer;
std::int32_t gBuflen = 0;
char gFilename[256] = "";

namespace
{

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

/// The length of the file, or -1; the position is at the beginning afterwards.
long measure(std::FILE* file)
{
    if (std::fseek(file, 0, SEEK_END) != 0)
        return -1;
    const long size = std::ftell(file);
    return std::fseek(file, 0, SEEK_SET) == 0 ? size : -1;
}

/// Makes a zero-filled buffer, unless its length could not be counted in 32 bits.
bool allocateBuffer(std::size_t size)
{
    if (size > std::numeric_limits<std::int32_t>::max())
        return false;
    gBuffer.reset(new (std::nothrow) char[size]());
    return gBuffer != nullptr;
}

} // namespace

std::string_view inirw::loadedText()
{
    return {gBuffer.get(), static_cast<std::size_t>(gBuflen)};
}

int iniFileLoad(const char* path)
{
    iniFileFree();
    const std::size_t length = path ? std::strlen(path) : sizeof gFilename;
    if (length >= sizeof gFilename)
        return 0;
    std::memmove(gFilename, path, length + 1); // a reload passes gFilename itself

    const File file(std::fopen(gFilename, "rb"));
    const long size = file ? measure(file.get()) : -1;
    if (size < 0 || !allocateBuffer(static_cast<std::size_t>(size)))
        return 0;
    gBuflen =
        static_cast<std::int32_t>(std::fread(gBuffer.get(), 1, static_cast<std::size_t>(size), file.get()));
    return 1;
}

int iniStrLoad(const char* text)
{
    iniFileFree();
    const std::size_t length = text ? std::strlen(text) : 0;
    if (!text || !allocateBuffer(length))
        return 0;
    printTextAsFormat(gBuffer.get(), length, text);
    gBuflen = static_cast<std::int32_t>(length);
    return 1;
}

void iniFileFree()
{
    gBuffer.reset();
    gBuflen = 0;
}
