#include "ipcctl/AviWriter.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "ipcctl/ParameterSets.h"

namespace
{

constexpr AVRational usualRate{25, 1}; // where the stream does not tell its own
constexpr double savePause = 1000;     // milliseconds
constexpr int bufferSize = 256 * 1024;
constexpr int aacFrame = 1024; // samples, where the stream does not tell

int writeFile(void* file, std::uint8_t* bytes, int size)
{
    const bool written = static_cast<SavedFile*>(file)->write(bytes, static_cast<std::size_t>(size));
    return written ? size : AVERROR(errno);
}

std::int64_t seekFile(void* file, std::int64_t offset, int whence)
{
    auto& saved = *static_cast<SavedFile*>(file);
    return (whence & AVSEEK_SIZE) != 0 ? saved.size() : saved.seek(offset, whence & ~AVSEEK_FORCE);
}

AVIOContext* ioFor(SavedFile& file)
{
    auto* const buffer = static_cast<unsigned char*>(av_malloc(bufferSize));
    AVIOContext* io = buffer == nullptr
                          ? nullptr
                          : avio_alloc_context(buffer, bufferSize, 1, &file, nullptr, writeFile, seekFile);
    if (io == nullptr)
        av_free(buffer);
    return io;
}

bool isPlausible(AVRational rate)
{
    return rate.num > 0 && rate.den > 0 && rate.num / rate.den <= 1000;
}

} // namespace

void AviWriter::OutputFree::operator()(AVFormatContext* context) const
{
    AVIOContext* io = context->pb;
    avformat_free_context(context);
    if (io != nullptr)
        av_freep(&io->buffer);
    avio_context_free(&io);
}

AviWriter::~AviWriter()
{
    close();
}

bool AviWriter::open(std::unique_ptr<SavedFile> file, const AVCodecParameters& video, AVRational frameRate,
                     const AVCodecParameters* sound)
{
    file_ = std::move(file);
    AVFormatContext* context = nullptr;
    if (avformat_alloc_output_context2(&context, nullptr, "avi", nullptr) < 0)
        return false;
    output_.reset(context);
    written_.reset(av_packet_alloc());
    context->pb = ioFor(*file_);
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->flush_packets = 0; // they are written in large pieces
    if (context->pb == nullptr || written_ == nullptr || !addVideo(video, frameRate))
        return false;
    if (sound != nullptr && SoundTrack::carries(*sound) && !addSound(*sound))
        return false;
    good_ = begin();
    return good_;
}

bool AviWriter::addVideo(const AVCodecParameters& video, AVRational frameRate)
{
    AVStream* const stream = avformat_new_stream(output_.get(), nullptr);
    if (stream == nullptr || avcodec_parameters_copy(stream->codecpar, &video) < 0 || !goOn(video))
        return false;
    stream->codecpar->codec_tag = 0; // AVI has its own
    const AVRational rate = isPlausible(frameRate) ? frameRate : usualRate;
    stream->time_base = av_inv_q(rate);
    grid_.emplace(rate);
    return true;
}

bool AviWriter::addSound(const AVCodecParameters& sound)
{
    AVStream* const stream = avformat_new_stream(output_.get(), nullptr);
    if (stream == nullptr || avcodec_parameters_copy(stream->codecpar, &sound) < 0)
        return false;
    AVCodecParameters& parameters = *stream->codecpar;
    parameters.codec_tag = 0;
    if (parameters.codec_id == AV_CODEC_ID_AAC) {
        parameters.block_align = 0; // a packet is a unit
        if (parameters.frame_size <= 0)
            parameters.frame_size = aacFrame;
    } else {
        parameters.bits_per_coded_sample = av_get_bits_per_sample(parameters.codec_id);
        parameters.block_align = parameters.ch_layout.nb_channels * parameters.bits_per_coded_sample / 8;
    }
    stream->time_base = {1, parameters.sample_rate};
    sound_.emplace(parameters, stream->index);
    return true;
}

bool AviWriter::begin()
{
    if (avformat_write_header(output_.get(), nullptr) < 0)
        return false;
    avio_flush(output_->pb);
    return output_->pb->error == 0 && header_.find(*file_);
}

bool AviWriter::goOn(const AVCodecParameters& video)
{
    video_.reset(avcodec_parameters_alloc());
    return video_ != nullptr && avcodec_parameters_copy(video_.get(), &video) >= 0;
}

