// What the camera sees: a made-up scene with the frame's number in it.
#pragma once

#include <cstddef>

namespace kxsim
{

/// Bytes of a picture in planar 4:2:0. The width is a multiple of 8, the height of 2.
constexpr std::size_t pictureSize(int width, int height)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3 / 2;
}

void drawPicture(unsigned number, int width, int height, unsigned char* planes);

} // namespace kxsim
