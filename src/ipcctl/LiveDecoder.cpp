#include "ipcctl/LiveDecoder.h"

#include <algorithm>
#include <utility>

bool LiveDecoder::open(const AVCodecParameters& parameters)
{
    state_ = State::Beginning;
    shown_ = false;
    recovers_ = parameters.codec_id == AV_CODEC_ID_H264;
    numbers_.begin(parameters);
    parameters_.reset(avcodec_parameters_alloc());
    return parameters_ != nullptr && avcodec_parameters_copy(parameters_.get(), &parameters) >= 0 &&
           decoder_.open(parameters, VideoDecoder::Delay::None);
}

void LiveDecoder::send(const AVPacket& packet)
{
    if (numbers_.areMissingBefore(packet))
        lose();
    if (state_ == State::Lost) {
        if (!recovers_ && (packet.flags & AV_PKT_FLAG_KEY) == 0)
            return;
        if (numbers_.isIndependent())
            renewDecoder();
    }
    if (!decoder_.send(&packet))
        lose();
}

const AVFrame* LiveDecoder::receive()
{
    const AVFrame* const frame = decoder_.receive();
    if (frame == nullptr)
        return nullptr;
    if (decoder_.isDamaged(numbers_.haveSlices())) {
        lose();
        return nullptr;
    }
    state_ = State::Flowing;
    shown_ = true;
    return frame;
}

bool LiveDecoder::endFrame()
{
    const bool shown = std::exchange(shown_, false);
    if (numbers_.isField() && !shown)
        return state_ != State::Lost; // its picture comes with the other half
    const bool lacksRows = decoder_.lacksRows();
    decoder_.beginPicture();
    if (shown)
        return true;
    const bool comesLater = state_ != State::Lost && decoder_.delay() > 0;
    if (lacksRows || (state_ == State::Flowing && !comesLater))
        lose();
    return comesLater && !lacksRows;
}

void LiveDecoder::flush()
{
    numbers_.breakOff();
    renewDecoder();
    state_ = State::Beginning;
    shown_ = false;
}

void LiveDecoder::lose()
{
    flush();
    state_ = State::Lost;
}

/// FFmpeg's decoder is not the same after damaged frames, flushed or not: what it had read of a block when it gave up goes
/// into the next one, and it takes missing frames for frames in another order and holds pictures back for ever.
void LiveDecoder::renewDecoder()
{
    const std::vector<std::uint8_t>& sets = numbers_.parameterSets();
    const PacketPtr packet(av_packet_alloc());
    if (!decoder_.open(*parameters_, VideoDecoder::Delay::None) || packet == nullptr || sets.empty() ||
        av_new_packet(packet.get(), static_cast<int>(sets.size())) < 0)
        return;
    std::ranges::copy(sets, packet->data);
    decoder_.send(packet.get());
}
