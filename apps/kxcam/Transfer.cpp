#include "Transfer.h"

#include <chrono>

#include <KxIpcSDK/KxSdk.h>
#include <KxIpcSDK/KxStorage.h>

#include "Amounts.h"
#include "Interruption.h"
#include "Progress.h"

namespace kxcam
{
namespace
{

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds redraw{100};

std::string durationText(double seconds)
{
    const auto whole = static_cast<long>(seconds + 0.5);
    const std::string rest = std::to_string(whole % 60) + " s";
    return whole < 60 ? rest : std::to_string(whole / 60) + " min " + rest;
}

/// Told of a transfer by the SDK, on this thread.
class Monitor
{
public:
    Monitor(const SignalHold& signals, bool json, Console& console)
        : signals_(signals), line_(json, console, ProgressLine::Nothing)
    {
        Kx_Sdk_SetTransferCallBack(report, this);
    }
    ~Monitor() { Kx_Sdk_SetTransferCallBack(nullptr, nullptr); }
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    std::uint64_t done() const { return done_; }
    std::uint64_t total() const { return total_; }

private:
    static int report(long /*userId*/, std::uint64_t done, std::uint64_t total, void* monitor) noexcept
    {
        auto& self = *static_cast<Monitor*>(monitor);
        self.done_ = done;
        self.total_ = total;
        self.draw();
        return self.signals_.hasCome() ? 1 : 0;
    }

    void draw()
    {
        const Clock::time_point now = Clock::now();
        const bool last = total_ > 0 && done_ >= total_;
        if (now - drawn_ < redraw && !last)
            return;
        drawn_ = now;
        line_.show(last ? barOf(done_, total_) + " " + sizeText(done_) + ", waiting for the camera"
                        : underWay(std::chrono::duration<double>(now - begin_).count()));
    }

    std::string underWay(double seconds) const
    {
        const double rate = seconds > 0 ? static_cast<double>(done_) / seconds : 0;
        const std::string speed = ", " + sizeText(static_cast<std::uint64_t>(rate)) + "/s";
        if (total_ == 0)
            return sizeText(done_) + speed;
        const std::string left =
            rate > 0 ? ", " + durationText(static_cast<double>(total_ - done_) / rate) + " left" : "";
        return barOf(done_, total_) + " " + sizeText(done_) + " of " + sizeText(total_) + speed + left;
    }

    const SignalHold& signals_;
    ProgressLine line_;
    std::uint64_t done_ = 0;
    std::uint64_t total_ = 0;
    Clock::time_point begin_ = Clock::now();
    Clock::time_point drawn_{};
};

} // namespace

Transferred runTransfer(const std::function<int()>& call, bool json, const std::string& whenStopped,
                        Console& console)
{
    const SignalHold signals;
    const long errorBefore = Kx_Sdk_GetLastError(); // only a failure leaves a new one
    Transferred end;
    {
        Monitor monitor(signals, json, console);
        end.succeeded = call() == 0;
        end.bytes = monitor.done();
        end.total = monitor.total();
    }
    if (!end.succeeded && signals.hasCome())
        throw Interruption(whenStopped);
    end.hasCode = Kx_Sdk_GetLastError() != errorBefore;
    return end;
}

} // namespace kxcam
