#include "ipcctl/CameraStreams.h"

#include <exception>
#include <utility>

#include "ipcctl/StreamTiming.h"

CameraStreams::CameraStreams(void* camera)
    : callBacks_(std::make_shared<CallBacks>(camera)), place_(std::make_shared<SavePlace>())
{
}

void CameraStreams::setTransport(StreamTransport transport)
{
    const std::lock_guard lock(mutex_);
    transport_ = transport;
}

void CameraStreams::setDecoding(Index index, bool enable)
{
    const std::lock_guard lock(mutex_);
    decoding_[index] = enable;
    if (streams_[index] != nullptr)
        streams_[index]->live().video().enable(enable);
}

void CameraStreams::setAutoSave(const std::function<void(AutoSaveSettings&)>& change)
{
    const std::lock_guard lock(watchMutex_);
    change(autoSave_);
    if (autoSaver_ != nullptr)
        autoSaver_->follow(autoSave_);
}

bool CameraStreams::open(Index index, StreamAddress address)
{
    const std::shared_ptr<SavedStream> stream = occupy(index, std::move(address));
    if (stream == nullptr)
        return false;
    bool open = false;
    try {
        open = stream->live().open();
    } catch (const std::exception&) { // the system has no more threads
    }
    open = settle(index, stream, open);
    watchChosen().finish(closingTime());
    return open;
}

/// A stream that can be closed from now on; null when there is one already.
std::shared_ptr<SavedStream> CameraStreams::occupy(Index index, StreamAddress address)
{
    const std::lock_guard lock(mutex_);
    if (streams_[index] != nullptr)
        return nullptr;
    address.transport = transport_;
    auto stream = std::make_shared<SavedStream>(std::move(address), callBacks_, place_);
    stream->live().video().enable(decoding_[index]);
    streams_[index] = stream;
    return stream;
}

/// Whether the stream is open now: it may have been closed meanwhile.
bool CameraStreams::settle(Index index, const std::shared_ptr<SavedStream>& stream, bool open)
{
    const std::lock_guard lock(mutex_);
    if (streams_[index] != stream)
        return false;
    if (!open)
        streams_[index].reset();
    return open;
}

void CameraStreams::close(Index index, std::chrono::steady_clock::time_point until)
{
    std::shared_ptr<SavedStream> stream;
    {
        const std::lock_guard lock(mutex_);
        stream.swap(streams_[index]);
    }
    if (stream == nullptr)
        return;
    stream->close(until);
    watchChosen().finish(until);
}

void CameraStreams::stop()
{
    std::unique_lock lock(mutex_);
    const auto streams = streams_;
    lock.unlock();
    for (const auto& stream : streams)
        if (stream != nullptr)
            stream->stop();
}

std::shared_ptr<SavedStream> CameraStreams::find(Index index) const
{
    const std::lock_guard lock(mutex_);
    const auto& stream = streams_[index];
    return stream != nullptr && stream->live().opened() ? stream : nullptr;
}

std::shared_ptr<SavedStream> CameraStreams::choose(int stream) const
{
    auto chosen = stream != 0 ? find(Main) : nullptr;
    return chosen != nullptr ? chosen : find(Sub);
}

std::shared_ptr<SavedStream> CameraStreams::chooseRecorded(int stream) const
{
    const auto main = stream != 0 ? find(Main) : nullptr;
    if (main != nullptr && main->isRecording())
        return main;
    const auto sub = find(Sub);
    return sub != nullptr && sub->isRecording() ? sub : nullptr;
}

bool CameraStreams::status(Index index, StreamStatus& status) const
{
    const std::shared_ptr<SavedStream> stream = find(index);
    status = stream != nullptr ? stream->status() : StreamStatus{};
    return stream != nullptr;
}

/// Stream 1 may be another one than before. What was being saved of that ends.
Errand CameraStreams::watchChosen()
{
    const std::lock_guard lock(watchMutex_);
    std::shared_ptr<SavedStream> stream = choose(1);
    if (stream == watched_)
        return {};
    Errand savingEnds = watched_ != nullptr ? watched_->unwatch() : Errand();
    autoSaver_ = stream != nullptr ? std::make_shared<AutoSaver>(place_, autoSave_) : nullptr;
    if (stream != nullptr)
        stream->watch(autoSaver_);
    watched_ = std::move(stream);
    return savingEnds;
}
