// The one INI text held in memory, shared by the getters and setters that name no text of their own.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

extern std::unique_ptr<char[]> gBuffer; // the file's bytes, not zero-terminated; null: nothing is loaded
extern std::int32_t gBuflen;

/// The path last given to iniFileLoad, also if no file could be loaded from it; empty before the first. It
/// outlives what was loaded: iniFileFree and iniStrLoad leave it as it is.
extern char gFilename[256];

namespace inirw
{

/// The loaded text; its data is null when nothing is loaded.
std::string_view loadedText();

} // namespace inirw
