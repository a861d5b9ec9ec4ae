// Video of H.264 and H.265 as it is sent: in units, each behind a start code.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

using Bytes = std::span<const std::uint8_t>;

inline Bytes bytesOf(const std::uint8_t* data, int size)
{
    return {data, static_cast<std::size_t>(std::max(size, 0))};
}

/// What follows the next start code, from the unit's first byte up to the end of all bytes, and moves on behind that
/// first byte; empty when no unit follows.
inline Bytes nextUnit(Bytes& rest)
{
    static constexpr std::string_view startCode("\0\0\1", 3);
    const std::string_view text(reinterpret_cast<const char*>(rest.data()), rest.size());
    const std::size_t found = text.find(startCode);
    if (found == text.npos || found + startCode.size() == rest.size())
        return {};
    const Bytes unit = rest.subspan(found + startCode.size());
    rest = unit.subspan(1);
    return unit;
}

/// The unit without what follows it, when the bytes go on like this behind its first byte.
inline Bytes cutUnit(Bytes unit, Bytes rest)
{
    const Bytes next = nextUnit(rest);
    return next.empty() ? unit : unit.first(unit.size() - next.size() - 3);
}
