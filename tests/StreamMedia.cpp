#include "StreamMedia.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>

#include <stdlib.h>

namespace
{

constexpr int dark = 50;
constexpr int bright = 200;

/// Feeds an encoder one frame after the other and collects what comes out.
Media encodeAll(AVCodecContext& encoder, int frames, const std::function<FramePtr(int)>& frameOf)
{
    Media media;
    media.parameters.reset(avcodec_parameters_alloc());
    avcodec_parameters_from_context(media.parameters.get(), &encoder);
    for (int i = 0; i <= frames; ++i) {
        const FramePtr frame = i < frames ? frameOf(i) : nullptr;
        EXPECT_EQ(avcodec_send_frame(&encoder, frame.get()), 0);
        for (PacketPtr packet(av_packet_alloc()); avcodec_receive_packet(&encoder, packet.get()) == 0;
             packet.reset(av_packet_alloc())) {
            av_packet_rescale_ts(packet.get(), encoder.time_base, {1, 1000});
            media.packets.push_back(std::move(packet));
        }
    }
    return media;
}

/// Adds what changes from pixel to pixel and from picture to picture.
void drawDetail(AVFrame& frame, int number)
{
    for (int y = 0; y < frame.height; ++y)
        for (int x = 0; x < frame.width; ++x)
            frame.data[0][y * frame.linesize[0] + x] +=
                static_cast<std::uint8_t>((x * x + y * y * (number + 3)) % 31);
}

} // namespace

void drawNumber(AVFrame& frame, int number)
{
    for (int y = 0; y < frame.height; ++y)
        for (int x = 0; x < frame.width; ++x)
            frame.data[0][y * frame.linesize[0] + x] =
                (number >> (x * numberBars / frame.width) & 1) != 0 ? bright : dark;
}

int readNumber(const std::uint8_t* pixels, int stride, int width, int height, int pixelSize)
{
    int number = 0;
    for (int bar = 0; bar < numberBars; ++bar) {
        const int x = (2 * bar + 1) * width / (2 * numberBars);
        const bool set = pixels[height / 2 * stride + x * pixelSize] > (dark + bright) / 2;
        number |= static_cast<int>(set) << bar;
    }
    return number;
}

FramePtr greyPicture(int width, int height, int brightness, AVPixelFormat format)
{
    FramePtr frame(av_frame_alloc());
    frame->format = format;
    frame->width = width;
    frame->height = height;
    EXPECT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
    for (int y = 0; y < height; ++y)
        std::memset(frame->data[0] + y * frame->linesize[0], brightness, static_cast<std::size_t>(width));
    for (const int plane : {1, 2})
        std::memset(frame->data[plane], 128,
                    static_cast<std::size_t>(frame->linesize[plane] * ((height + 1) / 2)));
    return frame;
}

Media encodeVideo(const VideoKind& kind)
{
    const AVCodec* codec = avcodec_find_encoder_by_name(kind.encoder);
    const CodecContextPtr encoder(avcodec_alloc_context3(codec));
    silence(*encoder);
    encoder->width = kind.width;
    encoder->height = kind.height;
    const bool jpeg = codec->id == AV_CODEC_ID_MJPEG;
    encoder->pix_fmt = jpeg ? AV_PIX_FMT_YUVJ420P : AV_PIX_FMT_YUV420P;
    encoder->time_base = av_inv_q(kind.rate);
    encoder->framerate = kind.rate;
    encoder->gop_size = kind.keyDistance;
    encoder->max_b_frames = 0;
    encoder->thread_count = 1;
    if (!jpeg)
        encoder->flags |=
            AV_CODEC_FLAG_GLOBAL_HEADER; // as cameras that tell it in the stream's description only
    AVDictionary* options = nullptr;
    av_dict_set(&options, "preset", "ultrafast", 0);
    av_dict_set(&options, "tune", "zerolatency", 0);
    av_dict_set(&options, "x264-params", (std::string("scenecut=0:") + kind.parameters).c_str(), 0);
    EXPECT_EQ(avcodec_open2(encoder.get(), codec, &options), 0);
    av_dict_free(&options);
    return encodeAll(*encoder, kind.frames, [&](int number) {
        FramePtr frame = greyPicture(kind.width, kind.height, 0, encoder->pix_fmt);
        drawNumber(*frame, number);
        if (kind.detailed)
            drawDetail(*frame, number);
        frame->pts = number;
        return frame;
    });
}

Media encodeSound(const char* encoderName, double seconds)
{
    constexpr int rate = 16'000;
    const AVCodec* codec = avcodec_find_encoder_by_name(encoderName);
    const CodecContextPtr encoder(avcodec_alloc_context3(codec));
    silence(*encoder);
    encoder->sample_rate = rate;
    encoder->sample_fmt = codec->sample_fmts[0];
    encoder->time_base = {1, rate};
    encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    av_channel_layout_default(&encoder->ch_layout, 1);
    EXPECT_EQ(avcodec_open2(encoder.get(), codec, nullptr), 0);
    const int size = encoder->frame_size > 0 ? encoder->frame_size : rate / 25;
    return encodeAll(*encoder, static_cast<int>(seconds * rate) / size, [&](int number) {
        FramePtr frame(av_frame_alloc());
        frame->format = encoder->sample_fmt;
        frame->nb_samples = size;
        frame->sample_rate = rate;
        av_channel_layout_copy(&frame->ch_layout, &encoder->ch_layout);
        EXPECT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
        frame->pts = static_cast<std::int64_t>(number) * size;
        for (int i = 0; i < size; ++i) {
            const double tone = 0.5 * std::sin(0.2 * static_cast<double>(frame->pts + i));
            if (encoder->sample_fmt == AV_SAMPLE_FMT_FLTP)
                reinterpret_cast<float*>(frame->data[0])[i] = static_cast<float>(tone);
            else
                reinterpret_cast<short*>(frame->data[0])[i] = static_cast<short>(32'000 * tone);
        }
        return frame;
    });
}

ScratchDirectory::ScratchDirectory()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "kx_stream_XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
}

ScratchDirectory::~ScratchDirectory()
{
    std::filesystem::remove_all(path_);
}

std::vector<std::string> ScratchDirectory::names() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}
