#include "FloorStream.h"

#include <stdexcept>
#include <string>

namespace
{

constexpr int bytesPerPixel = 3;

void require(bool done, const char* what)
{
    if (!done)
        throw std::runtime_error(std::string("the plain loop ") + what);
}

} // namespace

FloorStream::FloorStream(const Endpoint& camera, Probing probing)
{
    av_log_set_level(AV_LOG_QUIET);
    openInput(camera);
    if (probing == Probing::Yes)
        require(avformat_find_stream_info(input_.get(), nullptr) >= 0, "can not probe");
    openDecoder();
}

void FloorStream::openInput(const Endpoint& camera)
{
    const std::string url =
        "rtsp://admin:admin@" + camera.host + ":" + std::to_string(camera.rtspPort) + "/main";
    AVFormatContext* input = nullptr;
    AVDictionary* options = nullptr;
    av_dict_set(&options, "rtsp_transport", "tcp", 0);
    const int result = avformat_open_input(&input, url.c_str(), nullptr, &options);
    av_dict_free(&options);
    input_.reset(input);
    require(result == 0, "can not open the stream");
}

void FloorStream::openDecoder()
{
    video_ = av_find_best_stream(input_.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    require(video_ >= 0, "finds no video");
    const AVCodecParameters* const parameters = input_->streams[video_]->codecpar;
    const AVCodec* const codec = avcodec_find_decoder(parameters->codec_id);
    decoder_.reset(avcodec_alloc_context3(codec));
    decoder_->thread_count = 1; // what is compared is the work, not how it is spread
    require(avcodec_parameters_to_context(decoder_.get(), parameters) >= 0 &&
                avcodec_open2(decoder_.get(), codec, nullptr) == 0,
            "can not open the decoder");
}

const std::uint8_t* FloorStream::next()
{
    decodeOne();
    if (!converter_)
        prepareConversion();
    std::uint8_t* const planes[] = {picture_.get()};
    const int strides[] = {frame_->width * bytesPerPixel};
    sws_scale(converter_.get(), frame_->data, frame_->linesize, 0, frame_->height, planes, strides);
    return picture_.get();
}

void FloorStream::decodeOne()
{
    while (avcodec_receive_frame(decoder_.get(), frame_.get()) != 0) {
        require(av_read_frame(input_.get(), packet_.get()) == 0, "has lost the stream");
        if (packet_->stream_index == video_)
            avcodec_send_packet(decoder_.get(), packet_.get());
        av_packet_unref(packet_.get());
    }
}

void FloorStream::prepareConversion()
{
    constexpr std::size_t overrun = 64; // what vector instructions may write behind the last pixel
    converter_.reset(sws_getContext(frame_->width, frame_->height, static_cast<AVPixelFormat>(frame_->format),
                                    frame_->width, frame_->height, AV_PIX_FMT_BGR24, SWS_BILINEAR, nullptr,
                                    nullptr, nullptr));
    const auto pixels = static_cast<std::size_t>(frame_->width) * static_cast<std::size_t>(frame_->height);
    picture_.reset(static_cast<std::uint8_t*>(av_malloc(pixels * bytesPerPixel + overrun)));
    require(converter_ && picture_, "can not convert");
}
