// Feeds a live view whatever comes as video: scripts/fuzz.sh builds and runs it.
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>

#include "ipcctl/AnnexB.h"
#include "ipcctl/FrameAssembler.h"
#include "ipcctl/VideoFeed.h"

namespace
{

/// What a packet is, or does besides.
constexpr unsigned isKey = 1, isLater = 2, restarts = 4, changesWish = 8;

class Watcher : public FrameSink
{
public:
    bool wantsFrames() const override { return wants; }
    void takeFrame(const AVFrame&) override {}

    bool wants = true;
};

/// A stream's reader without a stream.
class Reader
{
public:
    explicit Reader(AVCodecID codec) : described_(avcodec_parameters_alloc())
    {
        described_->codec_type = AVMEDIA_TYPE_VIDEO;
        described_->codec_id = codec;
        feed_.attach(watcher_);
        begin();
    }
    ~Reader()
    {
        frames_.end(takers_);
        feed_.latestFrame(std::chrono::milliseconds(0));
    }

    void take(unsigned kind, Bytes bytes)
    {
        if ((kind & restarts) != 0)
            begin();
        watcher_->wants ^= (kind & changesWish) != 0;
        time_ += (kind & isLater) != 0;
        const PacketPtr packet(av_packet_alloc());
        if (bytes.empty() || av_new_packet(packet.get(), static_cast<int>(bytes.size())) < 0)
            return;
        std::ranges::copy(bytes, packet->data);
        packet->pts = time_;
        packet->flags = (kind & isKey) != 0 ? AV_PKT_FLAG_KEY : 0;
        frames_.take(*packet, takers_);
    }

private:
    void begin()
    {
        frames_.open(*described_);
        feed_.begin(*described_);
    }

    const CodecParametersPtr described_;
    const std::shared_ptr<Watcher> watcher_ = std::make_shared<Watcher>();
    StreamCounters counters_;
    Backlog backlog_{Backlog::Clock::now()};
    std::atomic<bool> stopped_{false};
    VideoFeed feed_{std::make_shared<CallBacks>(nullptr), counters_, backlog_, stopped_};
    FrameAssembler frames_;
    const FrameAssembler::Takers takers_{.frame = [this](const AVPacket& frame) { feed_.take(frame, 25); },
                                         .wantsUnit = [this] { return feed_.beginUnit(); },
                                         .unit = [this](const AVPacket& unit) { feed_.takeUnit(unit); },
                                         .startOver = [this] { feed_.startOver(); }};
    std::int64_t time_ = 0;
};

} // namespace

/// The codec, then packets: the kind, the size in two bytes, the lower one first, and what is in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static constexpr AVCodecID codecs[] = {AV_CODEC_ID_H264, AV_CODEC_ID_MJPEG, AV_CODEC_ID_HEVC};
    if (size == 0)
        return 0;
    Reader reader(codecs[bytes[0] % std::size(codecs)]);
    for (Bytes rest(bytes + 1, size - 1); rest.size() > 3;) {
        const std::size_t length = std::min<std::size_t>(rest[1] + 256u * rest[2], rest.size() - 3);
        reader.take(rest[0], rest.subspan(3, length));
        rest = rest.subspan(3 + length);
    }
    return 0;
}
