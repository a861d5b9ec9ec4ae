// The library's threads take signals as well as this one, so they are caught instead of blocked.
#include "Interruption.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <iterator>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace kxcam
{
namespace
{

constexpr int held[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};
constexpr std::size_t suspensions = 1; // the last one

std::atomic<int> arrived{0}; // the first signal that came
std::atomic<int> wakeUpDescriptor{-1};
struct sigaction before[std::size(held)];

extern "C" void noteSignal(int signal)
{
    const int error = errno;
    int none = 0;
    arrived.compare_exchange_strong(none, signal);
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUpDescriptor, &one, sizeof one);
    errno = error;
}

} // namespace

SignalHold::SignalHold(Suspension suspension)
    : wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      count_(std::size(held) - (suspension == Held ? 0 : suspensions))
{
    if (!wakeUp_)
        throw Failure(ExitCode::ThisComputer, "signals can not be waited for");
    arrived = 0;
    wakeUpDescriptor = wakeUp_.get();
    struct sigaction noting = {};
    noting.sa_handler = noteSignal;
    noting.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < count_; ++i) {
        sigaction(held[i], nullptr, &before[i]);
        if (before[i].sa_handler != SIG_IGN)
            sigaction(held[i], &noting, nullptr);
    }
}

SignalHold::~SignalHold()
{
    restore();
}

void SignalHold::restore()
{
    for (std::size_t i = 0; i < count_; ++i)
        sigaction(held[i], &before[i], nullptr);
    count_ = 0;
}

bool SignalHold::pause(std::chrono::milliseconds time) const
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + time;
    pollfd wait{wakeUp_.get(), POLLIN, 0};
    int result = -1;
    do {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        result = poll(&wait, 1, static_cast<int>(std::max<long>(left, 0)));
    } while (result < 0 && errno == EINTR);
    return hasCome();
}

bool SignalHold::hasCome() const
{
    return arrived != 0;
}

void SignalHold::letThrough()
{
    restore();
    Interruption::endBySignal();
}

void Interruption::endBySignal()
{
    if (arrived != 0)
        raise(arrived);
}

} // namespace kxcam
