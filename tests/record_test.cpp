// Recordings: what is in the files, whatever the time stamps, the disk and the process do.
#include <cmath>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include <gmock/gmock.h>
#include <unistd.h>

#include "ChildProcess.h"
#include "StreamMedia.h"
#include "ipcctl/AviRecorder.h"
#include "ipcctl/VideoDecoder.h"

namespace
{

using testing::ElementsAre;
using testing::MatchesRegex;
using Times = std::function<double(int)>;

/// What ffprobe says of a file, by "<stream's type>.<key>", and "complaints" where it has any.
std::map<std::string, std::string> probe(const std::string& path)
{
    const std::string command =
        "ffprobe -v error -count_packets -show_entries stream=codec_type,codec_name,width,"
        "height,avg_frame_rate,nb_frames,nb_read_packets,duration -of default=nw=1 '" +
        path + "' 2>&1";
    FILE* const pipe = ::popen(command.c_str(), "r");
    std::map<std::string, std::string> found;
    std::string codec;
    std::string type;
    for (char line[512]; std::fgets(line, sizeof line, pipe) != nullptr;) {
        std::istringstream text(line);
        std::string key;
        std::string value;
        std::getline(std::getline(text, key, '='), value);
        if (key == "codec_name")
            codec = value;
        else if (key == "codec_type")
            found[(type = value) + ".codec"] = codec;
        else if (value.empty())
            found["complaints"] += line;
        else
            found[type + '.' + key] = value;
    }
    ::pclose(pipe);
    return found;
}

/// A recorder's stream of pictures and sound.
class Stream
{
public:
    Stream(const Media& video, const Media* sound = nullptr, AVRational rate = {0, 1})
        : video_(video), sound_(sound)
    {
        format_.video = video.parameters.get();
        format_.frameRate = rate;
        format_.sound = sound != nullptr ? sound->parameters.get() : nullptr;
    }

    const StreamFormat& format() const { return format_; }

    /// Feeds frames up to, not including, this one, and the sound that comes between them.
    void feed(PacketSink& sink, int end, const Times& timeOf)
    {
        for (; next_ < end; ++next_) {
            const double time = timeOf(next_);
            for (; sound_ != nullptr && nextSound_ < sound_->packets.size(); ++nextSound_) {
                const auto soundTime = static_cast<double>(sound_->packets[nextSound_]->pts);
                if (soundTime >= time)
                    break;
                sink.takeSound(*sound_->packets[nextSound_], soundTime);
            }
            if (time >= 0)
                sink.takeVideo(*video_.packets[static_cast<std::size_t>(next_)], time);
        }
    }

private:
    const Media& video_;
    const Media* sound_;
    StreamFormat format_;
    int next_ = 0;
    std::size_t nextSound_ = 0;
};

Times every(double milliseconds)
{
    return [=](int frame) { return frame * milliseconds; };
}

/// The file of this stream, recorded up to this frame.
std::string record(const ScratchDirectory& directory, Stream stream, int end, const Times& timeOf)
{
    const std::string path = directory / "recording.avi";
    AviRecorder recorder;
    EXPECT_TRUE(recorder.startAt(path));
    recorder.begin(stream.format());
    stream.feed(recorder, end, timeOf);
    EXPECT_TRUE(recorder.recording());
    EXPECT_EQ(recorder.frames(), end);
    EXPECT_TRUE(recorder.stop());
    EXPECT_EQ(recorder.bytes(), static_cast<std::int64_t>(std::filesystem::file_size(path)));
    return path;
}

/// The pictures of a file: the number that each shows, and its time.
std::vector<std::pair<int, double>> picturesOf(const std::string& path)
{
    AVFormatContext* context = nullptr;
    EXPECT_EQ(avformat_open_input(&context, path.c_str(), nullptr, nullptr), 0) << path;
    const InputPtr input(context);
    VideoDecoder decoder;
    std::vector<std::pair<int, double>> pictures;
    if (input == nullptr || !decoder.open(*input->streams[0]->codecpar, VideoDecoder::Delay::None))
        return pictures;
    const double unit = 1000 * av_q2d(input->streams[0]->time_base);
    for (PacketPtr packet(av_packet_alloc()); av_read_frame(input.get(), packet.get()) == 0;
         av_packet_unref(packet.get())) {
        if (packet->stream_index != 0)
            continue;
        EXPECT_TRUE(decoder.send(packet.get()));
        while (const AVFrame* frame = decoder.receive())
            pictures.emplace_back(readNumber(frame->data[0], frame->linesize[0], frame->width, frame->height),
                                  static_cast<double>(frame->best_effort_timestamp) * unit);
    }
    return pictures;
}

} // namespace

