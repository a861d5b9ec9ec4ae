#include "ipcctl_stand_in.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <utility>

namespace
{

std::mutex mutex; // guards what follows
std::vector<standin::Call> calls;
std::map<int, std::shared_ptr<CIpCamera>> cameras;
std::map<int, std::shared_ptr<standin::Receivers>> cameraReceivers;
standin::Behaviour current;
int players = 0;
std::weak_ptr<standin::Receivers> playerReceivers;

std::string argument(const char* text)
{
    return text != nullptr ? text : "null";
}

template <typename Number>
std::string argument(Number number)
{
    return std::to_string(number);
}

std::string argument(bool set)
{
    return set ? "1" : "0";
}

template <typename... Arguments>
void note(const char* name, Arguments... arguments)
{
    std::string list;
    ((list += (list.empty() ? "" : ", ") + argument(arguments)), ...);
    const std::lock_guard lock(mutex);
    calls.push_back({std::string(name) + "(" + list + ")", std::chrono::steady_clock::now()});
}

/// A callback that is set waits for the one that is running, on other threads.
template <typename CallBack>
class Receiver
{
public:
    void set(CallBack callback, void* user)
    {
        const std::lock_guard lock(running_);
        callback_ = callback;
        user_ = user;
    }

    template <typename... Arguments>
    int send(Arguments... arguments)
    {
        const std::lock_guard lock(running_);
        return callback_ != nullptr ? callback_(nullptr, user_, arguments...) : 0;
    }

private:
    std::recursive_mutex running_;
    CallBack callback_ = nullptr;
    void* user_ = nullptr;
};

/// Sets and clears are told apart; what is set is seen by the frames that come.
template <typename CallBack>
void set(Receiver<CallBack>& receiver, const char* name, CallBack callback, void* user)
{
    note(name, callback != nullptr ? "handler" : "null");
    receiver.set(callback, user);
}

int open()
{
    std::unique_lock lock(mutex);
    const auto hook = std::exchange(current.whileOpening, nullptr);
    const int result = current.openResult;
    lock.unlock();
    if (hook)
        hook();
    return result;
}

} // namespace

struct standin::Receivers
{
    Receiver<VideoBufCallBack> video;
    Receiver<AudioBufCallBack> audio;
};

namespace standin
{

void reset()
{
    const std::lock_guard lock(mutex);
    calls.clear();
    current = {};
}

Behaviour& behaviour()
{
    return current;
}

std::vector<Call> takeCalls()
{
    const std::lock_guard lock(mutex);
    return std::exchange(calls, {});
}

std::vector<std::string> takeTexts()
{
    std::vector<std::string> texts;
    for (Call& call : takeCalls())
        texts.push_back(std::move(call.text));
    return texts;
}

int livingPlayers()
{
    const std::lock_guard lock(mutex);
    return players;
}

std::shared_ptr<Receivers> receiversOf(long userId)
{
    const std::lock_guard lock(mutex);
    const auto found = cameraReceivers.find(static_cast<int>(userId));
    return found != cameraReceivers.end() ? found->second : nullptr;
}

std::shared_ptr<Receivers> lastPlayer()
{
    const std::lock_guard lock(mutex);
    return playerReceivers.lock();
}

int sendPicture(Receivers& receivers, unsigned char* frame, int width, int height)
{
    return receivers.video.send(frame, width, height, 0, 25.0F);
}

int sendSound(Receivers& receivers, short* samples, int count)
{
    return receivers.audio.send(samples, count, 1);
}

} // namespace standin

namespace
{

std::shared_ptr<standin::Receivers> latest; // those of the camera object made last

} // namespace

struct CIpCamera::Impl
{
    std::shared_ptr<standin::Receivers> receivers = std::make_shared<standin::Receivers>();
    std::atomic<bool> mainOpen{false};
    std::atomic<bool> subOpen{false};
};

CIpCamera::CIpCamera() : impl_(std::make_unique<Impl>())
{
    latest = impl_->receivers;
}
CIpCamera::~CIpCamera() = default;

int CIpCamera::OpenMainStreamVideo(const char* url, const char* user, const char* password)
{
    note("OpenMainStreamVideo", url, user, password);
    const int result = open();
    impl_->mainOpen = result == 0;
    return result;
}

int CIpCamera::OpenSubStreamVideo(const char* url, const char* user, const char* password)
{
    note("OpenSubStreamVideo", url, user, password);
    const int result = open();
    impl_->subOpen = result == 0;
    return result;
}

void CIpCamera::CloseMainStreamVideo()
{
    note("CloseMainStreamVideo");
    impl_->mainOpen = false;
}

void CIpCamera::CloseSubStreamVideo()
{
    note("CloseSubStreamVideo");
    impl_->subOpen = false;
}

bool CIpCamera::GetStreamStatus(bool mainStream, StreamStatus* status) const
{
    const bool isOpen = mainStream ? impl_->mainOpen : impl_->subOpen;
    *status = isOpen ? current.status : StreamStatus{};
    return isOpen;
}

void CIpCamera::SetVideoBufCallBack(VideoBufCallBack callback, void* user)
{
    set(impl_->receivers->video, "SetVideoBufCallBack", callback, user);
}

