// The AAC decoder's functions as the library exports them: this program is not linked with the decoder.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

extern "C" {
#include <libavcodec/avcodec.h>
}
#include <neaacdec.h>

namespace
{

constexpr int sampleRate = 16000;
constexpr double frequency = 440; // hertz
constexpr int frameCount = 20;

template <auto Free>
struct FreeBy
{
    template <typename Type>
    void operator()(Type* object) const
    {
        Free(&object);
    }
};

using Encoder = std::unique_ptr<AVCodecContext, FreeBy<avcodec_free_context>>;
using Frame = std::unique_ptr<AVFrame, FreeBy<av_frame_free>>;
using Packet = std::unique_ptr<AVPacket, FreeBy<av_packet_free>>;

Encoder openEncoder()
{
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
    Encoder encoder(avcodec_alloc_context3(codec));
    encoder->sample_rate = sampleRate;
    encoder->sample_fmt = AV_SAMPLE_FMT_FLTP;
    encoder->ch_layout = AV_CHANNEL_LAYOUT_MONO;
    encoder->bit_rate = 64000;
    encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    EXPECT_EQ(avcodec_open2(encoder.get(), codec, nullptr), 0);
    return encoder;
}

Frame sineFrame(const AVCodecContext& encoder, int first)
{
    Frame frame(av_frame_alloc());
    frame->nb_samples = encoder.frame_size;
    frame->format = encoder.sample_fmt;
    frame->sample_rate = sampleRate;
    av_channel_layout_copy(&frame->ch_layout, &encoder.ch_layout);
    EXPECT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
    auto* samples = reinterpret_cast<float*>(frame->data[0]);
    for (int i = 0; i < frame->nb_samples; ++i)
        samples[i] = static_cast<float>(0.5 * std::sin(2 * M_PI * frequency * (first + i) / sampleRate));
    return frame;
}

std::vector<std::vector<std::uint8_t>> encodeSine(AVCodecContext& encoder)
{
    std::vector<std::vector<std::uint8_t>> packets;
    const Packet packet(av_packet_alloc());
    for (int i = 0; i < frameCount; ++i) {
        EXPECT_EQ(avcodec_send_frame(&encoder, sineFrame(encoder, i * encoder.frame_size).get()), 0);
        while (avcodec_receive_packet(&encoder, packet.get()) == 0) {
            packets.emplace_back(packet->data, packet->data + packet->size);
            av_packet_unref(packet.get());
        }
    }
    return packets;
}

double frequencyOf(const std::vector<short>& samples)
{
    int crossings = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        crossings += samples[i - 1] < 0 && samples[i] >= 0;
    return crossings * double{sampleRate} / static_cast<double>(samples.size());
}

} // namespace

TEST(AacExport, DecodesWhatAnEncoderMade)
{
    const Encoder encoder = openEncoder();
    auto packets = encodeSine(*encoder);

    NeAACDecHandle decoder = NeAACDecOpen();
    NeAACDecConfigurationPtr configuration = NeAACDecGetCurrentConfiguration(decoder);
    configuration->outputFormat = FAAD_FMT_16BIT;
    ASSERT_EQ(NeAACDecSetConfiguration(decoder, configuration), 1);
    unsigned long rate = 0;
    unsigned char channels = 0;
    ASSERT_EQ(NeAACDecInit2(decoder, encoder->extradata, static_cast<unsigned long>(encoder->extradata_size),
                            &rate, &channels),
              0);
    EXPECT_EQ(rate, static_cast<unsigned long>(sampleRate));

    std::vector<short> sound;
    for (auto& packet : packets) {
        NeAACDecFrameInfo info{};
        const auto* samples = static_cast<const short*>(
            NeAACDecDecode(decoder, &info, packet.data(), static_cast<unsigned long>(packet.size())));
        ASSERT_EQ(info.error, 0) << NeAACDecGetErrorMessage(info.error);
        for (unsigned long i = 0; i < info.samples; i += info.channels)
            sound.push_back(samples[i]);
    }
    NeAACDecClose(decoder);
    ASSERT_GT(sound.size(), 10000U);
    sound.erase(sound.begin(), sound.begin() + 4096); // the codec's delay
    EXPECT_NEAR(frequencyOf(sound), frequency, 5);
}
