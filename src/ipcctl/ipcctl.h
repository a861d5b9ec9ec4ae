// The interface of the streaming library: camera objects by user id, and players of recordings.
//
// The SDK knows the streaming library by this header only, and no member is inline, so that another library with
// the same interface and object sizes can take the place of this one. This library does not stream yet: it keeps
// the camera objects and answers as one does that has no stream open.
#pragma once

#include <cstdint>
#include <memory>

#if defined(__GNUC__)
#define IPCCTL_API __attribute__((visibility("default")))
#else
#define IPCCTL_API
#endif

/// When to record by the clock: a flag a day, Sunday first, and from when to when.
struct _record_time_t
{
    std::int32_t days[7];
    std::int32_t startHour;
    std::int32_t startMinute;
    std::int32_t endHour;
    std::int32_t endMinute;
};

/// Called on the streaming library's threads, with the camera or player the frame comes from. A frame is packed
/// 24-bit colour, width * height * 3 bytes.
using VideoBufCallBack = int (*)(void* source, void* user, unsigned char* frame, int width, int height,
                                 int frameType, float frameRate);
/// Called on the streaming library's threads, with the camera or player the sound comes from.
using AudioBufCallBack = int (*)(void* source, void* user, short* samples, int count, int channel);

/// The streams of one camera. Made and owned by the manager.
class IPCCTL_API CIpCamera
{
public:
    CIpCamera();
    ~CIpCamera();
    CIpCamera(const CIpCamera&) = delete;
    CIpCamera& operator=(const CIpCamera&) = delete;

    /// Where decoded frames go; null: nowhere.
    void SetVideoBufCallBack(VideoBufCallBack callback, void* user);
    void SetAudioBufCallBack(AudioBufCallBack callback, void* user);
    /// Switches decoding of the main or the sub stream.
    void SetDecodeEnable(bool mainStream, bool enable);
    void StopDisplay();
    void CloseMainStreamVideo();
    void CloseSubStreamVideo();

    /// The directory of recordings and snapshots.
    void SetSaveDir(const char* directory);
    /// Records to an AVI file; -1 without an open stream.
    int StartSaveAvi(int mainStream, const char* path);
    int StopSaveAvi(int mainStream);
    /// Saves the latest frame; -1 without an open stream.
    int SaveImage(int mainStream, int count);
    /// The file SaveImage wrote last; empty when there is none. Valid until the next SaveImage.
    const char* GetLastImage() const;

    /// 32 rows of 24 cells; a cell is armed when its byte is 1 or '1'.
    void SetMotionDetectMap(unsigned char* map);
    void SetMotionDetectLevel(int level);
    void SetMotionSpaceTime(int seconds);
    void SetMotionSaveType(int type, int images, int seconds);
    void AddMotionSaveTime(_record_time_t* time);
    void AddAutoSaveTime(_record_time_t* time);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// Hands out the camera objects by user id. One for the process.
class IPCCTL_API CIpCameraManager
{
public:
    /// The manager, made at the first call; null when it can not be made.
    static CIpCameraManager* GetInstance();
    /// Ends all streams and frees the manager with its cameras. Harmless without one.
    static void DeleteInstance();

    /// Makes the camera object of a user id, or finds the one there is; null without memory.
    CIpCamera* AddIpCamera(int userId);
    /// The camera object of a user id; null when there is none.
    CIpCamera* GetIpCamera(int userId);
    /// Ends and frees the camera object of a user id, if there is one.
    void DelIpCamera(int userId);

private:
    CIpCameraManager();
    ~CIpCameraManager();
    CIpCameraManager(const CIpCameraManager&) = delete;
    CIpCameraManager& operator=(const CIpCameraManager&) = delete;

    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// Plays a recorded file. Made with `new` by whoever starts the playback, destroyed with `delete` by the SDK.
class IPCCTL_API CRecordPlayer
{
public:
    CRecordPlayer();
    ~CRecordPlayer();
    CRecordPlayer(const CRecordPlayer&) = delete;
    CRecordPlayer& operator=(const CRecordPlayer&) = delete;

    void SetVideoBufCallBack(VideoBufCallBack callback, void* user);
    void SetAudioBufCallBack(AudioBufCallBack callback, void* user);
    /// Position and length in milliseconds; 0 without an open file.
    int GetCurrTime();
    int GetDuration();
    /// 1 at the end of the file and without an open one, else 0.
    int IsPlayFinish();
    /// 0: normal; 101 to 104: 2, 4, 8, 16 times as fast; 4 to 1: 2, 4, 8, 16 times as slow.
    void SetSpeedLevel(int level);
    void Pause();
    void Resume();
    void SeekTime(int milliseconds);
    void Stop();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};
