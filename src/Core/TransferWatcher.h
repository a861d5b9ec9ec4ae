// Who watches file transfers: one for the process.
#pragma once

#include <cstdint>

/// Told of a transfer's progress, on the thread that runs it. Not 0: the transfer is to stop.
using TransferCallback = int (*)(long userId, std::uint64_t done, std::uint64_t total, void* user);

struct TransferWatcher
{
    TransferCallback callback = nullptr; // null: nobody watches
    void* user = nullptr;
};

/// Takes the place of the watcher before, both members at once. Safe from any thread.
void setTransferWatcher(const TransferWatcher& watcher);

TransferWatcher transferWatcher();
