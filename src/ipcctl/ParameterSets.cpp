#include "ipcctl/ParameterSets.h"

#include "ipcctl/AnnexB.h"

namespace
{

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
    for (Bytes unit = nextUnit(bytes); !unit.empty(); unit = nextUnit(bytes)) {
        if (isParameterSet(codec, unit[0]))
            return true;
        if (isPicture(codec, unit[0]))
            return false;
    }
    return false;
}

} // namespace

bool lacksParameterSets(const AVPacket& packet, const AVCodecParameters& video)
{
    if (video.codec_id != AV_CODEC_ID_H264 && video.codec_id != AV_CODEC_ID_HEVC)
        return false;
    return hasParameterSets(video.codec_id, bytesOf(video.extradata, video.extradata_size)) &&
           !hasParameterSets(video.codec_id, bytesOf(packet.data, packet.size));
}
