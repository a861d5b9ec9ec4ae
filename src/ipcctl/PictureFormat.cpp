#include "ipcctl/PictureFormat.h"

AVPixelFormat ordinaryFormat(AVPixelFormat format)
{
    switch (format) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    case AV_PIX_FMT_YUVJ440P:
        return AV_PIX_FMT_YUV440P;
    default:
        return format;
    }
}

bool isFullRange(const AVFrame& frame)
{
    const auto format = static_cast<AVPixelFormat>(frame.format);
    return frame.color_range == AVCOL_RANGE_JPEG || ordinaryFormat(format) != format;
}

/// Cameras that do not tell their colour matrix follow television: one for standard, one for high definition.
int matrixOf(const AVFrame& frame)
{
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB)
        return frame.colorspace;
    if (isFullRange(frame))
        return SWS_CS_ITU601; // JPEG's
    return frame.height >= 720 ? SWS_CS_ITU709 : SWS_CS_ITU601;
}
