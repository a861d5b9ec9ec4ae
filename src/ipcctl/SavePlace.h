// Where a camera's recordings and pictures are saved.
#pragma once

#include <mutex>
#include <string>

#include "ipcctl/Av.h"

/// Shared by the camera and by what saves on its streams' readers. Every member may be called from any thread.
class SavePlace
{
public:
    /// Empty: the working directory.
    void setDirectory(std::string directory);
    std::string directory() const;

    /// Saves a picture, named after the time; false when it can not be saved.
    bool saveImage(const AVFrame& frame);
    /// The path of the picture that was saved last; empty when there is none.
    std::string lastImage() const;

private:
    mutable std::mutex mutex_; // guards what follows; not held while something is saved
    std::string directory_;
    std::string lastImage_;
};
