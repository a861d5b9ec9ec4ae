#include "ipcctl/ipcctl.h"

#include <algorithm>
#include <exception>
#include <string>

#include "ipcctl/CameraStreams.h"
#include "ipcctl/StreamTiming.h"

namespace
{

std::string textOf(const char* text)
{
    return text != nullptr ? text : "";
}

constexpr CameraStreams::Index indexOf(bool mainStream)
{
    return mainStream ? CameraStreams::Main : CameraStreams::Sub;
}

/// Does it, and takes want of memory for failure.
template <typename Action>
int resultOf(Action action)
{
    try {
        return action() ? 0 : -1;
    } catch (const std::exception&) {
        return -1;
    }
}

} // namespace

struct CIpCamera::Impl
{
    explicit Impl(CIpCamera* camera) : streams(camera) {}

    int open(CameraStreams::Index index, const char* url, const char* user, const char* password)
    {
        return resultOf([&] { return streams.open(index, {textOf(url), textOf(user), textOf(password)}); });
    }

    void close(CameraStreams::Index index, std::chrono::steady_clock::time_point until)
    {
        resultOf([&] {
            streams.close(index, until);
            return true;
        });
    }

    void setAutoSave(const std::function<void(AutoSaveSettings&)>& change)
    {
        resultOf([&] {
            streams.setAutoSave(change);
            return true;
        });
    }

    CameraStreams streams;
};

CIpCamera::CIpCamera() : impl_(std::make_unique<Impl>(this)) {}

CIpCamera::~CIpCamera()
{
    stopStreams();
    closeStreams(closingTime());
    impl_->streams.callBacks().clear();
}

void CIpCamera::stopStreams()
{
    resultOf([&] {
        impl_->streams.stop();
        return true;
    });
}

void CIpCamera::closeStreams(std::chrono::steady_clock::time_point until)
{
    impl_->close(CameraStreams::Sub, until);
    impl_->close(CameraStreams::Main, until);
}

int CIpCamera::OpenMainStreamVideo(const char* url, const char* user, const char* password)
{
    return impl_->open(CameraStreams::Main, url, user, password);
}

int CIpCamera::OpenSubStreamVideo(const char* url, const char* user, const char* password)
{
    return impl_->open(CameraStreams::Sub, url, user, password);
}

void CIpCamera::SetTransport(StreamTransport transport)
{
    impl_->streams.setTransport(transport);
}

bool CIpCamera::GetStreamStatus(bool mainStream, StreamStatus* status) const
{
    return impl_->streams.status(indexOf(mainStream), *status);
}

void CIpCamera::SetVideoBufCallBack(VideoBufCallBack callback, void* user)
{
    impl_->streams.callBacks().setVideo(callback, user);
}

void CIpCamera::SetAudioBufCallBack(AudioBufCallBack callback, void* user)
{
    impl_->streams.callBacks().setAudio(callback, user);
}

void CIpCamera::SetDecodeEnable(bool mainStream, bool enable)
{
    impl_->streams.setDecoding(indexOf(mainStream), enable);
}

void CIpCamera::StopDisplay() {}

void CIpCamera::CloseMainStreamVideo()
{
    impl_->close(CameraStreams::Main, closingTime());
}

void CIpCamera::CloseSubStreamVideo()
{
    impl_->close(CameraStreams::Sub, closingTime());
}

void CIpCamera::SetSaveDir(const char* directory)
{
    resultOf([&] {
        impl_->streams.place().setDirectory(textOf(directory));
        return true;
    });
}

int CIpCamera::StartSaveAvi(int stream, const char* path)
{
    return resultOf([&] {
        const auto chosen = impl_->streams.choose(stream);
        return chosen != nullptr && chosen->startRecording(path);
    });
}

int CIpCamera::StopSaveAvi(int stream)
{
    return resultOf([&] {
        const auto chosen = impl_->streams.chooseRecorded(stream);
        return chosen != nullptr && chosen->stopRecording();
    });
}

int CIpCamera::SaveImage(int stream, int count)
{
    return resultOf([&] {
        const auto chosen = impl_->streams.choose(stream);
        return chosen != nullptr && chosen->saveImages(count);
    });
}

const char* CIpCamera::GetLastImage() const
{
    thread_local std::string path;
    const int result = resultOf([&] {
        path = impl_->streams.place().lastImage();
        return true;
    });
    return result == 0 ? path.c_str() : "";
}

void CIpCamera::SetMotionDetectMap(unsigned char* map)
{
    if (map != nullptr)
        impl_->setAutoSave(
            [&](AutoSaveSettings& settings) { std::copy_n(map, settings.map.size(), settings.map.begin()); });
}

void CIpCamera::SetMotionDetectLevel(int level)
{
    impl_->setAutoSave([&](AutoSaveSettings& settings) { settings.level = level; });
}

void CIpCamera::SetMotionSpaceTime(int seconds)
{
    impl_->setAutoSave([&](AutoSaveSettings& settings) { settings.spaceTime = seconds; });
}

void CIpCamera::SetMotionSaveType(int type, int images, int seconds)
{
    impl_->setAutoSave([&](AutoSaveSettings& settings) { settings.setSaveType(type, images, seconds); });
}

void CIpCamera::AddMotionSaveTime(_record_time_t* time)
{
    if (time != nullptr)
        impl_->setAutoSave([&](AutoSaveSettings& settings) { settings.motionTimes.add(*time); });
}

void CIpCamera::AddAutoSaveTime(_record_time_t* time)
{
    if (time != nullptr)
        impl_->setAutoSave([&](AutoSaveSettings& settings) { settings.autoTimes.add(*time); });
}
