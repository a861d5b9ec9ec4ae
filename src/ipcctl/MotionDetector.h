// Motion in a picture, by the brightness of its parts.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

/// The brightness of a picture: a byte a pixel, rows `stride` bytes apart.
struct Brightness
{
    const std::uint8_t* pixels;
    std::ptrdiff_t stride;
    int width;
    int height;
};

/// Compares the brightness of 32 rows of 24 cells, of each quarter of them, with the picture looked at before. Looks a few times a second
/// only, so that slow motion adds up between two looks and the pictures between cost nothing.
///
/// One thread at a time.
class MotionDetector
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::size_t rows = 32;
    static constexpr std::size_t columns = 24;
    static constexpr std::size_t cells = rows * columns;

    MotionDetector();

    /// Of all the cells, row by row; one is armed when its byte is 1 or '1', none at first.
    void setMap(const unsigned char* map);
    /// 1 to 100, higher is more sensitive, 50 at first; what lies beyond counts as the nearest.
    void setLevel(int level);
    /// The least time between two alarms, none at first.
    void setSpaceTime(int seconds);

    bool armed() const { return anyArmed_; }
    /// Whether it would look at a picture of this time.
    bool looksAt(Clock::time_point now) const;
    /// Whether something moved in an armed cell and an alarm is due.
    bool detect(const Brightness& picture, Clock::time_point now);
    /// Forgets the picture before: the next one is compared with none.
    void forget() { seen_ = false; }

private:
    /// Of the quarters of cells of the latest picture, in sixteenths.
    static constexpr std::size_t quarterRows = 2 * rows;
    static constexpr std::size_t quarterColumns = 2 * columns;
    using Means = std::array<int, quarterRows * quarterColumns>;

    bool isArmed(std::size_t quarterRow, std::size_t quarterColumn) const;
    Means meansOf(const Brightness& picture) const;
    bool moved(const Means& means) const;

    std::array<bool, cells> armed_ = {};
    bool anyArmed_ = false;
    int threshold_ = 0; // in sixteenths
    std::chrono::seconds spaceTime_{0};

    Means means_ = {};
    bool seen_ = false; // means_ are those of a picture
    int width_ = 0;     // of that picture
    int height_ = 0;
    Clock::time_point lastLook_;
    bool alarmed_ = false;
    Clock::time_point lastAlarm_;
};
