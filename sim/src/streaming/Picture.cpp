// The scene is cheap to draw and yet no gift to a decoder: half of it moves all the time.
#include "Picture.h"

#include "KxSim/Streaming.h"

#include <algorithm>
#include <array>

namespace kxsim
{
namespace
{

constexpr int blocks = 32;
constexpr int bits = blocks / 2;
constexpr unsigned char black = 16; // the range of brightness in video
constexpr unsigned char white = 235;
constexpr int scrollPeriod = 256;

constexpr int barHeight(int height)
{
    return height / 16;
}

bool isOne(unsigned number, int block)
{
    const unsigned shown = block < bits ? number : ~number;
    return ((shown >> static_cast<unsigned>(bits - 1 - block % bits)) & 1U) != 0;
}

/// One period of the scrolling texture, twice: a row is a copy of a part of it.
std::array<unsigned char, 2 * scrollPeriod> texture(int row)
{
    std::array<unsigned char, 2 * scrollPeriod> line{};
    for (int x = 0; x < 2 * scrollPeriod; ++x) {
        const int slope = std::abs(x % 64 - 32) * 2;
        const int weave = (x % scrollPeriod ^ row) & 31;
        line[static_cast<std::size_t>(x)] = static_cast<unsigned char>(64 + slope + weave + row % 64);
    }
    return line;
}

void drawBar(unsigned number, int width, int height, unsigned char* luma)
{
    for (int x = 0; x < width; ++x)
        luma[x] = isOne(number, x * blocks / width) ? white : black;
    for (int y = 1; y < height; ++y)
        std::copy_n(luma, width, luma + y * width);
}

// From left to right once a loop, on a grey that darkens downwards.
void drawStill(unsigned number, int width, int top, int bottom, unsigned char* luma)
{
    const int side = (bottom - top) / 3;
    const int left = static_cast<int>(number) * (width - side) / static_cast<int>(framesPerLoop);
    for (int y = top; y < bottom; ++y) {
        unsigned char* const row = luma + y * width;
        std::fill_n(row, width, static_cast<unsigned char>(128 - 64 * (y - top) / (bottom - top)));
        if (y >= top + side && y < top + 2 * side)
            std::fill_n(row + left, side, white);
    }
}

void drawScrolling(unsigned number, int width, int top, int bottom, unsigned char* luma)
{
    for (int y = top; y < bottom; ++y) {
        const auto line = texture(y);
        const auto* const start = line.data() + number * 3 % scrollPeriod;
        for (int x = 0; x < width; x += scrollPeriod)
            std::copy_n(start, std::min(scrollPeriod, width - x), luma + y * width + x);
    }
}

// A bluish left, a reddish right; none where the number stands.
void drawColour(int width, int height, unsigned char* chroma)
{
    constexpr unsigned char none = 128;
    constexpr int strongest = 48;
    const int across = width / 2;
    const int down = height / 2;
    const int top = down / 16 + 1;
    for (int plane = 0; plane < 2; ++plane) {
        unsigned char* const start = chroma + plane * down * across;
        unsigned char* const row = start + top * across;
        std::fill(start, row, none);
        for (int x = 0; x < across; ++x) {
            const int tint = strongest * (2 * x - across) / across;
            row[x] = static_cast<unsigned char>(plane == 0 ? none - tint : none + tint);
        }
        for (int y = top + 1; y < down; ++y)
            std::copy_n(row, across, start + y * across);
    }
}

int brightnessAt(const unsigned char* bgr, int width, int x, int y)
{
    const unsigned char* const pixel = bgr + (static_cast<std::ptrdiff_t>(y) * width + x) * 3;
    return (pixel[0] + pixel[1] + pixel[2]) / 3;
}

/// The mean brightness of a block's middle, where compression and scaling have not mixed it with its neighbours.
int brightnessOf(const unsigned char* bgr, int width, int height, int block)
{
    const int left = (4 * block + 1) * width / (4 * blocks);
    const int right = std::max(left + 1, (4 * block + 3) * width / (4 * blocks));
    const int top = barHeight(height) / 4;
    const int bottom = std::max(top + 1, barHeight(height) * 3 / 4);
    int sum = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            sum += brightnessAt(bgr, width, x, y);
    return sum / ((right - left) * (bottom - top));
}

} // namespace

void drawPicture(unsigned number, int width, int height, unsigned char* planes)
{
    const int bar = barHeight(height);
    drawBar(number, width, bar, planes);
    drawStill(number, width, bar, height / 2, planes);
    drawScrolling(number, width, height / 2, height, planes);
    drawColour(width, height, planes + static_cast<std::ptrdiff_t>(width) * height);
}

std::optional<unsigned> frameNumberOf(const unsigned char* bgr, int width, int height)
{
    constexpr int lightest = 255;
    if (width < blocks || barHeight(height) < 1)
        return std::nullopt;
    unsigned number = 0;
    for (int block = 0; block < blocks; ++block) {
        const int brightness = brightnessOf(bgr, width, height, block);
        if (brightness > lightest / 4 && brightness < lightest * 3 / 4)
            return std::nullopt;
        const bool one = brightness > lightest / 2;
        if (block < bits)
            number = number << 1U | (one ? 1U : 0U);
        else if (one != isOne(number, block))
            return std::nullopt;
    }
    return number;
}

} // namespace kxsim
