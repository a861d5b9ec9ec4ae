// Pictures and sound for the tests of the streaming library, made on the spot: each picture carries its number as dark
// and bright bars, which survives compression and tells which picture arrived.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ipcctl/Av.h"

/// What an encoder made.
struct Media
{
    CodecParametersPtr parameters;
    std::vector<PacketPtr> packets; // time stamps in milliseconds
};

struct VideoKind
{
    const char* encoder = "libx264";
    int width = 160;
    int height = 120;
    int frames = 50;
    AVRational rate{25, 1};
    int keyDistance = 25;
    const char* parameters = ""; // more of them, for libx264
    bool detailed = false;       // pictures have more than their number in them
};

inline constexpr int numberBars = 10;

/// Draws the number's bits over a picture's brightness, the lowest bit at the left.
void drawNumber(AVFrame& frame, int number);
/// Reads it from brightness, or from packed colour with `pixelSize` 3.
int readNumber(const std::uint8_t* pixels, int stride, int width, int height, int pixelSize = 1);

/// A grey picture of this brightness; its planes can be written.
FramePtr greyPicture(int width, int height, int brightness, AVPixelFormat format = AV_PIX_FMT_YUV420P);

Media encodeVideo(const VideoKind& kind);
/// A tone, 16,000 samples a second.
Media encodeSound(const char* encoder, double seconds);

/// A directory of a test's own, removed with all that is in it.
class ScratchDirectory
{
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + '/' + name; }
    /// The names of the files in it, sorted.
    std::vector<std::string> names() const;

private:
    std::string path_;
};
