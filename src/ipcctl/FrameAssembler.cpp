#include "ipcctl/FrameAssembler.h"

#include <cstring>

#include "ipcctl/AnnexB.h"
#include "ipcctl/VideoDecoder.h"

namespace
{

constexpr std::int64_t mostPending = 32 << 20; // of a frame that never ends

struct Size
{
    int width = 0;
    int height = 0;
};

/// Of a JPEG picture, by its header; zeros when it has none.
Size sizeOfJpeg(Bytes bytes)
{
    const auto number = [&](std::size_t at) { return bytes[at] << 8 | bytes[at + 1]; };
    std::size_t at = 2; // behind the mark that begins the picture
    while (at + 9 <= bytes.size() && bytes[at] == 0xFF) {
        const int mark = bytes[at + 1];
        if (mark >= 0xC0 && mark <= 0xC3)
            return {.width = number(at + 7), .height = number(at + 5)};
        at += 2 + static_cast<std::size_t>(number(at + 2));
    }
    return {};
}

} // namespace

bool FrameAssembler::open(const AVCodecParameters& described)
{
    parameters_.reset(avcodec_parameters_alloc());
    context_.reset(avcodec_alloc_context3(nullptr));
    frame_.reset(av_packet_alloc());
    if (parameters_ == nullptr || context_ == nullptr || frame_ == nullptr ||
        avcodec_parameters_copy(parameters_.get(), &described) < 0 ||
        avcodec_parameters_to_context(context_.get(), &described) < 0)
        return false;
    silence(*context_);
    context_->ticks_per_frame = described.codec_id == AV_CODEC_ID_H264 ? 2 : 1; // H.264 counts fields
    givesUnits_ = described.codec_id == AV_CODEC_ID_H264;
    units_ = {};
    beginParsing();
    return true;
}

void FrameAssembler::beginParsing()
{
    const bool comesWhole = parameters_->codec_id == AV_CODEC_ID_MJPEG;
    parser_.reset(comesWhole ? nullptr : av_parser_init(parameters_->codec_id));
    pending_ = 0;
}

void FrameAssembler::take(const AVPacket& packet, const Takers& takers)
{
    if (parser_ == nullptr) {
        takeWhole(packet, takers);
        return;
    }
    const bool beginsUnit = givesUnits_ && UnitAssembler::begins(packet);
    if (beginsUnit)
        units_.end(takers.unit);
    parse(packet, takers);
    if (!givesUnits_)
        return;
    units_.take(packet, beginsUnit && takers.wantsUnit(), takers.unit);
    givesUnits_ = !units_.wasWrong();
    if (!givesUnits_)
        takers.startOver();
}

void FrameAssembler::end(const Takers& takers)
{
    if (!givesUnits_ || !units_.isComplete() || pending_ == 0)
        return;
    std::uint8_t* frame = nullptr;
    int size = 0;
    av_parser_parse2(parser_.get(), context_.get(), &frame, &size, nullptr, 0, AV_NOPTS_VALUE, AV_NOPTS_VALUE,
                     0);
    if (size > 0)
        hand(frame, size, takers);
}

void FrameAssembler::takeWhole(const AVPacket& packet, const Takers& takers)
{
    const Size size =
        parameters_->codec_id == AV_CODEC_ID_MJPEG ? sizeOfJpeg(bytesOf(packet.data, packet.size)) : Size{};
    if (size.width > 0 && size.height > 0) {
        parameters_->width = size.width;
        parameters_->height = size.height;
    } else if (!knowsFormat() && (packet.flags & AV_PKT_FLAG_KEY) != 0) {
        measureByDecoding(packet);
    }
    takers.frame(packet);
}

void FrameAssembler::parse(const AVPacket& packet, const Takers& takers)
{
    const std::uint8_t* rest = packet.data;
    int restSize = packet.size;
    std::int64_t pts = packet.pts;   // that of the first frame which begins in the packet
    const std::int64_t position = 0; // RTP has none, and without one the first frame would have no time stamp
    while (restSize > 0) {
        std::uint8_t* frame = nullptr;
        int frameSize = 0;
        const int used = av_parser_parse2(parser_.get(), context_.get(), &frame, &frameSize, rest, restSize,
                                          pts, packet.dts, position);
        pts = AV_NOPTS_VALUE;
        rest += used;
        restSize -= used;
        if (frameSize > 0)
            hand(frame, frameSize, takers);
        else if (used <= 0)
            return;
        pending_ = frameSize > 0 ? 0 : pending_ + used;
    }
    if (pending_ > mostPending)
        beginParsing();
}

/// A frame of its own, as others keep it.
void FrameAssembler::hand(const std::uint8_t* data, int size, const Takers& takers)
{
    if (av_new_packet(frame_.get(), size) < 0)
        return;
    std::memcpy(frame_->data, data, static_cast<std::size_t>(size));
    frame_->pts = parser_->pts;
    frame_->dts = parser_->dts;
    if (isKeyFrame()) {
        frame_->flags |= AV_PKT_FLAG_KEY;
        if (parser_->width > 0 && parser_->height > 0) {
            parameters_->width = parser_->width;
            parameters_->height = parser_->height;
        } else if (!knowsFormat()) {
            measureByDecoding(*frame_);
        }
    }
    takers.frame(*frame_);
    av_packet_unref(frame_.get());
}

bool FrameAssembler::isKeyFrame() const
{
    return parser_->key_frame == 1 || (parser_->key_frame == -1 && parser_->pict_type == AV_PICTURE_TYPE_I);
}

/// For what has no headers that a parser would understand.
void FrameAssembler::measureByDecoding(const AVPacket& keyFrame)
{
    VideoDecoder decoder;
    if (!decoder.open(*parameters_, VideoDecoder::Delay::None) || !decoder.send(&keyFrame))
        return;
    if (const AVFrame* frame = decoder.receive()) {
        parameters_->width = frame->width;
        parameters_->height = frame->height;
    }
}
