// From decoded pictures to the colours that applications show.
#pragma once

#include <cstdint>
#include <memory>

#include "ipcctl/Av.h"

/// Makes packed 24-bit colour, blue first, rows without gaps. One thread at a time.
class ColourConverter
{
public:
    /// width * height * 3 bytes, the caller's to write on, valid until the next call; null when the picture can not be
    /// converted.
    std::uint8_t* convert(const AVFrame& frame);

private:
    struct AvBufferFree
    {
        void operator()(std::uint8_t* buffer) const { av_free(buffer); }
    };

    bool adaptTo(const AVFrame& frame);

    SwsPtr context_;
    std::unique_ptr<std::uint8_t, AvBufferFree> picture_;
    int width_ = 0;
    int height_ = 0;
    AVPixelFormat format_ = AV_PIX_FMT_NONE;
    AVColorSpace space_ = AVCOL_SPC_UNSPECIFIED;
    AVColorRange range_ = AVCOL_RANGE_UNSPECIFIED;
};
