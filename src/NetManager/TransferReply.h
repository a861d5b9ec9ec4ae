// What a camera's reply says of a transfer.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "NetManager/Connection.h"

/// Whether a reply, or its header, holds a text anywhere.
bool holds(std::string_view reply, const char* text);

/// How many bytes a reply has from its first one on, header included, by what its header tells; nothing when the header
/// does not tell it, or is not here to its end. The header ends at the first blank line, whatever ends its lines; where
/// only its beginning has been kept, its size tells the end.
std::optional<std::uint64_t> toldLength(std::string_view reply, std::uint64_t headerSize = 0);

/// Whether a reply that ended so after this many bytes lacks some: without a told length it is the camera's closing the
/// connection that completes it.
bool isCutShort(std::uint64_t received, std::optional<std::uint64_t> told, ReplyEnd end);
