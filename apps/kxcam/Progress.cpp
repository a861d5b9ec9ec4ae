#include "Progress.h"

#include <algorithm>

namespace kxcam
{

std::string barOf(std::uint64_t done, std::uint64_t total)
{
    constexpr std::size_t width = 40;
    const auto full = static_cast<std::size_t>(total > 0 ? std::min(done, total) * width / total : 0);
    std::string bar = "[";
    bar.append(full, '#').append(width - full, '-').append("]");
    return bar;
}

ProgressLine::~ProgressLine()
{
    if (shown_ > 0)
        console_.printNow("\n");
}

void ProgressLine::show(const std::string& text)
{
    const std::string rest(shown_ - std::min(shown_, text.size()), ' '); // of a longer text before
    console_.printNow("\r" + text + rest);
    shown_ = text.size();
}

} // namespace kxcam
