// One transfer's line to the application that watches it.
#pragma once

#include <cstdint>

#include "Core/TransferWatcher.h"

/// Tells the watcher that is in force now, whoever comes after it, of this transfer.
class TransferWatch
{
public:
    explicit TransferWatch(long userId) : watcher_(transferWatcher()), userId_(userId) {}

    bool watched() const { return watcher_.callback != nullptr; }

    /// How many bytes there are in all; 0, as long as nothing is said: not known.
    void expect(std::uint64_t total) { total_ = total; }

    /// Tells of that many more bytes; of none: that the transfer waits. False once the application wants it stopped.
    bool advance(std::uint64_t bytes = 0)
    {
        done_ += bytes;
        if (!stopped_ && watched())
            stopped_ = watcher_.callback(userId_, done_, total_, watcher_.user) != 0;
        return !stopped_;
    }

    bool stopped() const { return stopped_; }

private:
    TransferWatcher watcher_;
    long userId_;
    std::uint64_t done_ = 0;
    std::uint64_t total_ = 0;
    bool stopped_ = false;
};
