// The main and the sub stream of a camera.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

#include "ipcctl/AutoSaver.h"
#include "ipcctl/CallBacks.h"
#include "ipcctl/SavePlace.h"
#include "ipcctl/SavedStream.h"

/// Every member may be called from any thread, also from within a callback. Nothing is waited for under the mutex.
class CameraStreams
{
public:
    enum Index : std::size_t
    {
        Main,
        Sub
    };

    /// @param camera  told to the callbacks
    explicit CameraStreams(void* camera);

    CallBacks& callBacks() { return *callBacks_; }
    SavePlace& place() { return *place_; }
    /// Changes what is saved without being asked for.
    void setAutoSave(const std::function<void(AutoSaveSettings&)>& change);

    void setTransport(StreamTransport transport);
    /// Stays when the stream is closed.
    void setDecoding(Index index, bool enable);

    /// False: the camera did not agree in time, or the stream is open or being opened.
    bool open(Index index, StreamAddress address);
    /// Harmless when it is not open. Waits up to this time.
    void close(Index index, std::chrono::steady_clock::time_point until);
    /// Has both streams end, without waiting for them; they are to be closed then.
    void stop();

    /// Null when it is not open.
    std::shared_ptr<SavedStream> find(Index index) const;
    /// What applications call stream 1, the main stream or in its absence the sub stream, and 0, the sub stream.
    std::shared_ptr<SavedStream> choose(int stream) const;
    /// Of these, the one that is being recorded; null when none is.
    std::shared_ptr<SavedStream> chooseRecorded(int stream) const;
    /// False, and zeros, when it is not open.
    bool status(Index index, StreamStatus& status) const;

private:
    std::shared_ptr<SavedStream> occupy(Index index, StreamAddress address);
    bool settle(Index index, const std::shared_ptr<SavedStream>& stream, bool open);
    [[nodiscard]] Errand watchChosen();

    const std::shared_ptr<CallBacks> callBacks_;
    const std::shared_ptr<SavePlace> place_;

    mutable std::mutex mutex_; // guards what follows
    std::array<std::shared_ptr<SavedStream>, 2>
        streams_; // from when they are to be opened until they are closed
    std::array<bool, 2> decoding_{true, true};
    StreamTransport transport_ = StreamTransport::Tcp;

    std::mutex watchMutex_; // guards what follows; taken before mutex_
    AutoSaveSettings autoSave_;
    std::shared_ptr<AutoSaver> autoSaver_; // of the watched stream
    std::shared_ptr<SavedStream> watched_; // stream 1
};
