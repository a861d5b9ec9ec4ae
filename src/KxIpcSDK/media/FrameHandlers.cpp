#include "KxIpcSDK/media/FrameHandlers.h"

#include "Core/UserInfo.h"

namespace
{

struct Frame
{
    int dataType;
    const void* data;
    int size; // of sound, in samples
    int width = 0;
    int height = 0;
};

Frame picture(const unsigned char* pixels, int width, int height)
{
    return {KX_DATA_VIDEO, pixels, width * height * 3, width, height};
}

Frame sound(const short* samples, int count)
{
    return {KX_DATA_AUDIO, samples, count};
}

/// The frames of a session that is being closed go nowhere.
void pass(const Frame& frame, const UserInfo& session, fLiveDataCallBack callback, void* user)
{
    const long userId = session.nUserId;
    if (callback != nullptr && userId >= 0)
        callback(userId, frame.dataType, static_cast<const unsigned char*>(frame.data), frame.size,
                 frame.width, frame.height, user);
}

int passLive(const Frame& frame, const void* record)
{
    if (record == nullptr)
        return -1;
    const auto& session = *static_cast<const UserInfo*>(record);
    void* const user = session.liveDataUser; // before the callback, see UserInfo
    pass(frame, session, session.liveDataCallback, user);
    return 0;
}

/// The user pointer is that of the live view: applications know it so.
int passPlayback(const Frame& frame, const void* record)
{
    if (record == nullptr)
        return -1;
    const auto& session = *static_cast<const UserInfo*>(record);
    if (session.player != nullptr)
        pass(frame, session, session.playbackDataCallback, session.liveDataUser);
    return 0;
}

} // namespace

int HandleVideoBuffCB(void*, void* user, unsigned char* frame, int width, int height, int, float)
{
    return passLive(picture(frame, width, height), user);
}

int HandlerRealAudioBufCB(void*, void* user, short* samples, int count, int)
{
    return passLive(sound(samples, count), user);
}

int HandleVideoBuffCB_Play(void*, void* user, unsigned char* frame, int width, int height, int, float)
{
    return passPlayback(picture(frame, width, height), user);
}

int HandlerRealAudioBufCB_Play(void*, void* user, short* samples, int count, int)
{
    return passPlayback(sound(samples, count), user);
}
