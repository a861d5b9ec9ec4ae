#include "ipcctl/SavePlace.h"

#include <chrono>

#include "ipcctl/Snapshot.h"

void SavePlace::setDirectory(std::string directory)
{
    const std::lock_guard lock(mutex_);
    directory_ = std::move(directory);
}

std::string SavePlace::directory() const
{
    const std::lock_guard lock(mutex_);
    return directory_;
}

bool SavePlace::saveImage(const AVFrame& frame)
{
    std::string path = saveSnapshot(frame, directory(), std::chrono::system_clock::now());
    if (path.empty())
        return false;
    const std::lock_guard lock(mutex_);
    lastImage_ = std::move(path);
    return true;
}

std::string SavePlace::lastImage() const
{
    const std::lock_guard lock(mutex_);
    return lastImage_;
}
