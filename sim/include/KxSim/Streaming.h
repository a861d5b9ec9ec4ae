// The live pictures of a simulated camera: where they are, what they show, and how they go wrong.
//   rtsp://HOST:PORT/main and rtsp://HOST:PORT/sub, for the camera's users, by Digest authentication
// What is sent follows the camera's settings: size, rate, codec (1 is MJPEG, all others are H.264), bit rate in kbit/s,
// distance of the key frames and JPEG quality of either stream, and the sound (codec 0 is G.711, all others are AAC).
// Each client gets frames from number 0 on, the first one at once. Frames are encoded when they are first sent; from the
// second round on, streaming costs next to nothing.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace kxsim
{

/// Whether a camera streams.
struct StreamingOptions
{
    /// RTSP port, told by the setting "mainrtspport" and changed through it; 0: any free one. None: no streams.
    std::optional<unsigned short> port{};
};

/// One way of misbehaving towards those who watch.
struct StreamFault
{
    enum class Kind
    {
        None,
        Refuse,         ///< the port answers connection attempts with a reset
        RefusePassword, ///< nobody's password is right
        SilentBefore,   ///< connections are taken, requests never read
        SilentAfter,    ///< the request `method` and all that follow it are read, never answered
        NoKeyFrame,     ///< H.264 without key frames in the first `after` of the stream
        StopSending,    ///< nothing is sent once a stream has played for `after`
        StopPictures,   ///< likewise no pictures, while its sound goes on
        Disconnect,     ///< connections are closed once their stream has played for `after`
        LosePackets,    ///< every `every`th packet is not sent
        BadParameters,  ///< H.264 with parameter sets that mean nothing, and no others in the stream
        WrongCodec,     ///< the video is described as of a codec that it is not of
        Garbage         ///< random bytes instead of a description, the same ones every time
    };

    Kind kind = Kind::None;
    std::chrono::milliseconds after{0};
    std::string method = "DESCRIBE"; ///< for SilentAfter
    unsigned every = 20;             ///< for LosePackets
};

/// A request that came to the RTSP port.
struct StreamRequest
{
    std::string method{};
    std::string path{}; ///< "/main" or longer
    int status = 0;     ///< what it was answered with; 0: not at all
};

/// The frames' numbers run from 0 to one less than this, and then again.
constexpr unsigned framesPerLoop = 250;

/// The number burnt into a frame of packed 24-bit colour, blue first; nothing when the frame shows none.
///
/// The top sixteenth of a frame is a row of 32 blocks of equal width, white for 1 and black for 0: the number in 16
/// bits, the highest first, and once more with each bit inverted. Below it, as far as the middle of the frame, a bright
/// square goes from left to right over a grey that stands still; the lower half scrolls.
std::optional<unsigned> frameNumberOf(const unsigned char* bgr, int width, int height);

} // namespace kxsim
