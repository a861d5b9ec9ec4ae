#include "Core/TransferWatcher.h"

#include <mutex>

namespace
{

std::mutex watcherMutex; // asked for once a transfer, and never held while the callback runs
TransferWatcher current;

} // namespace

void setTransferWatcher(const TransferWatcher& watcher)
{
    const std::lock_guard lock(watcherMutex);
    current = watcher;
}

TransferWatcher transferWatcher()
{
    const std::lock_guard lock(watcherMutex);
    return current;
}
