// A live stream with what is saved of it.
#pragma once

#include <memory>
#include <mutex>

#include "ipcctl/AutoSaver.h"
#include "ipcctl/AviRecorder.h"
#include "ipcctl/Errand.h"
#include "ipcctl/ImageSaver.h"
#include "ipcctl/LiveStream.h"
#include "ipcctl/SavePlace.h"

/// Every member may be called from any thread, also from within a callback. Recordings are completed by errands, so that
/// a disk that hangs holds up nothing for longer than the closing of a stream may take.
class SavedStream
{
public:
    SavedStream(StreamAddress address, const std::shared_ptr<CallBacks>& callBacks,
                std::shared_ptr<SavePlace> place);

    LiveStream& live() { return *live_; }
    const LiveStream& live() const { return *live_; }
    /// Ends the stream and its recordings, for good; does not wait for it.
    void stop();
    /// Stops, and waits up to this time.
    void close(Errand::Clock::time_point until);

    /// False: it is being recorded or closed, or the file can not be made.
    bool startRecording(const char* path);
    /// False: it is not being recorded, or the file did not become whole in time.
    bool stopRecording();
    bool isRecording() const;
    /// The latest picture, and the next ones up to the count as they come. False when the first is not saved.
    bool saveImages(int count);

    /// From now on this one decides what is saved without being asked for. Never waits.
    void watch(std::shared_ptr<AutoSaver> saver);
    /// Ends that, as far as it was not ended with the stream.
    [[nodiscard]] Errand unwatch();

    StreamStatus status() const;

private:
    Errand completion(std::shared_ptr<AviRecorder> recorder) const;
    Errand completion(std::shared_ptr<AutoSaver> saver) const;

    const std::shared_ptr<SavePlace> place_;
    const std::shared_ptr<LiveStream> live_;
    const std::shared_ptr<ImageSaver> images_;

    mutable std::mutex mutex_; // guards what follows; never held while something is saved
    bool closed_ = false;
    std::shared_ptr<AviRecorder> recorder_; // attached; null: none
    std::shared_ptr<AviRecorder> latest_;   // that one or the one before
    std::shared_ptr<AutoSaver> saver_;      // attached; null: none
    Errand recordingEnds_;
    Errand savingEnds_;
};
