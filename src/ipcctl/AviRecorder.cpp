#include "ipcctl/AviRecorder.h"

#include <chrono>

AviRecorder::~AviRecorder()
{
    stop();
}

bool AviRecorder::startIn(const std::string& directory)
{
    directory_ = directory;
    path_.clear();
    SavedFile trial;
    recording_ = trial.createIn(directory, '.' + timeStamp(std::chrono::system_clock::now()), ".avi.part");
    if (recording_)
        trial.discard();
    return recording_;
}

bool AviRecorder::startAt(const std::string& path)
{
    SavedFile trial;
    if (!trial.create(path))
        return false;
    trial.discard();
    path_ = path;
    recording_ = true;
    return true;
}

/// Null when it can not be made.
std::unique_ptr<SavedFile> AviRecorder::createFile() const
{
    auto file = std::make_unique<SavedFile>();
    const bool made = path_.empty()
                          ? file->createIn(directory_, timeStamp(std::chrono::system_clock::now()), ".avi")
                          : file->createIn(path_.parent_path(), path_.stem(), path_.extension().c_str());
    return made ? std::move(file) : nullptr;
}

AviRecorder::Format AviRecorder::formatOf(const StreamFormat& format)
{
    Format described{
        .video = format.video->codec_id, .width = format.video->width, .height = format.video->height};
    if (format.sound != nullptr) {
        described.sound = format.sound->codec_id;
        described.sampleRate = format.sound->sample_rate;
        described.channels = format.sound->ch_layout.nb_channels;
    }
    return described;
}

void AviRecorder::begin(const StreamFormat& format)
{
    if (!recording_)
        return;
    const Format next = formatOf(format);
    if (writer_ && next == format_)
        recording_ = writer_->goOn(*format.video);
    else
        beginFile(format);
    if (!recording_)
        finishFile();
}

void AviRecorder::beginFile(const StreamFormat& format)
{
    finishFile();
    format_ = formatOf(format);
    std::unique_ptr<SavedFile> file = createFile();
    whole_ = file != nullptr && whole_;
    if (file != nullptr)
        writer_.emplace();
    recording_ =
        file != nullptr && writer_->open(std::move(file), *format.video, format.frameRate, format.sound);
}

void AviRecorder::takeVideo(const AVPacket& packet, double time)
{
    if (!recording_ || !writer_)
        return;
    writer_->writeVideo(packet, time);
    update();
}

void AviRecorder::takeSound(const AVPacket& packet, double time)
{
    if (!recording_ || !writer_)
        return;
    writer_->writeSound(packet, time);
    update();
}

bool AviRecorder::stop()
{
    recording_ = false;
    finishFile();
    return isWhole();
}

void AviRecorder::finishFile()
{
    if (!writer_)
        return;
    whole_ = writer_->close() && whole_;
    frames_ = writer_->frames();
    bytes_ = writer_->bytes();
    finished_ = true;
    writer_.reset();
}

void AviRecorder::update()
{
    frames_ = writer_->frames();
    bytes_ = writer_->bytes();
    recording_ = bool{*writer_};
    if (!recording_)
        finishFile();
}
