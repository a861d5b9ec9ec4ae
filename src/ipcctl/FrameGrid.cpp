#include "ipcctl/FrameGrid.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{

constexpr double second = 1e6;
constexpr double slowest = 0.01; // frames in a second
constexpr double fastest = 1000;
constexpr std::size_t enoughTimes = 25;
constexpr double surelyOne = 1.8; // periods between two frames between which none is missing
constexpr double onTime = 0.5;    // in periods: what is less late or early is jitter
constexpr double tooLate = 1.5;   // as much means that frames are missing
constexpr double stillLate = .7;  // so does this much, for so many frames in a row
constexpr int manyLate = 4;
constexpr double phaseGain =
    0.1; // how fast the grid follows the frames; the second is critical damping for the first
constexpr double periodGain = phaseGain * phaseGain / 4;

/// The median of the distances between times that follow one another.
double usualDistance(const std::vector<double>& times)
{
    std::vector<double> distances(times.size());
    std::adjacent_difference(times.begin(), times.end(), distances.begin());
    const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
    std::nth_element(distances.begin() + 1, middle, distances.end());
    return *middle;
}

/// The straight line through points that has the least squares of distances: y = offset + slope * x.
struct Line
{
    double offset;
    double slope;
};

Line lineThrough(const std::vector<double>& xs, const std::vector<double>& ys)
{
    const auto count = static_cast<double>(xs.size());
    const double meanX = std::accumulate(xs.begin(), xs.end(), 0.0) / count;
    const double meanY = std::accumulate(ys.begin(), ys.end(), 0.0) / count;
    double covariance = 0;
    double variance = 0;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        covariance += (xs[i] - meanX) * (ys[i] - meanY);
        variance += (xs[i] - meanX) * (xs[i] - meanX);
    }
    const double slope = covariance / variance;
    return {meanY - slope * meanX, slope};
}

} // namespace

FrameGrid::FrameGrid(AVRational nominal) : nominal_(nominal) {}

std::int64_t FrameGrid::place(Microseconds time)
{
    if (next_ == 0)
        first_ = latest_ = time;
    latest_ = std::max(latest_, time);
    if (period_ == 0) {
        learn(static_cast<double>(time));
        return next_++;
    }
    const double late = (static_cast<double>(time) - expected_) / period_;
    const std::int64_t empty = missing(late);
    next_ += empty;
    expected_ += static_cast<double>(empty + 1) * period_;
    follow(late - static_cast<double>(empty));
    return next_++;
}

void FrameGrid::learn(double time)
{
    if (times_.empty() || time > times_.back())
        times_.push_back(time);
    if (times_.size() < enoughTimes)
        return;
    const double usual = usualDistance(times_);
    std::vector<double> numbers{0};
    for (std::size_t i = 1; i < times_.size(); ++i) {
        const double distance = (times_[i] - times_[i - 1]) / usual;
        numbers.push_back(numbers.back() + (distance < surelyOne ? 1 : std::round(distance)));
    }
    const Line line = lineThrough(numbers, times_);
    period_ = line.slope;
    expected_ = line.offset + static_cast<double>(next_ + 1) * period_;
    times_ = {};
}

std::int64_t FrameGrid::missing(double late)
{
    lateFrames_ = late >= stillLate ? lateFrames_ + 1 : 0;
    if (late < tooLate && lateFrames_ < manyLate)
        return 0;
    lateFrames_ = 0;
    return std::min<std::int64_t>(std::llround(late), longestLeap);
}

void FrameGrid::follow(double late)
{
    if (std::abs(late) >= onTime)
        return;
    expected_ += phaseGain * late * period_;
    period_ += periodGain * late * period_;
}

/// The usual rate that the measured one is within the grid's precision, or the measured one.
AVRational FrameGrid::rate() const
{
    const double duration = static_cast<double>(latest_ - first_) / second;
    if (next_ < 2 || duration <= 0)
        return nominal_;
    const double measured = std::clamp(static_cast<double>(next_ - 1) / duration, slowest, fastest);
    const auto near = [&](int unit, int seconds) {
        return AVRational{static_cast<int>(std::lround(measured * seconds / unit)) * unit, seconds};
    };
    for (const double tolerance : {0.01, 0.25, 1.0}) { // in frames, at the end of the recording
        for (const AVRational usual : {near(1, 1), near(30'000, 1001), near(24'000, 1001), near(1, 2)}) {
            const double frames = duration * av_q2d(usual);
            if (std::abs(static_cast<double>(next_ - 1) - frames) < tolerance)
                return usual;
        }
    }
    return {static_cast<int>(std::lround(measured * second)), static_cast<int>(second)};
}
