// A recording to be played, and an application that watches it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "StreamMedia.h"
#include "ipcctl/AviRecorder.h"
#include "ipcctl/ipcctl.h"

inline constexpr int frames = 100; // at 25 a second, a key frame each second
inline constexpr int ended = -1;   // in the place of a picture's number

inline const Media& pictures()
{
    static const Media media = encodeVideo({.frames = frames});
    return media;
}

inline const Media& sound()
{
    static const Media media = encodeSound("aac", 4);
    return media;
}

enum class FileKind
{
    Whole,
    CutShort,   // by the end of the process that wrote it
    Downloaded, // cameras' files arrive with as many zeros behind them
};

inline std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::string& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}

/// Records the pictures and, if there is to be any, the sound.
inline std::string record(const ScratchDirectory& directory, FileKind kind = FileKind::Whole,
                          bool withSound = true)
{
    const std::string path = directory / "recording.avi";
    std::string cutShort;
    AviRecorder recorder;
    EXPECT_TRUE(recorder.startAt(path));
    StreamFormat format;
    format.video = pictures().parameters.get();
    format.sound = withSound ? sound().parameters.get() : nullptr;
    recorder.begin(format);
    std::size_t next = 0;
    for (int i = 0; i < frames; ++i) {
        if (i == frames - 1)
            cutShort = contentOf(path);
        recorder.takeVideo(*pictures().packets[static_cast<std::size_t>(i)], 40 * i);
        while (withSound && next < sound().packets.size() && sound().packets[next]->pts < 40 * (i + 1)) {
            recorder.takeSound(*sound().packets[next], static_cast<double>(sound().packets[next]->pts));
            ++next;
        }
    }
    EXPECT_TRUE(recorder.stop());
    if (kind == FileKind::CutShort)
        writeFile(path, cutShort);
    if (kind == FileKind::Downloaded)
        writeFile(path, contentOf(path) + std::string(contentOf(path).size(), '\0'));
    return path;
}

/// An application that watches: what it was shown, and what it does then.
class Audience
{
public:
    /// Of no player yet, or of one that is gone first.
    Audience() = default;
    explicit Audience(CRecordPlayer& player) : player_(&player) { watch(player); }
    ~Audience()
    {
        if (player_ == nullptr)
            return;
        player_->SetVideoBufCallBack(nullptr, nullptr);
        player_->SetAudioBufCallBack(nullptr, nullptr);
    }
    Audience(const Audience&) = delete;
    Audience& operator=(const Audience&) = delete;

    void watch(CRecordPlayer& player)
    {
        player.SetVideoBufCallBack(video, this);
        player.SetAudioBufCallBack(audio, this);
    }

    /// Called within the video callback, if set.
    std::function<void(int number)> onPicture;

    std::vector<int> shown()
    {
        const std::lock_guard lock(mutex_);
        return shown_;
    }
    /// Of each channel.
    int samples()
    {
        const std::lock_guard lock(mutex_);
        return samples_;
    }
    void forget()
    {
        const std::lock_guard lock(mutex_);
        shown_.clear();
    }
    /// The time from the first picture to the latest.
    std::chrono::duration<double, std::milli> span()
    {
        const std::lock_guard lock(mutex_);
        return last_ - first_;
    }
    /// Waits until so many pictures, the end counted, were shown.
    bool waitFor(std::size_t count)
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return shown_.size() >= count; });
    }
    bool waitForEnd()
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20),
                                 [&] { return !shown_.empty() && shown_.back() == ended; });
    }

private:
    static int video(void*, void* user, unsigned char* frame, int width, int height, int, float)
    {
        auto& self = *static_cast<Audience*>(user);
        const int number = frame != nullptr ? readNumber(frame, width * 3, width, height, 3) : ended;
        {
            const std::lock_guard lock(self.mutex_);
            if (self.shown_.empty())
                self.first_ = std::chrono::steady_clock::now();
            if (number != ended)
                self.last_ = std::chrono::steady_clock::now();
            self.shown_.push_back(number);
            self.changed_.notify_all();
        }
        if (self.onPicture)
            self.onPicture(number);
        return 0;
    }
    static int audio(void*, void* user, short*, int count, int channels)
    {
        auto& self = *static_cast<Audience*>(user);
        const std::lock_guard lock(self.mutex_);
        self.samples_ += count / channels;
        return 0;
    }

    CRecordPlayer* const player_ = nullptr; // that outlives it
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<int> shown_;
    int samples_ = 0;
    std::chrono::steady_clock::time_point first_;
    std::chrono::steady_clock::time_point last_;
};
