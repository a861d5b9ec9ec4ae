// AVI files.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "ipcctl/Av.h"
#include "ipcctl/AviHeader.h"
#include "ipcctl/FrameGrid.h"
#include "ipcctl/SavedFile.h"
#include "ipcctl/SoundTrack.h"

/// Writes packets into an AVI file as they are. At any time the file can be played up to a second before; closed, it has
/// an index. One thread at a time.
class AviWriter
{
public:
    /// Takes a file that was just made. The frame rate counts until it is measured; sound that is null, or that AVI
    /// files can not carry, is left out. False: the file can not be written, or such pictures do not go into it.
    bool open(std::unique_ptr<SavedFile> file, const AVCodecParameters& video, AVRational frameRate,
              const AVCodecParameters* sound);
    AviWriter() = default;
    ~AviWriter();
    AviWriter(const AviWriter&) = delete;
    AviWriter& operator=(const AviWriter&) = delete;

    /// Whether it takes packets: it is open and the disk had room so far.
    explicit operator bool() const { return good_; }

    /// Times are in milliseconds and do not fall. The first key frame is the beginning; what comes before it is left out.
    void writeVideo(const AVPacket& packet, double time);
    void writeSound(const AVPacket& packet, double time);
    /// What comes next is like this, which must not differ but in parameter sets. False: the file can not go on.
    bool goOn(const AVCodecParameters& video);

    /// Completes the file, or removes it when it has no frame. False when it is not whole; what was written until then can
    /// be played.
    bool close();

    std::int64_t frames() const { return frames_; }
    std::int64_t bytes() const;

private:
    struct OutputFree
    {
        void operator()(AVFormatContext* context) const;
    };

    bool addVideo(const AVCodecParameters& video, AVRational frameRate);
    bool addSound(const AVCodecParameters& sound);
    bool begin();
    bool write(const AVPacket& packet, int stream, std::int64_t number);
    bool leaveEmpty(std::int64_t units);
    PacketPtr withParameterSets(const AVPacket& packet) const;
    void save(double time);
    bool saveHeader();
    void giveUp();

    std::unique_ptr<SavedFile> file_;
    std::unique_ptr<AVFormatContext, OutputFree> output_;
    PacketPtr written_; // what is being written; its data are lent
    AviHeader header_;
    CodecParametersPtr video_; // of what comes
    std::optional<FrameGrid> grid_;
    std::optional<SoundTrack> sound_;
    double begin_ = 0;
    double saved_ = 0;      // the time up to which the file can be played
    std::int64_t size_ = 0; // of the file up to there
    std::int64_t savedFrames_ = 0;
    std::int64_t frames_ = 0;
    bool good_ = false;
};