void AviWriter::writeVideo(const AVPacket& packet, double time)
{
    if (!good_)
        return;
    const bool first = grid_->frames() == 0;
    if (first && (packet.flags & AV_PKT_FLAG_KEY) == 0)
        return;
    if (first)
        begin_ = time;
    const std::int64_t number = grid_->place(static_cast<std::int64_t>(time * 1000));
    const PacketPtr whole = withParameterSets(packet);
    if (write(whole != nullptr ? *whole : packet, 0, number))
        ++frames_;
    if (first || time - saved_ >= savePause)
        save(time);
}

void AviWriter::writeSound(const AVPacket& packet, double time)
{
    if (!good_ || !sound_ || grid_->frames() == 0 || packet.size <= 0)
        return;
    const std::int64_t missing = sound_->missingBefore(time - begin_);
    if (missing < 0 || !leaveEmpty(missing))
        return;
    write(packet, sound_->stream(), sound_->length());
    sound_->advance(sound_->unitsOf(packet));
}

/// False when it can not be written.
bool AviWriter::leaveEmpty(std::int64_t units)
{
    if (!sound_->needsSilence()) {
        sound_->advance(std::min(units, FrameGrid::longestLeap));
        return true;
    }
    while (good_ && units > 0) {
        const PacketPtr silence = sound_->silence(units);
        if (silence == nullptr)
            return false;
        write(*silence, sound_->stream(), sound_->length());
        sound_->advance(sound_->unitsOf(*silence));
        units -= sound_->unitsOf(*silence);
    }
    return good_;
}

/// Players that begin at a key frame know from it alone how to decode it. Null: the packet stays as it is.
PacketPtr AviWriter::withParameterSets(const AVPacket& packet) const
{
    const AVCodecParameters& video = *video_;
    if ((packet.flags & AV_PKT_FLAG_KEY) == 0 || !lacksParameterSets(packet, video))
        return nullptr;
    PacketPtr whole(av_packet_alloc());
    if (whole == nullptr || av_new_packet(whole.get(), video.extradata_size + packet.size) < 0)
        return nullptr;
    std::memcpy(whole->data, video.extradata, static_cast<std::size_t>(video.extradata_size));
    std::memcpy(whole->data + video.extradata_size, packet.data, static_cast<std::size_t>(packet.size));
    whole->flags = packet.flags;
    return whole;
}

/// False: there is no room.
bool AviWriter::write(const AVPacket& packet, int stream, std::int64_t number)
{
    written_->data = packet.data;
    written_->size = packet.size;
    written_->flags = packet.flags;
    written_->stream_index = stream;
    written_->pts = written_->dts = number;
    if (av_write_frame(output_.get(), written_.get()) < 0 || output_->pb->error != 0)
        giveUp();
    return good_;
}

/// What follows makes the file one that can be played up to here.
void AviWriter::save(double time)
{
    if (!good_)
        return;
    saved_ = time;
    avio_flush(output_->pb);
    if (output_->pb->error != 0 || !saveHeader())
        giveUp();
}

bool AviWriter::saveHeader()
{
    const std::int64_t size = file_->size();
    std::vector<std::int64_t> lengths{grid_->frames()};
    if (sound_)
        lengths.push_back(sound_->length());
    if (!header_.setRate(*file_, grid_->rate()) || !header_.setLengths(*file_, lengths) ||
        !header_.setSize(*file_, size))
        return false;
    size_ = size;
    savedFrames_ = frames_;
    return true;
}

/// There is no room: what does not fit in whole goes away, so that the header, which tells of what does, is right.
void AviWriter::giveUp()
{
    good_ = false;
    frames_ = savedFrames_;
    file_->truncate(size_);
}

bool AviWriter::close()
{
    if (file_ == nullptr || !file_->isOpen())
        return false;
    if (frames_ == 0) {
        file_->discard(); // it would be none that players open
        return false;
    }
    save(saved_);
    if (good_ && (av_write_trailer(output_.get()) < 0 || output_->pb->error != 0))
        giveUp();
    size_ = file_->size();
    output_.reset();
    return file_->close() && std::exchange(good_, false);
}

std::int64_t AviWriter::bytes() const
{
    return output_ != nullptr && good_ ? avio_tell(output_->pb) : size_;
}
