#include "ipcctl/RecordFile.h"

#include <algorithm>
#include <climits>
#include <filesystem>
#include <vector>

#include "ipcctl/StreamTiming.h"
#include "ipcctl/VideoDecoder.h"

namespace
{

using Kind = RecordedPacket::Kind;

// What plays lists or scripts is not among them.
constexpr char formats[] = "avi,mov,matroska,mpegts";
constexpr char protocols[] = "file";

constexpr std::int64_t probeBytes = 2'000'000;
constexpr std::int64_t probeTime = 2'000'000; // microseconds
constexpr std::size_t readAhead = 64;         // packets, for the other stream's next one
constexpr AVRational microseconds{1, 1'000'000};
constexpr std::chrono::seconds stepBack{4}; // where a file without an index missed the key frame; doubled

constexpr int mostSearched = 5'000; // packets, for one of the video
constexpr std::chrono::milliseconds stampPrecision{1};
constexpr RecordFile::Time longest =
    std::chrono::milliseconds(INT_MAX); // what a time in the interface can be
constexpr AVRational usualRate{25, 1};

RecordFile::Time toTime(std::int64_t stamp, AVRational unit)
{
    const std::int64_t known = stamp != AV_NOPTS_VALUE ? stamp : 0;
    return std::clamp(RecordFile::Time(av_rescale_q(known, unit, microseconds)), RecordFile::Time(0),
                      longest);
}

} // namespace

bool RecordFile::open(const std::string& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error) || !openInput(path))
        return false; // opening a pipe could wait for ever
    return probe();
}

/// Reads as far as it takes to know what the file consists of.
bool RecordFile::probe()
{
    std::vector<AVDictionary*> options(input_->nb_streams);
    for (AVDictionary*& option : options)
        av_dict_set_int(&option, "max_pixels", mostPixels, 0);
    const bool known = avformat_find_stream_info(input_.get(), options.data()) >= 0;
    for (AVDictionary*& option : options)
        av_dict_free(&option);
    if (!known)
        return false;
    chooseStreams();
    return video_ != nullptr;
}

bool RecordFile::openInput(const std::string& path)
{
    AVFormatContext* context = avformat_alloc_context();
    if (context == nullptr)
        return false;
    deadline_.allow(g_streamTiming.fileStep);
    silence(*context);
    context->interrupt_callback = deadline_.callback();
    context->format_whitelist = av_strdup(formats);
    context->protocol_whitelist = av_strdup(protocols);
    context->probesize = probeBytes;
    context->max_analyze_duration = probeTime;
    const std::string url = "file:" + path; // whatever colons the name has
    const bool opened = avformat_open_input(&context, url.c_str(), nullptr, nullptr) == 0;
    input_.reset(context); // null when it failed
    return opened;
}

void RecordFile::chooseStreams()
{
    const auto best = [this](AVMediaType type) -> AVStream* {
        const int index = av_find_best_stream(input_.get(), type, -1, -1, nullptr, 0);
        return index >= 0 ? input_->streams[index] : nullptr;
    };
    video_ = best(AVMEDIA_TYPE_VIDEO);
    sound_ = best(AVMEDIA_TYPE_AUDIO);
    for (unsigned i = 0; i < input_->nb_streams; ++i) {
        AVStream* const stream = input_->streams[i];
        if (stream != video_ && stream != sound_)
            stream->discard = AVDISCARD_ALL;
    }
}

RecordedPacket RecordFile::read()
{
    while (!inOrder() && fill()) {
    }
    const bool soundFirst =
        videoQueue_.empty() || (!soundQueue_.empty() && soundQueue_.front().time < videoQueue_.front().time);
    Queue& queue = soundFirst ? soundQueue_ : videoQueue_;
    if (queue.empty())
        return {};
    RecordedPacket next = std::move(queue.front());
    queue.pop_front();
    return next;
}

/// Whether the next packet is known: one of each kind is there, or the other kind does not come.
bool RecordFile::inOrder() const
{
    const bool both = !videoQueue_.empty() && (sound_ == nullptr || !soundQueue_.empty());
    return both || videoQueue_.size() + soundQueue_.size() >= readAhead;
}

/// False at the end.
bool RecordFile::fill()
{
    PacketPtr packet(av_packet_alloc());
    deadline_.allow(g_streamTiming.fileStep);
    if (packet == nullptr || av_read_frame(input_.get(), packet.get()) < 0)
        return false;
    const bool isVideo = packet->stream_index == video_->index;
    if (!isVideo && (sound_ == nullptr || packet->stream_index != sound_->index))
        return true;
    Queue& queue = isVideo ? videoQueue_ : soundQueue_;
    const std::int64_t stamp = packet->dts != AV_NOPTS_VALUE ? packet->dts : packet->pts;
    const Time before = queue.empty() ? Time(0) : queue.back().time;
    const Time time = stamp != AV_NOPTS_VALUE ? timeOf(stamp, isVideo ? *video_ : *sound_) : before;
    queue.push_back({std::move(packet), isVideo ? Kind::Video : Kind::Sound, time});
    return true;
}

void RecordFile::seek(Time time)
{
    Time back{0};
    Time from{0};
    do {
        from = std::max(time - back, Time(0));
        back = std::max<Time>(2 * back, stepBack);
    } while (!seekInput(from, time) && from > Time(0));
}

/// Whether a key frame comes next, and is not one after the limit.
bool RecordFile::seekInput(Time time, Time limit)
{
    videoQueue_.clear();
    soundQueue_.clear();
    deadline_.allow(g_streamTiming.fileStep);
    const Time start = toTime(video_->start_time, video_->time_base);
    const std::int64_t stamp = av_rescale_q((start + time).count(), microseconds, video_->time_base);
    if (av_seek_frame(input_.get(), video_->index, stamp, AVSEEK_FLAG_BACKWARD) < 0)
        return false;
    for (int i = 0; i < mostSearched && videoQueue_.empty() && fill(); ++i) {
    }
    if (videoQueue_.empty())
        return false;
    const RecordedPacket& first = videoQueue_.front();
    return (first.packet->flags & AV_PKT_FLAG_KEY) != 0 && first.time < limit + stampPrecision;
}

RecordFile::Time RecordFile::duration() const
{
    const bool known = video_->duration != AV_NOPTS_VALUE;
    return known ? toTime(video_->duration, video_->time_base)
                 : toTime(input_->duration, AVRational{1, AV_TIME_BASE});
}

AVRational RecordFile::frameRate() const
{
    const AVRational rate = av_guess_frame_rate(input_.get(), video_, nullptr);
    const bool plausible = rate.num > 0 && rate.den > 0 && av_q2d(rate) <= 1000;
    return plausible ? rate : usualRate;
}

RecordFile::Time RecordFile::timeOf(std::int64_t stamp, const AVStream& stream)
{
    return std::max(toTime(stamp, stream.time_base) - toTime(stream.start_time, stream.time_base), Time(0));
}
