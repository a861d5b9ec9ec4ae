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

ProgressLine::ProgressLine(bool json, Console& console, Elsewhere elsewhere)
    : console_(console), visible_(!json && (elsewhere == LineEach || console.isTerminal())),
      redraws_(visible_ && console.isTerminal())
{
}

void ProgressLine::show(const std::string& text)
{
    if (!visible_ || text == shown_)
        return;
    const std::string rest(shown_.size() - std::min(shown_.size(), text.size()),
                           ' '); // of a longer text before
    console_.printNow(redraws_ ? "\r" + text + rest : text + "\n");
    shown_ = text;
}

void ProgressLine::finish()
{
    if (redraws_ && !shown_.empty())
        console_.printNow("\n");
    shown_.clear();
}

} // namespace kxcam
