#include "ipcctl/RateMeter.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double jitter =
    0.015; // of a measured rate: cameras' time stamps are not better, and RTCP corrects them
constexpr double exact = 0.0002;
constexpr double televisionRates[] = {24, 30, 60}; // a thousandth slower

bool isWithin(double tolerance, double rate, double other)
{
    return std::abs(rate - other) <= tolerance * other;
}

AVRational usualRate(double rate)
{
    for (const double whole : televisionRates)
        if (isWithin(exact, rate, whole * 1000 / 1001))
            return {static_cast<int>(whole) * 1000, 1001};
    const int steps = rate < 15 ? 2 : 1; // half frames a second make no difference to high rates
    const int usual = static_cast<int>(std::lround(rate * steps));
    if (isWithin(jitter, rate, static_cast<double>(usual) / steps))
        return usual % steps == 0 ? AVRational{usual / steps, 1} : AVRational{usual, steps};
    return av_d2q(rate, 1000);
}

} // namespace

void RateMeter::add(double time)
{
    times_[count_++ % most] = time;
}

AVRational RateMeter::get() const
{
    if (count_ < fewest)
        return {0, 1};
    const std::size_t kept = std::min(count_, most);
    const double span = times_[(count_ - 1) % most] - times_[(count_ - kept) % most];
    if (span <= 0)
        return {0, 1};
    return usualRate(static_cast<double>(kept - 1) * 1000 / span);
}