void CIpCamera::SetAudioBufCallBack(AudioBufCallBack callback, void* user)
{
    set(impl_->receivers->audio, "SetAudioBufCallBack", callback, user);
}

void CIpCamera::SetDecodeEnable(bool mainStream, bool enable)
{
    note("SetDecodeEnable", mainStream, enable);
}

void CIpCamera::StopDisplay()
{
    note("StopDisplay");
}

void CIpCamera::SetSaveDir(const char* directory)
{
    note("SetSaveDir", directory);
}

int CIpCamera::StartSaveAvi(int stream, const char* path)
{
    note("StartSaveAvi", stream, path);
    return -1;
}

int CIpCamera::StopSaveAvi(int stream)
{
    note("StopSaveAvi", stream);
    return -1;
}

int CIpCamera::SaveImage(int stream, int count)
{
    note("SaveImage", stream, count);
    return -1;
}

const char* CIpCamera::GetLastImage() const
{
    return current.lastImage.c_str();
}

void CIpCamera::SetMotionDetectMap(unsigned char* map)
{
    std::string cells(map, map + 768);
    std::replace(cells.begin(), cells.end(), '\0', '.');
    note("SetMotionDetectMap", cells.c_str());
}

void CIpCamera::SetMotionDetectLevel(int level)
{
    note("SetMotionDetectLevel", level);
}

void CIpCamera::SetMotionSpaceTime(int seconds)
{
    note("SetMotionSpaceTime", seconds);
}

void CIpCamera::SetMotionSaveType(int type, int images, int seconds)
{
    note("SetMotionSaveType", type, images, seconds);
}

namespace
{

void noteTime(const char* name, const _record_time_t& time)
{
    const std::int32_t* d = time.days;
    note(name, d[0], d[1], d[2], d[3], d[4], d[5], d[6], time.startHour, time.startMinute, time.endHour,
         time.endMinute);
}

} // namespace

void CIpCamera::AddMotionSaveTime(_record_time_t* time)
{
    noteTime("AddMotionSaveTime", *time);
}

void CIpCamera::AddAutoSaveTime(_record_time_t* time)
{
    noteTime("AddAutoSaveTime", *time);
}

struct CIpCameraManager::Impl
{
};

CIpCameraManager::CIpCameraManager() = default;
CIpCameraManager::~CIpCameraManager() = default;

CIpCameraManager* CIpCameraManager::GetInstance()
{
    static CIpCameraManager manager;
    return &manager;
}

void CIpCameraManager::DeleteInstance()
{
    note("DeleteInstance");
    const std::lock_guard lock(mutex);
    cameras.clear();
    cameraReceivers.clear();
}

std::shared_ptr<CIpCamera> CIpCameraManager::AddIpCamera(int userId)
{
    if (auto there = GetIpCamera(userId))
        return there;
    const std::lock_guard lock(mutex);
    cameras[userId] = std::make_shared<CIpCamera>();
    cameraReceivers[userId] = latest;
    return cameras[userId];
}

std::shared_ptr<CIpCamera> CIpCameraManager::GetIpCamera(int userId)
{
    const std::lock_guard lock(mutex);
    const auto found = cameras.find(userId);
    return found != cameras.end() ? found->second : nullptr;
}

void CIpCameraManager::DelIpCamera(int userId)
{
    note("DelIpCamera");
    const std::lock_guard lock(mutex);
    cameras.erase(userId);
    cameraReceivers.erase(userId);
}

struct CRecordPlayer::Impl
{
    std::shared_ptr<standin::Receivers> receivers = std::make_shared<standin::Receivers>();
};

CRecordPlayer::CRecordPlayer() : impl_(std::make_unique<Impl>())
{
    const std::lock_guard lock(mutex);
    playerReceivers = impl_->receivers;
    ++players;
}

CRecordPlayer::~CRecordPlayer()
{
    note("destroyed");
    const std::lock_guard lock(mutex);
    --players;
}

void CRecordPlayer::SetVideoBufCallBack(VideoBufCallBack callback, void* user)
{
    set(impl_->receivers->video, "SetVideoBufCallBack", callback, user);
}

void CRecordPlayer::SetAudioBufCallBack(AudioBufCallBack callback, void* user)
{
    set(impl_->receivers->audio, "SetAudioBufCallBack", callback, user);
}

int CRecordPlayer::OpenFile(const char* path)
{
    note("OpenFile", path);
    return open();
}

int CRecordPlayer::GetCurrTime()
{
    return 1500;
}

int CRecordPlayer::GetDuration()
{
    return 60000;
}

int CRecordPlayer::IsPlayFinish()
{
    return 1;
}

void CRecordPlayer::SetSpeedLevel(int level)
{
    note("SetSpeedLevel", level);
}

void CRecordPlayer::Pause()
{
    note("Pause");
}

void CRecordPlayer::Resume()
{
    note("Resume");
}

void CRecordPlayer::SeekTime(int milliseconds)
{
    note("SeekTime", milliseconds);
}

void CRecordPlayer::Stop()
{
    note("Stop");
}
