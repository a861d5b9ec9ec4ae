#include "ipcctl/ParameterSets.h"

#include <algorithm>
#include <array>
#include <span>

namespace
{

using Bytes = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 3> startCode{0, 0, 1};

bool isParameterSet(AVCodecID codec, std::uint8_t unit)
{
    return codec == AV_CODEC_ID_H264 ? (unit & 0x1F) == 7 : ((unit >> 1) & 0x3F) == 33;
}

bool isPicture(AVCodecID codec, std::uint8_t unit)
{
    return codec == AV_CODEC_ID_H264 ? (unit & 0x1F) >= 1 && (unit & 0x1F) <= 5 : ((unit >> 1) & 0x3F) < 32;
}

/// Whether parameter sets come before the first picture.
bool hasParameterSets(AVCodecID codec, Bytes bytes)
{
    for (;;) {
        const auto found = std::search(bytes.begin(), bytes.end(), startCode.begin(), startCode.end());
        if (bytes.end() - found <= static_cast<std::ptrdiff_t>(startCode.size()))
            return false;
        const std::uint8_t unit = found[startCode.size()];
        if (isParameterSet(codec, unit))
            return true;
        if (isPicture(codec, unit))
            return false;
        bytes = {found + startCode.size(), bytes.end()};
    }
}

Bytes bytesOf(const std::uint8_t* data, int size)
{
    return {data, static_cast<std::size_t>(std::max(size, 0))};
}

} // namespace

bool lacksParameterSets(const AVPacket& packet, const AVCodecParameters& video)
{
    if (video.codec_id != AV_CODEC_ID_H264 && video.codec_id != AV_CODEC_ID_HEVC)
        return false;
    return hasParameterSets(video.codec_id, bytesOf(video.extradata, video.extradata_size)) &&
           !hasParameterSets(video.codec_id, bytesOf(packet.data, packet.size));
}
