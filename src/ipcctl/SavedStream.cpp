#include "ipcctl/SavedStream.h"

#include "ipcctl/StreamTiming.h"

SavedStream::SavedStream(StreamAddress address, const std::shared_ptr<CallBacks>& callBacks,
                         std::shared_ptr<SavePlace> place)
    : place_(std::move(place)), live_(std::make_shared<LiveStream>(std::move(address), callBacks)),
      images_(std::make_shared<ImageSaver>(place_))
{
    live_->video().attach(images_);
}

void SavedStream::stop()
{
    live_->stop();
    images_->saveNext(0);
    const std::lock_guard lock(mutex_);
    closed_ = true;
    if (recorder_ != nullptr)
        recordingEnds_ = completion(std::exchange(recorder_, nullptr));
    if (saver_ != nullptr)
        savingEnds_ = completion(std::exchange(saver_, nullptr));
}

void SavedStream::close(Errand::Clock::time_point until)
{
    stop();
    Errand recordingEnds;
    Errand savingEnds;
    {
        const std::lock_guard lock(mutex_);
        recordingEnds = std::move(recordingEnds_);
        savingEnds = std::move(savingEnds_);
    }
    live_->close(until);
    recordingEnds.finish(until);
    savingEnds.finish(until);
}

bool SavedStream::startRecording(const char* path)
{
    const auto recorder = std::make_shared<AviRecorder>();
    const bool named = path != nullptr && *path != '\0';
    if (isRecording() || !(named ? recorder->startAt(path) : recorder->startIn(place_->directory())))
        return false;
    const std::lock_guard lock(mutex_);
    if (closed_ || (latest_ != nullptr && latest_->recording()))
        return false;
    if (recorder_ != nullptr) // it ended by itself: the disk was full
        completion(recorder_).finish({});
    live_->packets().attach(recorder);
    latest_ = recorder_ = recorder;
    return true;
}

bool SavedStream::stopRecording()
{
    std::shared_ptr<AviRecorder> recorder;
    {
        const std::lock_guard lock(mutex_);
        recorder.swap(recorder_);
    }
    return recorder != nullptr && completion(recorder).finish(closingTime()) && recorder->isWhole();
}

bool SavedStream::isRecording() const
{
    const std::lock_guard lock(mutex_);
    return latest_ != nullptr && latest_->recording();
}

bool SavedStream::saveImages(int count)
{
    if (count < 1)
        return false;
    const FramePtr frame = live_->video().latestFrame(g_streamTiming.firstImage);
    if (frame == nullptr || !place_->saveImage(*frame))
        return false;
    images_->saveNext(count - 1);
    return true;
}

void SavedStream::watch(std::shared_ptr<AutoSaver> saver)
{
    const std::lock_guard lock(mutex_);
    if (closed_)
        return;
    live_->packets().attach(saver);
    live_->video().attach(saver);
    saver_ = std::move(saver);
}

Errand SavedStream::unwatch()
{
    const std::lock_guard lock(mutex_);
    return saver_ != nullptr ? completion(std::exchange(saver_, nullptr)) : Errand();
}

StreamStatus SavedStream::status() const
{
    StreamStatus status = live_->status();
    const std::lock_guard lock(mutex_);
    if (latest_ != nullptr) {
        status.recording = latest_->recording();
        status.recordedBytes = latest_->bytes();
        status.recordedFrames = latest_->frames();
    }
    if (saver_ != nullptr)
        saver_->addTo(status);
    return status;
}

Errand SavedStream::completion(std::shared_ptr<AviRecorder> recorder) const
{
    return Errand([live = live_, recorder = std::move(recorder)] {
        live->packets().detach(*recorder);
        recorder->stop();
    });
}

Errand SavedStream::completion(std::shared_ptr<AutoSaver> saver) const
{
    return Errand([live = live_, saver = std::move(saver)] {
        live->packets().detach(*saver);
        live->video().detach(*saver);
        saver->stop();
    });
}