TEST(Recording, IsWhatProbeSays)
{
    const struct
    {
        VideoKind video;
        const char* sound;
        AVRational told;
        std::string codec, soundCodec, rate, duration;
    } cases[] = {
        {{}, "aac", {25, 1}, "h264", "aac", "25/1", "2.000000"},
        {{}, "pcm_mulaw", {0, 1}, "h264", "pcm_mulaw", "25/1", "2.000000"},
        {{.rate = {30'000, 1001}}, nullptr, {30, 1}, "h264", "", "30000/1001", "1.668333"},
        {{.width = 96, .height = 64, .frames = 3}, nullptr, {10, 1}, "h264", "", "25/1", "0.120000"},
        {{.encoder = "mjpeg", .rate = {25, 2}}, nullptr, {90'000, 1}, "mjpeg", "", "25/2", "4.000000"},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.codec + expected.soundCodec + expected.rate);
        const ScratchDirectory directory;
        const Media video = encodeVideo(expected.video);
        const Media sound = expected.sound != nullptr ? encodeSound(expected.sound, 3) : Media{};
        const std::string path =
            record(directory, {video, expected.sound != nullptr ? &sound : nullptr, expected.told},
                   expected.video.frames, every(1000 / av_q2d(expected.video.rate)));

        auto found = probe(path);
        const std::string frames = std::to_string(expected.video.frames);
        EXPECT_EQ(found["complaints"], "");
        EXPECT_EQ(found["video.codec"], expected.codec);
        EXPECT_EQ(found["video.width"], std::to_string(expected.video.width));
        EXPECT_EQ(found["video.height"], std::to_string(expected.video.height));
        EXPECT_EQ(found["video.avg_frame_rate"], expected.rate);
        EXPECT_EQ(found["video.nb_frames"], frames);
        EXPECT_EQ(found["video.nb_read_packets"], frames);
        EXPECT_EQ(found["video.duration"], expected.duration);
        EXPECT_EQ(found["audio.codec"], expected.soundCodec);
        std::ifstream file(path);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        EXPECT_NE(bytes.find("idx1"), bytes.npos);
    }
}

TEST(Recording, KeepsEachFrameAtItsTime)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<> jitter(-12, 12);
    const struct
    {
        const char* name;
        Times timeOf; // below 0: lost
        double precision;
    } cases[] = {
        {"jitter", [&](int frame) { return 40 * frame + 12 + jitter(random); }, 41},
        {"slow clock", [](int frame) { return 40.1 * frame; }, 41},
        {"millisecond stamps", [](int frame) { return std::floor(frame * 1000 / 30.0); }, 2},
        {"interruption", [](int frame) { return 40 * frame + (frame < 100 ? 0 : 7'310); }, 41},
        {"losses", [](int frame) { return frame % 19 == 7 ? -1 : 40.0 * frame; }, 81},
    };
    const Media video = encodeVideo({.frames = 300, .keyDistance = 1});
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ScratchDirectory directory;
        std::map<int, double> times;
        const auto timeOf = [&](int frame) { return times[frame] = c.timeOf(frame); };
        AviRecorder recorder;
        ASSERT_TRUE(recorder.startAt(directory / "recording.avi"));
        Stream stream(video);
        recorder.begin(stream.format());
        stream.feed(recorder, 300, timeOf);
        ASSERT_TRUE(recorder.stop());

        const auto pictures = picturesOf(directory / "recording.avi");
        EXPECT_EQ(pictures.size(), recorder.frames());
        for (const auto& [number, time] : pictures)
            EXPECT_NEAR(time, times[number] - times[0], c.precision) << number;
    }
}

TEST(Recording, KeepsSoundWithThePicture)
{
    const Media video = encodeVideo({.frames = 250});
    for (const char* encoder : {"aac", "pcm_mulaw"}) {
        SCOPED_TRACE(encoder);
        const ScratchDirectory directory;
        Media sound = encodeSound(encoder, 10);
        std::erase_if(sound.packets, [](const PacketPtr& packet) { // begins late, and is away for two seconds
            return packet->pts < 500 || (packet->pts > 3'000 && packet->pts < 5'000);
        });
        const std::string path = record(directory, {video, &sound}, 250, every(40));
        auto found = probe(path);
        EXPECT_EQ(found["complaints"], "");
        const double units = std::stod(found["audio.nb_frames"]);
        EXPECT_NEAR(units / (std::string("aac") == encoder ? 16 / 1.024 : 16'000), 10, 0.2);
        EXPECT_EQ(found["video.nb_frames"], "250");
    }
}

TEST(Recording, SurvivesItsProcess)
{
    const ScratchDirectory directory;
    const Media video = encodeVideo({.frames = 200});
    const Media sound = encodeSound("aac", 8);
    for (const int end : {1, 190}) {
        const std::string path = directory / std::to_string(end) + ".avi";
        const auto run = [&] {
            AviRecorder recorder;
            EXPECT_TRUE(recorder.startAt(path));
            Stream stream(video, &sound, {10, 1});
            recorder.begin(stream.format());
            stream.feed(recorder, end, every(40));
            ::kill(::getpid(), SIGKILL);
        };
        ASSERT_TRUE(endsBy(SIGKILL, run));

        auto found = probe(path);
        const int frames = std::stoi(found["video.nb_frames"]);
        EXPECT_EQ(found["complaints"], "");
        EXPECT_GE(frames, end - 25);
        EXPECT_EQ(found["video.avg_frame_rate"], end == 1 ? "10/1" : "25/1");
        EXPECT_NEAR(std::stod(found["video.duration"]), frames * (end == 1 ? 0.1 : 0.04), 1e-3);
        const auto pictures = picturesOf(path);
        ASSERT_EQ(pictures.size(), frames);
        EXPECT_EQ(pictures.back().first, frames - 1);
    }
}

TEST(Recording, EndsWhenTheDiskIsFull)
{
    const ScratchDirectory directory;
    const std::string path = directory / "recording.avi";
    const Media video = encodeVideo({.encoder = "mjpeg", .frames = 500, .keyDistance = 1});
    const auto run = [&] {
        limitFiles(60'000);
        AviRecorder recorder;
        EXPECT_TRUE(recorder.startAt(path));
        Stream stream(video);
        recorder.begin(stream.format());
        stream.feed(recorder, 500, every(40));
        EXPECT_FALSE(recorder.recording());
        EXPECT_FALSE(recorder.stop());
        EXPECT_LE(recorder.bytes(), 60'000);
        EXPECT_EQ(recorder.frames(), std::stoi(probe(path)["video.nb_frames"]));
    };
    ASSERT_TRUE(endsBy(0, run));
    auto found = probe(path);
    EXPECT_EQ(found["complaints"], "");
    EXPECT_GT(std::stoi(found["video.nb_frames"]), 50);
    EXPECT_EQ(found["video.nb_frames"], found["video.nb_read_packets"]);
}

TEST(Recording, LeavesNoFileWithoutAFrame)
{
    const Media video = encodeVideo({.width = 640, .height = 480, .frames = 10});
    for (const rlim_t room : {100U, 6'000U}) { // not even the header, or not the first frame
        const ScratchDirectory directory;
        const auto run = [&] {
            limitFiles(room);
            AviRecorder recorder;
            EXPECT_TRUE(recorder.startIn(directory.path()));
            Stream stream(video);
            recorder.begin(stream.format());
            stream.feed(recorder, 10, every(40));
            EXPECT_FALSE(recorder.recording());
            EXPECT_EQ(recorder.frames(), 0);
            EXPECT_THAT(directory.names(), ElementsAre()) << "at once";
            EXPECT_FALSE(recorder.stop());
        };
        EXPECT_TRUE(endsBy(0, run)) << room;
    }
}

TEST(Recording, TakesNoOtherFilesPlace)
{
    const ScratchDirectory directory;
    AviRecorder first;
    AviRecorder second;
    EXPECT_FALSE(first.startIn(directory / "missing"));
    ASSERT_TRUE(first.startIn(directory.path()));
    ASSERT_TRUE(second.startIn(directory.path()));
    EXPECT_THAT(directory.names(), ElementsAre()) << "whoever is killed now leaves nothing behind";
    const Media video = encodeVideo({.frames = 1});
    for (AviRecorder* recorder : {&first, &second}) {
        Stream stream(video);
        recorder->begin(stream.format());
        stream.feed(*recorder, 1, every(40));
    }
    const auto names = directory.names();
    ASSERT_EQ(names.size(), 2);
    for (const std::string& name : names)
        EXPECT_THAT(name, MatchesRegex("[0-9]{8}_[0-9]{6}(_2)?\\.avi"));
    AviRecorder third;
    EXPECT_FALSE(third.startAt(directory / names[0]));
    EXPECT_TRUE(first.stop() && second.stop());

    EXPECT_TRUE(third.startAt(directory / "other.avi"));
    EXPECT_FALSE(third.stop()) << "without a frame";
    EXPECT_EQ(directory.names(), names);
}

TEST(Recording, GoesOnInAnotherFileOnlyInAnotherFormat)
{
    const ScratchDirectory directory;
    const Media small = encodeVideo({});
    const Media large = encodeVideo({.width = 320, .height = 240});
    AviRecorder recorder;
    ASSERT_TRUE(recorder.startAt(directory / "clip.avi"));
    double begin = 0;
    for (const Media* media : {&small, &small, &large}) {
        Stream stream(*media);
        recorder.begin(stream.format());
        stream.feed(recorder, 50, [&](int frame) { return begin + 40 * frame; });
        begin += 2'000;
    }
    EXPECT_TRUE(recorder.stop());
    ASSERT_THAT(directory.names(), ElementsAre("clip.avi", "clip_2.avi"));
    EXPECT_EQ(picturesOf(directory / "clip.avi").size(), 100);
    EXPECT_EQ(picturesOf(directory / "clip_2.avi").size(), 50);
    EXPECT_EQ(probe(directory / "clip_2.avi")["video.width"], "320");
}

/// The camera tells its parameter sets in the description only, and comes back with other ones.
TEST(Recording, CanBeDecodedAfterTheParameterSetsHaveChanged)
{
    const ScratchDirectory directory;
    const Media before = encodeVideo({.frames = 30});
    const Media after = encodeVideo({.frames = 30, .parameters = "cabac=1"});
    AviRecorder recorder;
    ASSERT_TRUE(recorder.startAt(directory / "clip.avi"));
    double begin = 0;
    for (const Media* media : {&before, &after}) {
        Stream stream(*media);
        recorder.begin(stream.format());
        stream.feed(recorder, 30, [&](int frame) { return begin + 40 * frame; });
        begin += 1'200;
    }
    EXPECT_TRUE(recorder.stop());
    ASSERT_THAT(directory.names(), ElementsAre("clip.avi"));
    const auto pictures = picturesOf(directory / "clip.avi");
    ASSERT_EQ(pictures.size(), 60);
    for (std::size_t i = 0; i < pictures.size(); ++i)
        EXPECT_EQ(pictures[i].first, i % 30);
}

TEST(FrameGrid, AgreesWithTheTimesOfTheFrames)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<> jitter(-0.012, 0.012);
    const struct
    {
        const char* name;
        int count;
        Times timeOf; // in seconds
        std::int64_t frames;
        double rate;
    } cases[] = {
        {"one", 1, every(0.1), 1, 10},
        {"two", 2, every(0.04), 2, 25},
        {"television", 500, every(1.001 / 30), 500, 30 / 1.001},
        {"milliseconds", 3'000, [](int i) { return std::floor(i * 1000 / 30.0) / 1000; }, 3'000, 30},
        {"jitter", 5'000, [&](int i) { return i / 25.0 + jitter(random); }, 5'000, 25},
        {"slow clock", 90'000, [](int i) { return i / 24.98; }, 90'000, 24.98},
        {"a frame a second", 60, every(1), 60, 1},
        {"half the rate at night", 1'000, [](int i) { return std::max(i, 2 * i - 500) / 25.0; }, 1'499, 25},
        {"away", 1'000, [](int i) { return i / 25.0 + (i > 300 ? 7 : 0); }, 1'175, 25},
        {"away from the start", 1'000, [](int i) { return i / 25.0 + (i > 3 ? 7 : 0); }, 1'175, 25},
        {"away for long", 200, [](int i) { return i / 25.0 + (i > 100 ? 2'400 : 0); }, 60'200, 25},
        {"all at once", 100, every(0), 100, 10},
        {"a leap for mankind", 100, [](int i) { return i % 7 * 1e9; }, 100, 0.01},
    };
    for (const auto& c : cases) {
        FrameGrid grid({10, 1});
        std::int64_t before = -1;
        for (int i = 0; i < c.count; ++i) {
            const std::int64_t number = grid.place(std::llround(c.timeOf(i) * 1e6));
            EXPECT_GT(number, before) << c.name;
            EXPECT_LE(number - before, FrameGrid::longestLeap + 1) << c.name;
            before = number;
        }
        EXPECT_NEAR(static_cast<double>(grid.frames()), static_cast<double>(c.frames), 1) << c.name;
        EXPECT_NEAR(av_q2d(grid.rate()), c.rate, c.rate * 7e-4) << c.name;
    }
}
