// The interface of the streaming library: camera objects by user id, and players of recordings.
//
// The SDK knows the streaming library by this header only, and no member is inline, so that another library with
// the same interface and object sizes can take the place of this one.
//
// Every operation may be called from any thread, also from within a callback.
#pragma once

#include <chrono>
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
/// 24-bit colour, width * height * 3 bytes, the callback's to use until it returns; its type is 1 for a key frame, else 0,
/// and its rate 0 while it is not known. The calls of one camera or player, for video and sound, come one at a time.
/// What a callback returns is ignored.
using VideoBufCallBack = int (*)(void* source, void* user, unsigned char* frame, int width, int height,
                                 int frameType, float frameRate);
/// Called on the streaming library's threads, with the camera or player the sound comes from: so many 16-bit samples in
/// all, those of the channels in turn.
using AudioBufCallBack = int (*)(void* source, void* user, short* samples, int count, int channels);

/// Counters of a stream since it was opened.
struct StreamStatus
{
    /// Video frames that came whole, or fields that came apart; it is known of one when the next begins.
    std::int64_t framesReceived;
    std::int64_t framesDecoded; ///< 0 while nobody wants decoded frames, unless key frames are very far apart
    std::int64_t framesDelivered; ///< handed to the video callback
    /// Not shown: damaged, what they refer to was lost, or the callback takes too long; only seen while decoding.
    std::int64_t framesDropped;
    std::int64_t bytesReceived; ///< of video and sound
    std::int64_t reconnects;    ///< how often the stream was opened again
    std::int64_t motionAlarms;
    std::int64_t lastFrameTime; ///< milliseconds since 1970; 0 before the first frame
    std::int32_t width;         ///< of the latest frame; 0 before it
    std::int32_t height;
    std::int32_t connected;      ///< 1 while the camera sends, 0 while the stream waits to be opened again
    std::int32_t refused;        ///< 1 when the camera refused user and password: it is not asked again
    std::int32_t recording;      ///< 1 while an AVI file is written
    std::int64_t recordedBytes;  ///< of the file being written, or of the last one
    std::int64_t recordedFrames; ///< likewise
};

/// How a stream's packets travel.
enum class StreamTransport
{
    Tcp, ///< within the RTSP connection: nothing is lost
    Udp
};

/// The streams of one camera. Made by the manager, freed when the manager has let go of it and nobody else holds it.
class IPCCTL_API CIpCamera
{
public:
    CIpCamera();
    ~CIpCamera();
    CIpCamera(const CIpCamera&) = delete;
    CIpCamera& operator=(const CIpCamera&) = delete;

    /// Opens a stream and returns when the camera has agreed to send it: 0, or -1 when it did not within the time
    /// limit, refused, or the stream is open already. User and password go in the camera's challenge only, never in
    /// the address. A stream that breaks off later is opened again after growing pauses, until it is closed.
    int OpenMainStreamVideo(const char* url, const char* user, const char* password);
    int OpenSubStreamVideo(const char* url, const char* user, const char* password);
    /// For streams that are opened from now on.
    void SetTransport(StreamTransport transport);
    /// The counters of the main or the sub stream; false, and zeros, when it is not open.
    bool GetStreamStatus(bool mainStream, StreamStatus* status) const;

    /// Where decoded frames of both streams go, and the sound of one of them; null: nowhere. Setting null returns when no
    /// call is running and none will come, called from within the callback: when none will come after the running one.
    void SetVideoBufCallBack(VideoBufCallBack callback, void* user);
    void SetAudioBufCallBack(AudioBufCallBack callback, void* user);
    /// Switches decoding of the main or the sub stream, on at first. What is off goes to no callback; recordings and
    /// snapshots do not need it.
    void SetDecodeEnable(bool mainStream, bool enable);
    /// Ends the display of frames, which is the application's here: nothing is left to do.
    void StopDisplay();
    /// Tells the camera to end the stream and ends its recording. Returns within a second whatever camera and disk do;
    /// a recording that a slow disk has not taken by then is completed later.
    void CloseMainStreamVideo();
    void CloseSubStreamVideo();

    /// The directory of recordings and snapshots; empty, as at first, is the working directory.
    void SetSaveDir(const char* directory);
    /// Records a stream as it comes, from its next key frame on, to an AVI file: the path, or without one
    /// "YYYYMMDD_hhmmss.avi" in the save directory. The stream, here and in the next two: 1 the main stream or, where
    /// that is not open, the sub stream; 0 the sub stream. -1 when it is not open or is being recorded.
    int StartSaveAvi(int stream, const char* path);
    /// Completes the file; -1 when none is being written, or when it is not whole: the disk was full, or took so long that
    /// it will be completed later. Of the streams that 1 may mean, the one that is being recorded.
    int StopSaveAvi(int stream);
    /// Saves the latest frame as "YYYYMMDD_hhmmss_mmm.jpg" in the save directory, and the next ones up to the count.
    /// -1 when the first can not be saved within the time limit.
    int SaveImage(int stream, int count);
    /// The file that was saved last; empty when there is none. Valid until the next call on this thread.
    const char* GetLastImage() const;

    /// 32 rows of 24 cells over the picture; a cell is armed when its byte is 1 or '1', none at first.
    void SetMotionDetectMap(unsigned char* map);
    /// 1 to 100, higher is more sensitive; what lies beyond counts as the nearest.
    void SetMotionDetectLevel(int level);
    /// The least time between two alarms.
    void SetMotionSpaceTime(int seconds);
    /// What an alarm saves: bit 0 up to so many images, bit 1 a recording of so many seconds.
    void SetMotionSaveType(int type, int images, int seconds);
    /// Limits what alarms save to these times, local; without any it is not limited.
    void AddMotionSaveTime(_record_time_t* time);
    /// Records within these times, local, whether anything moves or not.
    void AddAutoSaveTime(_record_time_t* time);

private:
    friend class CIpCameraManager;

    void stopStreams(); // without waiting for them
    void closeStreams(std::chrono::steady_clock::time_point until);

    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// Hands out the camera objects by user id. One for the process.
class IPCCTL_API CIpCameraManager
{
public:
    /// The manager, made at the first call; null when it can not be made.
    static CIpCameraManager* GetInstance();
    /// Ends all streams and frees the manager with its cameras, so nobody may be using it. Harmless without one.
    static void DeleteInstance();

    /// Makes the camera object of a user id, or finds the one there is; null without memory.
    std::shared_ptr<CIpCamera> AddIpCamera(int userId);
    /// The camera object of a user id; null when there is none. A caller that holds it beyond DelIpCamera has one whose
    /// streams are closed.
    std::shared_ptr<CIpCamera> GetIpCamera(int userId);
    /// Closes the streams of a user id's camera object and lets go of it, if there is one.
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
    /// Opens a recording and begins to play it, on a thread of the player's; 0, or -1 when it can not be opened or
    /// another one is open.
    int OpenFile(const char* path);
    /// Position and length in milliseconds; 0 without an open file.
    int GetCurrTime();
    int GetDuration();
    /// 1 at the end of the file and without an open one, else 0. At the end the video callback is called once with a
    /// null frame of no size.
    int IsPlayFinish();
    /// 0: normal; 101 to 104: 2, 4, 8, 16 times as fast; 4 to 1: 2, 4, 8, 16 times as slow.
    void SetSpeedLevel(int level);
    void Pause();
    void Resume();
    /// Goes on from this time: from the key frame before it, whose followers up to the time are not shown.
    void SeekTime(int milliseconds);
    /// Ends playing and closes the file.
    void Stop();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};
