#include "ipcctl/ColourConverter.h"

#include "ipcctl/PictureFormat.h"

namespace
{

constexpr int bytesPerPixel = 3;
constexpr int overrun = 64; // what vector instructions may write behind the last pixel

} // namespace

std::uint8_t* ColourConverter::convert(const AVFrame& frame)
{
    if (!adaptTo(frame))
        return nullptr;
    std::uint8_t* const planes[] = {picture_.get()};
    const int strides[] = {frame.width * bytesPerPixel};
    if (sws_scale(context_.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) !=
        frame.height)
        return nullptr;
    return picture_.get();
}

bool ColourConverter::adaptTo(const AVFrame& frame)
{
    const auto format = static_cast<AVPixelFormat>(frame.format);
    if (context_ != nullptr && frame.width == width_ && frame.height == height_ && format == format_ &&
        frame.colorspace == space_ && frame.color_range == range_)
        return true;

    const int size = av_image_get_buffer_size(AV_PIX_FMT_BGR24, frame.width, frame.height, 1);
    context_.reset(size < 0 ? nullptr
                            : sws_getContext(frame.width, frame.height, ordinaryFormat(format), frame.width,
                                             frame.height, AV_PIX_FMT_BGR24, SWS_BILINEAR, nullptr, nullptr,
                                             nullptr));
    if (context_ == nullptr)
        return false;
    sws_setColorspaceDetails(context_.get(), sws_getCoefficients(matrixOf(frame)), isFullRange(frame),
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    picture_.reset(static_cast<std::uint8_t*>(av_malloc(static_cast<std::size_t>(size + overrun))));
    width_ = frame.width;
    height_ = frame.height;
    format_ = format;
    space_ = frame.colorspace;
    range_ = frame.color_range;
    if (picture_ == nullptr)
        context_.reset();
    return picture_ != nullptr;
}
