#include "ipcctl/SoundDecoder.h"

#include <algorithm>

bool SoundDecoder::open(const AVCodecParameters& parameters)
{
    aac_.reset();
    other_.reset();
    return parameters.codec_id == AV_CODEC_ID_AAC ? openAac(parameters) : openOther(parameters);
}

Sound SoundDecoder::decode(const AVPacket& packet)
{
    if (aac_ != nullptr)
        return decodeAac(packet);
    return other_ != nullptr ? decodeOther(packet) : Sound{};
}

void SoundDecoder::flush()
{
    if (aac_ != nullptr)
        NeAACDecPostSeekReset(aac_.get(), -1);
    else if (other_ != nullptr)
        avcodec_flush_buffers(other_.get());
}

bool SoundDecoder::openAac(const AVCodecParameters& parameters)
{
    aac_.reset(NeAACDecOpen());
    if (aac_ == nullptr)
        return false;
    NeAACDecConfiguration* const configuration = NeAACDecGetCurrentConfiguration(aac_.get());
    configuration->outputFormat = FAAD_FMT_16BIT;
    configuration->dontUpSampleImplicitSBR = 1; // else all sound of low rates comes out at twice its rate
    NeAACDecSetConfiguration(aac_.get(), configuration);

    aacBegun_ = parameters.extradata_size > 0;
    unsigned long sampleRate = 0;
    unsigned char channels = 0;
    return !aacBegun_ ||
           NeAACDecInit2(aac_.get(), parameters.extradata,
                         static_cast<unsigned long>(parameters.extradata_size), &sampleRate, &channels) >= 0;
}

/// Sound that was not described beforehand describes itself in each packet's header.
bool SoundDecoder::beginAac(const AVPacket& packet)
{
    unsigned long sampleRate = 0;
    unsigned char channels = 0;
    aacBegun_ = NeAACDecInit(aac_.get(), packet.data, static_cast<unsigned long>(packet.size), &sampleRate,
                             &channels) >= 0;
    return aacBegun_;
}

Sound SoundDecoder::decodeAac(const AVPacket& packet)
{
    if (packet.size <= 0 || (!aacBegun_ && !beginAac(packet)))
        return {};
    NeAACDecFrameInfo info{};
    void* const samples =
        NeAACDecDecode(aac_.get(), &info, packet.data, static_cast<unsigned long>(packet.size));
    if (samples == nullptr || info.error != 0)
        return {};
    return {{static_cast<short*>(samples), info.samples}, info.channels, static_cast<int>(info.samplerate)};
}

bool SoundDecoder::openOther(const AVCodecParameters& parameters)
{
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    frame_.reset(av_frame_alloc());
    other_.reset(avcodec_alloc_context3(codec));
    if (codec == nullptr || frame_ == nullptr || other_ == nullptr ||
        avcodec_parameters_to_context(other_.get(), &parameters) < 0)
        return false;
    silence(*other_);
    other_->thread_count = 1;
    return avcodec_open2(other_.get(), codec, nullptr) == 0;
}

Sound SoundDecoder::decodeOther(const AVPacket& packet)
{
    samples_.clear();
    if (avcodec_send_packet(other_.get(), &packet) != 0)
        return {};
    while (avcodec_receive_frame(other_.get(), frame_.get()) == 0)
        if (!append(*frame_))
            return {};
    return {samples_, channels_, sampleRate_};
}

bool SoundDecoder::append(AVFrame& frame)
{
    if (!adaptTo(frame))
        return false;
    const std::size_t before = samples_.size();
    const auto channels = static_cast<std::size_t>(channels_);
    samples_.resize(before + static_cast<std::size_t>(frame.nb_samples) * channels);
    std::uint8_t* out[] = {reinterpret_cast<std::uint8_t*>(samples_.data() + before)};
    const int converted =
        swr_convert(converter_.get(), out, frame.nb_samples,
                    const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples);
    samples_.resize(before + static_cast<std::size_t>(std::max(converted, 0)) * channels);
    return converted >= 0;
}

bool SoundDecoder::adaptTo(AVFrame& frame)
{
    if (converter_ != nullptr && frame.format == format_ && frame.ch_layout.nb_channels == channels_ &&
        frame.sample_rate == sampleRate_)
        return true;
    samples_.clear(); // what came in another shape
    SwrContext* converter = nullptr;
    const auto format = static_cast<AVSampleFormat>(frame.format);
    if (swr_alloc_set_opts2(&converter, &frame.ch_layout, AV_SAMPLE_FMT_S16, frame.sample_rate,
                            &frame.ch_layout, format, frame.sample_rate, 0, nullptr) < 0)
        return false;
    converter_.reset(converter);
    format_ = frame.format;
    channels_ = frame.ch_layout.nb_channels;
    sampleRate_ = frame.sample_rate;
    if (swr_init(converter_.get()) < 0)
        converter_.reset();
    return converter_ != nullptr;
}
