// What has come to the camera, for whoever asks or listens.
#pragma once

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace kxsim
{

/// Every member may be called from any thread, by the listener too.
template <typename Entry>
class Journal
{
public:
    using Listener = std::function<void(const Entry&)>;

    void add(const Entry& entry)
    {
        Listener listener;
        {
            const std::lock_guard lock(mutex_);
            entries_.push_back(entry);
            listener = listener_;
        }
        if (listener)
            listener(entry);
    }

    std::vector<Entry> entries() const
    {
        const std::lock_guard lock(mutex_);
        return entries_;
    }

    void clear()
    {
        const std::lock_guard lock(mutex_);
        entries_.clear();
    }

    /// Called with each entry from now on.
    void onEntry(Listener listener)
    {
        const std::lock_guard lock(mutex_);
        listener_ = std::move(listener);
    }

private:
    mutable std::mutex mutex_;
    std::vector<Entry> entries_;
    Listener listener_;
};

} // namespace kxsim
