#include "ipcctl/SoundTrack.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "ipcctl/FrameGrid.h"

namespace
{

constexpr double outOfStep = 200;      // milliseconds, until people notice
constexpr std::int64_t piece = 65'536; // bytes of silence at once

bool isAac(const AVCodecParameters& sound)
{
    return sound.codec_id == AV_CODEC_ID_AAC;
}

std::uint8_t silentByte(AVCodecID codec)
{
    switch (codec) {
    case AV_CODEC_ID_PCM_ALAW:
        return 0xD5;
    case AV_CODEC_ID_PCM_MULAW:
        return 0xFF;
    default:
        return 0;
    }
}

} // namespace

bool SoundTrack::carries(const AVCodecParameters& sound)
{
    switch (sound.codec_id) {
    case AV_CODEC_ID_AAC:
    case AV_CODEC_ID_PCM_ALAW:
    case AV_CODEC_ID_PCM_MULAW:
    case AV_CODEC_ID_PCM_S16LE:
        return sound.sample_rate > 0 && sound.ch_layout.nb_channels > 0;
    default:
        return false;
    }
}

SoundTrack::SoundTrack(const AVCodecParameters& sound, int stream)
    : stream_(stream),
      unitsPerMillisecond_(sound.sample_rate / 1000.0 / (isAac(sound) ? sound.frame_size : 1)),
      unitBytes_(isAac(sound) ? 0 : sound.block_align), silent_(silentByte(sound.codec_id))
{
}

std::int64_t SoundTrack::missingBefore(double time) const
{
    const double late = time * unitsPerMillisecond_ - static_cast<double>(next_);
    if (next_ == 0)
        return std::max<std::int64_t>(std::llround(late), 0);
    return std::abs(late) > outOfStep * unitsPerMillisecond_ ? std::llround(late) : 0;
}

std::int64_t SoundTrack::unitsOf(const AVPacket& packet) const
{
    return unitBytes_ > 0 ? packet.size / unitBytes_ : 1;
}

PacketPtr SoundTrack::silence(std::int64_t units) const
{
    const auto size = static_cast<int>(std::min(units, piece / unitBytes_) * unitBytes_);
    PacketPtr packet(av_packet_alloc());
    if (packet == nullptr || av_new_packet(packet.get(), size) < 0)
        return nullptr;
    std::memset(packet->data, silent_, static_cast<std::size_t>(size));
    return packet;
}
