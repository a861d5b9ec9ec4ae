// From what RTP carries to whole frames.
#pragma once

#include <functional>

#include "ipcctl/Av.h"
#include "ipcctl/UnitAssembler.h"

/// Puts frames together, marks the key frames and learns from them how large the pictures are. FFmpeg's inputs would do
/// the same unless told not to, but keep what they learn to themselves and have a lot to say about damaged streams.
///
/// Of H.264 and H.265, a frame is known to be whole when the next one begins. The units of H.264 are handed on before.
class FrameAssembler
{
public:
    /// What is handed on. The wanted units of a frame come before it.
    struct Takers
    {
        std::function<void(const AVPacket& frame)> frame;
        std::function<bool()> wantsUnit; // asked when it begins
        std::function<void(const AVPacket& unit)> unit;
        std::function<void()> startOver; // some unit was not as it is: no more of them
    };

    /// @param described  as the stream's description has it
    /// False when there is no memory.
    bool open(const AVCodecParameters& described);

    /// Takes a packet as it came, and hands on the frame or frames that it completes.
    void take(const AVPacket& packet, const Takers& takers);
    /// No packet will come: hands on the last frame, if it seems to be whole.
    void end(const Takers& takers);

    /// Whether a key frame has told the size of the pictures.
    bool knowsFormat() const { return parameters_ != nullptr && parameters_->width > 0; }
    const AVCodecParameters& parameters() const { return *parameters_; }
    /// By the encoder's own word; 0/1 when it does not say.
    AVRational frameRate() const { return context_->framerate; }

private:
    struct ParserFree
    {
        void operator()(AVCodecParserContext* parser) const { av_parser_close(parser); }
    };

    void beginParsing();
    void takeWhole(const AVPacket& packet, const Takers& takers);
    void parse(const AVPacket& packet, const Takers& takers);
    void hand(const std::uint8_t* data, int size, const Takers& takers);
    bool isKeyFrame() const;
    void measureByDecoding(const AVPacket& keyFrame);

    CodecParametersPtr parameters_;
    CodecContextPtr context_;                                  // the parser's
    std::unique_ptr<AVCodecParserContext, ParserFree> parser_; // null: packets are frames
    PacketPtr frame_;
    std::int64_t pending_ = 0; // bytes of the frame that is not whole yet
    UnitAssembler units_;
    bool givesUnits_ = false;
};
