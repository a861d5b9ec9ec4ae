#include <cmath>
#include <mutex>
#include <optional>

#include "ipcctl/Playback.h"
#include "ipcctl/ipcctl.h"

struct CRecordPlayer::Impl
{
    explicit Impl(CRecordPlayer* player) : callBacks(std::make_shared<CallBacks>(player)) {}

    std::shared_ptr<Playback> current()
    {
        const std::lock_guard lock(mutex);
        return playback;
    }

    const std::shared_ptr<CallBacks> callBacks;
    std::mutex mutex;                   // guards playback
    std::shared_ptr<Playback> playback; // null: no file is open
};

namespace
{

constexpr int steps = 4; // each twice as fast, or as slow

std::optional<double> speedOf(int level)
{
    if (level == 0)
        return 1;
    if (level > 100 && level <= 100 + steps)
        return std::exp2(level - 100);
    if (level > 0 && level <= steps)
        return std::exp2(level - steps - 1);
    return std::nullopt;
}

int toMilliseconds(Playback::Time time)
{
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

} // namespace

CRecordPlayer::CRecordPlayer() : impl_(std::make_unique<Impl>(this)) {}

CRecordPlayer::~CRecordPlayer()
{
    Stop();
    impl_->callBacks->clear();
}

void CRecordPlayer::SetVideoBufCallBack(VideoBufCallBack callback, void* user)
{
    impl_->callBacks->setVideo(callback, user);
}

void CRecordPlayer::SetAudioBufCallBack(AudioBufCallBack callback, void* user)
{
    impl_->callBacks->setAudio(callback, user);
}

int CRecordPlayer::OpenFile(const char* path)
try {
    const auto playback = std::make_shared<Playback>(impl_->callBacks);
    if (path == nullptr || !playback->open(path))
        return -1;
    const std::lock_guard lock(impl_->mutex);
    if (impl_->playback != nullptr)
        return -1;
    playback->start();
    impl_->playback = playback;
    return 0;
} catch (const std::exception&) { // no memory, no thread
    return -1;
}

int CRecordPlayer::GetCurrTime()
{
    const auto playback = impl_->current();
    return playback != nullptr ? toMilliseconds(playback->position()) : 0;
}

int CRecordPlayer::GetDuration()
{
    const auto playback = impl_->current();
    return playback != nullptr ? toMilliseconds(playback->duration()) : 0;
}

int CRecordPlayer::IsPlayFinish()
{
    const auto playback = impl_->current();
    return playback == nullptr || playback->finished() ? 1 : 0;
}

void CRecordPlayer::SetSpeedLevel(int level)
{
    const auto playback = impl_->current();
    const auto speed = speedOf(level);
    if (playback != nullptr && speed)
        playback->setSpeed(*speed);
}

void CRecordPlayer::Pause()
{
    if (const auto playback = impl_->current())
        playback->setRunning(false);
}

void CRecordPlayer::Resume()
{
    if (const auto playback = impl_->current())
        playback->setRunning(true);
}

void CRecordPlayer::SeekTime(int milliseconds)
{
    if (const auto playback = impl_->current())
        playback->seek(std::chrono::milliseconds(milliseconds));
}

void CRecordPlayer::Stop()
{
    const auto playback = impl_->current();
    if (playback == nullptr)
        return;
    playback->stop();
    const std::lock_guard lock(impl_->mutex);
    if (impl_->playback == playback)
        impl_->playback.reset();
}
