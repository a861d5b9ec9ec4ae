#include "ipcctl/MotionDetector.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace
{

constexpr std::chrono::milliseconds lookPause{180};
constexpr int sixteenths = 16;
constexpr int samplesAcross = 8;  // of a quarter, each way: enough for a sensor's noise to cancel out
constexpr double leastChange = 1; // of a quarter's brightness, at the highest level
constexpr double mostChange = 64; // at the lowest
constexpr double noise = 20;      // that is added to it, over the root of the number of samples
constexpr int highestLevel = 100;

/// The pixels of a part in one direction; one of a tiny picture has one pixel, which others share.
struct Span
{
    int begin;
    int end;
    int step;
};

Span spanOf(std::size_t part, std::size_t count, int pixels)
{
    const int begin = static_cast<int>(part * static_cast<std::size_t>(pixels) / count);
    const int end = static_cast<int>((part + 1) * static_cast<std::size_t>(pixels) / count);
    const int size = std::max(end - begin, 1);
    return {begin, begin + size, std::max(size / samplesAcross, 1)};
}

int samplesOf(const Span& span)
{
    return (span.end - span.begin + span.step - 1) / span.step;
}

int meanOf(const Brightness& picture, const Span& across, const Span& down)
{
    unsigned sum = 0;
    unsigned count = 0;
    for (int y = down.begin; y < down.end; y += down.step) {
        const std::uint8_t* row = picture.pixels + y * picture.stride;
        for (int x = across.begin; x < across.end; x += across.step, ++count)
            sum += row[x];
    }
    return static_cast<int>(sum * sixteenths / count);
}

/// Even steps of the level are even factors of the change, as people perceive them.
int thresholdOf(int level)
{
    const double least = highestLevel - std::clamp(level, 1, highestLevel);
    const double change = leastChange * std::pow(mostChange / leastChange, least / (highestLevel - 1));
    return static_cast<int>(change * sixteenths);
}

} // namespace

MotionDetector::MotionDetector()
{
    setLevel(highestLevel / 2);
}

void MotionDetector::setMap(const unsigned char* map)
{
    std::transform(map, map + cells, armed_.begin(),
                   [](unsigned char cell) { return cell == 1 || cell == '1'; });
    anyArmed_ = std::find(armed_.begin(), armed_.end(), true) != armed_.end();
    forget(); // what is armed only now was not looked at
}

void MotionDetector::setLevel(int level)
{
    threshold_ = thresholdOf(level);
}

void MotionDetector::setSpaceTime(int seconds)
{
    spaceTime_ = std::chrono::seconds(std::max(seconds, 0));
}

bool MotionDetector::looksAt(Clock::time_point now) const
{
    return anyArmed_ && (!seen_ || now - lastLook_ >= lookPause);
}

bool MotionDetector::detect(const Brightness& picture, Clock::time_point now)
{
    if (!looksAt(now) || picture.width < 1 || picture.height < 1)
        return false;
    const Means means = meansOf(picture);
    const bool comparable = seen_ && picture.width == width_ && picture.height == height_;
    const bool due = !alarmed_ || now - lastAlarm_ >= spaceTime_;
    const bool alarm = comparable && due && moved(means);
    means_ = means;
    width_ = picture.width;
    height_ = picture.height;
    seen_ = true;
    lastLook_ = now;
    if (alarm) {
        alarmed_ = true;
        lastAlarm_ = now;
    }
    return alarm;
}

bool MotionDetector::isArmed(std::size_t quarterRow, std::size_t quarterColumn) const
{
    return armed_[quarterRow / 2 * columns + quarterColumn / 2];
}

MotionDetector::Means MotionDetector::meansOf(const Brightness& picture) const
{
    Means means = {};
    for (std::size_t row = 0; row < quarterRows; ++row) {
        const Span down = spanOf(row, quarterRows, picture.height);
        for (std::size_t column = 0; column < quarterColumns; ++column) {
            if (isArmed(row, column))
                means[row * quarterColumns + column] =
                    meanOf(picture, spanOf(column, quarterColumns, picture.width), down);
        }
    }
    return means;
}

bool MotionDetector::moved(const Means& means) const
{
    const int samples =
        samplesOf(spanOf(0, quarterRows, height_)) * samplesOf(spanOf(0, quarterColumns, width_));
    const int threshold = threshold_ + static_cast<int>(sixteenths * noise / std::sqrt(samples));
    for (std::size_t quarter = 0; quarter < means.size(); ++quarter) {
        if (std::abs(means[quarter] - means_[quarter]) > threshold)
            return true;
    }
    return false;
}
