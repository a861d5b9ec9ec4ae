#include "ipcctl/Snapshot.h"

extern "C" {
#include <libavutil/opt.h>
}

#include "ipcctl/PictureFormat.h"
#include "ipcctl/SavedFile.h"

namespace
{

constexpr int finest = 2; // of the encoder's quantisers: no difference can be seen

/// What JPEG can hold that has the colour resolution of the picture.
AVPixelFormat jpegFormat(AVPixelFormat format)
{
    switch (ordinaryFormat(format)) {
    case AV_PIX_FMT_YUV422P:
    case AV_PIX_FMT_YUYV422:
        return AV_PIX_FMT_YUVJ422P;
    case AV_PIX_FMT_YUV444P:
    case AV_PIX_FMT_BGR24:
    case AV_PIX_FMT_RGB24:
        return AV_PIX_FMT_YUVJ444P;
    default:
        return AV_PIX_FMT_YUVJ420P;
    }
}

/// Converts into a picture of the same size in JPEG's colours; null when there is no way.
SwsPtr converterTo(const AVFrame& picture, const AVFrame& frame)
{
    SwsPtr context(sws_alloc_context());
    if (context == nullptr)
        return nullptr;
    const auto set = [&](const char* option, int value) { av_opt_set_int(context.get(), option, value, 0); };
    set("srcw", frame.width);
    set("srch", frame.height);
    set("src_format", ordinaryFormat(static_cast<AVPixelFormat>(frame.format)));
    set("src_range", isFullRange(frame)); // before the way is chosen: it may have to convert nothing else
    set("dstw", picture.width);
    set("dsth", picture.height);
    set("dst_format", ordinaryFormat(static_cast<AVPixelFormat>(picture.format)));
    set("dst_range", 1);
    set("sws_flags", SWS_BICUBIC);
    if (sws_init_context(context.get(), nullptr, nullptr) < 0)
        return nullptr;
    sws_setColorspaceDetails(context.get(), sws_getCoefficients(matrixOf(frame)), isFullRange(frame),
                             sws_getCoefficients(SWS_CS_ITU601), 1, 0, 1 << 16, 1 << 16);
    return context;
}

/// The picture in JPEG's colours; null when it can not be converted.
FramePtr toJpegColours(const AVFrame& frame)
{
    FramePtr picture(av_frame_alloc());
    if (picture == nullptr)
        return nullptr;
    picture->format = jpegFormat(static_cast<AVPixelFormat>(frame.format));
    picture->width = frame.width;
    picture->height = frame.height;
    picture->color_range = AVCOL_RANGE_JPEG;
    const SwsPtr context = converterTo(*picture, frame);
    if (context == nullptr || av_frame_get_buffer(picture.get(), 0) < 0 ||
        sws_scale(context.get(), frame.data, frame.linesize, 0, frame.height, picture->data,
                  picture->linesize) != frame.height)
        return nullptr;
    return picture;
}

/// Null when it can not be encoded.
PacketPtr encode(AVFrame& picture)
{
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    const CodecContextPtr encoder(avcodec_alloc_context3(codec));
    PacketPtr packet(av_packet_alloc());
    if (codec == nullptr || encoder == nullptr || packet == nullptr)
        return nullptr;
    silence(*encoder);
    encoder->width = picture.width;
    encoder->height = picture.height;
    encoder->pix_fmt = static_cast<AVPixelFormat>(picture.format);
    encoder->color_range = AVCOL_RANGE_JPEG;
    encoder->time_base = {1, 1};
    encoder->thread_count = 1;
    encoder->flags |= AV_CODEC_FLAG_QSCALE;
    encoder->global_quality = finest * FF_QP2LAMBDA;
    picture.quality = encoder->global_quality;
    picture.pts = 0;
    if (avcodec_open2(encoder.get(), codec, nullptr) < 0 || avcodec_send_frame(encoder.get(), &picture) < 0 ||
        avcodec_receive_packet(encoder.get(), packet.get()) < 0)
        return nullptr;
    return packet;
}

} // namespace

std::string saveSnapshot(const AVFrame& frame, const std::string& directory,
                         std::chrono::system_clock::time_point time)
{
    const FramePtr picture = toJpegColours(frame);
    const PacketPtr jpeg = picture != nullptr ? encode(*picture) : nullptr;
    const std::string name = timeStampWithMilliseconds(time);
    SavedFile file;
    if (jpeg == nullptr || !file.createIn(directory, '.' + name, ".jpg.part"))
        return {};
    if (file.write(jpeg->data, static_cast<std::size_t>(jpeg->size)) && file.closeAs(directory, name, ".jpg"))
        return file.path();
    file.discard();
    return {};
}
