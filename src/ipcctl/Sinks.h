// What is attached to a stream.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

/// Calls sinks one after the other, on one thread at a time. No mutex is held meanwhile: a sink that hangs, because a
/// disk does, keeps whoever detaches it waiting and nobody else.
template <typename Sink>
class Sinks
{
public:
    void attach(std::shared_ptr<Sink> sink)
    {
        const std::lock_guard lock(mutex_);
        sinks_.push_back(std::move(sink));
    }

    /// Returns when no call of it is running and none will come. Harmless when it is not attached.
    template <typename IsIt>
    void detach(IsIt isIt)
    {
        std::unique_lock lock(mutex_);
        for (auto& sink : sinks_)
            if (sink != nullptr && isIt(*sink))
                sink.reset(); // its place is kept for the caller, who counts
        returned_.wait(lock, [&] { return called_ == nullptr || !isIt(*called_); });
    }

    /// The question must be answered at once.
    template <typename Question>
    bool any(Question question)
    {
        const std::lock_guard lock(mutex_);
        return std::ranges::any_of(sinks_,
                                   [&](const auto& sink) { return sink != nullptr && question(*sink); });
    }

    template <typename Call>
    void each(Call call)
    {
        std::unique_lock lock(mutex_);
        for (std::size_t i = 0; i < sinks_.size(); ++i) {
            const std::shared_ptr<Sink> sink = sinks_[i];
            if (sink == nullptr)
                continue;
            const Turn turn(*this, lock, *sink);
            call(*sink);
        }
        std::erase(sinks_, nullptr);
    }

private:
    /// A call, without the lock.
    class Turn
    {
    public:
        Turn(Sinks& sinks, std::unique_lock<std::mutex>& lock, Sink& called) : sinks_(sinks), lock_(lock)
        {
            sinks_.called_ = &called;
            lock_.unlock();
        }
        ~Turn()
        {
            lock_.lock();
            sinks_.called_ = nullptr;
            sinks_.returned_.notify_all();
        }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        Sinks& sinks_;
        std::unique_lock<std::mutex>& lock_;
    };

    std::mutex mutex_; // guards what follows
    std::condition_variable returned_;
    std::vector<std::shared_ptr<Sink>> sinks_; // null: detached
    const Sink* called_ = nullptr;
};
