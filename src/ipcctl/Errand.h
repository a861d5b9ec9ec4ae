// Work that hangs as long as a disk does.
#pragma once

#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <thread>
#include <utility>

/// Does it on a thread of its own, which is left to itself when it takes too long: what the work needs must belong to it.
/// Where the system has no more threads, it is done on this one.
class Errand
{
public:
    using Clock = std::chrono::steady_clock;

    /// Nothing to do.
    Errand() = default;

    template <typename Work>
    explicit Errand(Work work)
    {
        try {
            const auto task = std::make_shared<std::packaged_task<void()>>(work);
            done_ = task->get_future();
            thread_ = std::thread([task] { (*task)(); });
        } catch (const std::exception&) {
            done_ = {};
            work();
        }
    }

    ~Errand() { finish({}); }
    Errand(Errand&&) = default;
    Errand& operator=(Errand&& other)
    {
        finish({});
        done_ = std::move(other.done_);
        thread_ = std::move(other.thread_);
        return *this;
    }

    /// False when it is not done in time.
    bool finish(Clock::time_point end)
    {
        if (!thread_.joinable())
            return true;
        const bool done = done_.wait_until(end) == std::future_status::ready;
        if (done)
            thread_.join();
        else
            thread_.detach();
        return done;
    }

private:
    std::future<void> done_;
    std::thread thread_;
};
