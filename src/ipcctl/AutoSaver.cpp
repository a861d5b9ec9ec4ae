#include "ipcctl/AutoSaver.h"

#include <algorithm>
#include <optional>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include "ipcctl/StreamTiming.h"

namespace
{

constexpr int saveImagesBit = 1;
constexpr int saveRecordingBit = 2;

/// Nothing when the picture does not keep its brightness apart, a byte a pixel.
std::optional<Brightness> brightnessOf(const AVFrame& frame)
{
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (format == nullptr || (format->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0 ||
        format->comp[0].step != 1 || format->comp[0].depth != 8)
        return std::nullopt;
    return Brightness{frame.data[0], frame.linesize[0], frame.width, frame.height};
}

} // namespace

void AutoSaveSettings::setSaveType(int type, int pictures, int seconds)
{
    images = (type & saveImagesBit) != 0 ? std::max(pictures, 0) : 0;
    recordingTime = std::chrono::seconds((type & saveRecordingBit) != 0 ? std::max(seconds, 0) : 0);
}

AutoSaver::AutoSaver(std::shared_ptr<SavePlace> place, const AutoSaveSettings& settings, Clocks clocks)
    : place_(std::move(place)), clocks_(std::move(clocks))
{
    follow(settings);
}

void AutoSaver::follow(const AutoSaveSettings& settings)
{
    const std::lock_guard lock(mutex_);
    if (settings.map != settings_.map)
        detector_.setMap(settings.map.data());
    detector_.setLevel(settings.level);
    detector_.setSpaceTime(settings.spaceTime);
    armed_ = detector_.armed();
    settings_ = settings;
    clockRead_ = 0;
    imagesLeft_ = armed_ ? std::min(imagesLeft_, settings.images) : 0;
    if (!armed_ || settings.recordingTime.count() == 0) {
        alarmed_ = false;
        recordUntil_ = {};
    }
}

void AutoSaver::addTo(StreamStatus& status) const
{
    status.motionAlarms = alarms_;
    if (status.recording != 0 || !recorder_.recording())
        return;
    status.recording = 1;
    status.recordedBytes = recorder_.bytes();
    status.recordedFrames = recorder_.frames();
}

void AutoSaver::begin(const StreamFormat& format)
{
    format_ = format;
    recorder_.begin(format);
    noticeFullDisk();
}

void AutoSaver::takeVideo(const AVPacket& packet, double time)
{
    const bool due = recordingIsDue();
    if (!due && begun_) {
        recorder_.stop();
        begun_ = false;
    } else if (due && !begun_ && (packet.flags & AV_PKT_FLAG_KEY) != 0 && clocks_.running() >= nextTry_) {
        startRecording();
    }
    recorder_.takeVideo(packet, time);
    noticeFullDisk();
}

void AutoSaver::takeSound(const AVPacket& packet, double time)
{
    recorder_.takeSound(packet, time);
    noticeFullDisk();
}

void AutoSaver::startRecording()
{
    {
        const std::lock_guard lock(mutex_);
        if (alarmed_)
            recordUntil_ = clocks_.running() + settings_.recordingTime;
        alarmed_ = false;
    }
    begun_ = true;
    if (recorder_.startIn(place_->directory()))
        recorder_.begin(format_);
}

/// A disk that is full now is likely to be so at the next key frame, too.
void AutoSaver::noticeFullDisk()
{
    if (!begun_ || recorder_.recording())
        return;
    begun_ = false;
    nextTry_ = clocks_.running() + g_streamTiming.fullDisk;
}

bool AutoSaver::recordingIsDue()
{
    const std::lock_guard lock(mutex_);
    const std::time_t second = clocks_.ofTheWall();
    if (second != clockRead_) {
        clockRead_ = second;
        clockSaysRecord_ = settings_.autoTimes.covers(second);
    }
    return clockSaysRecord_ || alarmed_ || clocks_.running() < recordUntil_;
}

void AutoSaver::takeFrame(const AVFrame& frame)
{
    if (imageIsDue(frame))
        place_->saveImage(frame);
}

bool AutoSaver::imageIsDue(const AVFrame& frame)
{
    const std::lock_guard lock(mutex_);
    const Clock::time_point now = clocks_.running();
    const std::optional<Brightness> brightness = brightnessOf(frame);
    if (!brightness || !detector_.looksAt(now))
        return false;
    if (detector_.detect(*brightness, now))
        alarm(now);
    if (imagesLeft_ == 0)
        return false;
    --imagesLeft_;
    return true;
}

void AutoSaver::alarm(Clock::time_point now)
{
    ++alarms_;
    if (!settings_.motionTimes.empty() && !settings_.motionTimes.covers(clocks_.ofTheWall()))
        return;
    imagesLeft_ = settings_.images;
    if (settings_.recordingTime.count() == 0)
        return;
    alarmed_ = !recorder_.recording();
    recordUntil_ = now + settings_.recordingTime;
}
