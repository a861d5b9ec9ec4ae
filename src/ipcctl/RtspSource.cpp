#include "ipcctl/RtspSource.h"

#include <string_view>

#include "ipcctl/StreamTiming.h"

namespace
{

constexpr std::string_view scheme = "rtsp://";
constexpr std::size_t longestCredentials = 127; // that FFmpeg keeps, encoded

/// Encodes what would end the credentials or part them in another place.
std::string percentEncode(std::string_view text)
{
    static constexpr std::string_view plain = "-._~!$&'()*+,;=";
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isWordCharacter =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (isWordCharacter || plain.find(c) != plain.npos)
            encoded += c;
        else
            encoded.append({'%', digits[byte >> 4], digits[byte & 15]});
    }
    return encoded;
}

bool hasOnlyKeyFrames(AVCodecID codec)
{
    const AVCodecDescriptor* const descriptor = avcodec_descriptor_get(codec);
    return descriptor != nullptr && (descriptor->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
}

/// Options of FFmpeg's, freed with what it did not know of them.
class Options
{
public:
    Options() = default;
    ~Options() { av_dict_free(&options_); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    void set(const char* name, const char* value) { av_dict_set(&options_, name, value, 0); }
    AVDictionary** get() { return &options_; }

private:
    AVDictionary* options_ = nullptr;
};

} // namespace

std::string urlWithCredentials(const StreamAddress& address)
{
    const std::string_view url = address.url;
    if (!url.starts_with(scheme))
        return {};
    if (address.user.empty())
        return address.url;
    const std::string credentials = percentEncode(address.user) + ':' + percentEncode(address.password);
    if (credentials.size() > longestCredentials || address.user.find(':') != std::string::npos)
        return {};
    return std::string(scheme) + credentials + '@' + std::string(url.substr(scheme.size()));
}

RtspSource::Opened RtspSource::open(const StreamAddress& address)
{
    const std::string url = urlWithCredentials(address);
    if (url.empty())
        return Opened::No;
    deadline_.allow(g_streamTiming.open);

    Options options;
    options.set("rtsp_transport", address.transport == StreamTransport::Tcp ? "tcp" : "udp");
    options.set("allowed_media_types", "video+audio");
    options.set("user_agent", "KxIpcSDK");
    AVFormatContext* context = avformat_alloc_context();
    if (context == nullptr)
        return Opened::No;
    silence(*context);
    context->flags |= AVFMT_FLAG_NOPARSE | AVFMT_FLAG_NOFILLIN; // it would take a piece for a frame
    context->interrupt_callback = deadline_.callback();
    const int result =
        avformat_open_input(&context, url.c_str(), av_find_input_format("rtsp"), options.get());
    input_.reset(context); // null when it failed
    if (result == AVERROR_HTTP_UNAUTHORIZED || result == AVERROR_HTTP_FORBIDDEN)
        return Opened::Refused;
    if (result < 0)
        return Opened::No;
    video_ = first(AVMEDIA_TYPE_VIDEO);
    sound_ = first(AVMEDIA_TYPE_AUDIO);
    onlyKeyFrames_ = video_ != nullptr && hasOnlyKeyFrames(video_->codecpar->codec_id);
    lastVideo_ = Deadline::Clock::now();
    return video_ != nullptr || sound_ != nullptr ? Opened::Yes : Opened::No;
}

bool RtspSource::read(AVPacket& packet)
{
    deadline_.allow(g_streamTiming.silence);
    if (av_read_frame(input_.get(), &packet) != 0)
        return false;
    const bool isVideo = video_ != nullptr && packet.stream_index == video_->index;
    if (isVideo && onlyKeyFrames_)
        packet.flags |= AV_PKT_FLAG_KEY;
    const auto now = Deadline::Clock::now();
    if (isVideo || video_ == nullptr)
        lastVideo_ = now;
    return now - lastVideo_ < g_streamTiming.silence;
}

void RtspSource::close()
{
    deadline_.allowFarewell(g_streamTiming.teardown);
    input_.reset();
}

const AVStream* RtspSource::first(AVMediaType type) const
{
    const int index = av_find_best_stream(input_.get(), type, -1, -1, nullptr, 0);
    return index >= 0 ? input_->streams[index] : nullptr;
}
