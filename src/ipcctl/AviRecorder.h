// A stream on its way into AVI files.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "ipcctl/AviWriter.h"
#include "ipcctl/PacketSink.h"

/// Records what a stream hands on. A stream that comes back after a while goes on in the same file; one that comes back in
/// another format, which a file can not change, goes on in another. A file is made when the first key frame is there to go
/// into it: what a process that is killed leaves behind is a recording.
///
/// What the stream calls and the rest take turns: it is detached before stop. The status can be asked at any time.
class AviRecorder final : public PacketSink
{
public:
    ~AviRecorder() override;

    /// Into "<directory>/YYYYMMDD_hhmmss.avi", or a name with a number added where there is one; false when no file can
    /// be made there.
    bool startIn(const std::string& directory);
    /// Into this file; false when it is there already or can not be made. If there is one when the first key frame
    /// comes, a number is added to the name.
    bool startAt(const std::string& path);
    /// Completes the file; false when there is none, or when it or one before it is not whole.
    bool stop();
    /// What stop returned.
    bool isWhole() const { return finished_ && whole_; }

    void begin(const StreamFormat& format) override;
    void takeVideo(const AVPacket& packet, double time) override;
    void takeSound(const AVPacket& packet, double time) override;

    /// False once it is stopped, or the disk is full.
    bool recording() const { return recording_; }
    /// Of the file that is or was written last.
    std::int64_t frames() const { return frames_; }
    std::int64_t bytes() const { return bytes_; }

private:
    /// What a file can not change.
    struct Format
    {
        AVCodecID video = AV_CODEC_ID_NONE;
        int width = 0;
        int height = 0;
        AVCodecID sound = AV_CODEC_ID_NONE;
        int sampleRate = 0;
        int channels = 0;

        bool operator==(const Format&) const = default;
    };

    static Format formatOf(const StreamFormat& format);
    std::unique_ptr<SavedFile> createFile() const;
    void beginFile(const StreamFormat& format);
    void finishFile();
    void update();

    std::filesystem::path path_; // empty: in the directory, by the time
    std::string directory_;
    std::optional<AviWriter> writer_;
    Format format_;         // of the file
    bool finished_ = false; // there was a file
    bool whole_ = true;     // all files so far
    std::atomic<bool> recording_{false};
    std::atomic<std::int64_t> frames_{0};
    std::atomic<std::int64_t> bytes_{0};
};
