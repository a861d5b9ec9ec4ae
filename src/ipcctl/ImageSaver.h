// The next pictures of a stream, saved as they come.
#pragma once

#include <atomic>
#include <memory>

#include "ipcctl/PacketSink.h"
#include "ipcctl/SavePlace.h"

class ImageSaver final : public FrameSink
{
public:
    explicit ImageSaver(std::shared_ptr<SavePlace> place) : place_(std::move(place)) {}

    /// So many pictures from now on; those that were to be saved before are forgotten.
    void saveNext(int count) { left_ = count; }

    bool wantsFrames() const override { return left_ > 0; }
    void takeFrame(const AVFrame& frame) override
    {
        --left_;
        place_->saveImage(frame);
    }

private:
    const std::shared_ptr<SavePlace> place_;
    std::atomic<int> left_{0};
};
