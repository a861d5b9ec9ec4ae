// What is taken from a camera's pictures: snapshots and motion, and when it is saved.
#include <array>
#include <cmath>
#include <cstring>
#include <ctime>
#include <random>
#include <tuple>

#include <gmock/gmock.h>

#include "StreamMedia.h"
#include "ipcctl/ColourConverter.h"
#include "ipcctl/MotionDetector.h"
#include "ipcctl/Schedule.h"
#include "ipcctl/Snapshot.h"

namespace
{

using testing::ElementsAre;
using testing::MatchesRegex;

/// The one picture of a JPEG file.
FramePtr openJpeg(const std::string& path)
{
    AVFormatContext* context = nullptr;
    EXPECT_EQ(avformat_open_input(&context, path.c_str(), nullptr, nullptr), 0) << path;
    const InputPtr input(context);
    const PacketPtr packet(av_packet_alloc());
    FramePtr frame(av_frame_alloc());
    const CodecContextPtr decoder(avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_MJPEG)));
    if (input != nullptr) {
        EXPECT_EQ(av_read_frame(input.get(), packet.get()), 0);
        EXPECT_EQ(avcodec_open2(decoder.get(), decoder->codec, nullptr), 0);
        EXPECT_EQ(avcodec_send_packet(decoder.get(), packet.get()), 0);
        EXPECT_EQ(avcodec_receive_frame(decoder.get(), frame.get()), 0);
    }
    return frame;
}

/// Pictures of a still scene with a sensor's noise and an object in it.
class Scene
{
public:
    Scene(int width, int height, double noise) : width_(width), height_(height)
    {
        std::mt19937 random(1);
        std::normal_distribution<> distribution(0, noise);
        for (int& value : noise_)
            value = static_cast<int>(std::lround(distribution(random)));
    }

    Brightness picture(int left, int size)
    {
        pixels_.resize(static_cast<std::size_t>(width_ * height_));
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x) {
                const bool object = x >= left && x < left + size && y >= objectY && y < objectY + size;
                pixels_[static_cast<std::size_t>(y * width_ + x)] = static_cast<std::uint8_t>(
                    60 + x % 97 + (object ? 60 : 0) + noise_[next_++ % noise_.size()]);
            }
        return {pixels_.data(), width_, width_, height_};
    }

    static constexpr int objectX = 40;
    static constexpr int objectY = 40;

private:
    int width_;
    int height_;
    std::array<int, 65'521> noise_;
    std::size_t next_ = 0;
    std::vector<std::uint8_t> pixels_;
};

/// How many of so many pictures, a quarter of a second apart, raise the alarm while an object moves on by these pixels.
int alarmsOf(MotionDetector& detector, Scene& scene, int pictures, int step, int objectSize)
{
    static MotionDetector::Clock::time_point now;
    int alarms = 0;
    for (int i = 0; i < pictures; ++i) {
        now += std::chrono::milliseconds(250);
        alarms += detector.detect(scene.picture(Scene::objectX + i * step, objectSize), now);
    }
    return alarms;
}

/// All cells, with this byte.
std::vector<unsigned char> mapOf(unsigned char cell)
{
    return std::vector<unsigned char>(MotionDetector::cells, cell);
}

/// Seconds since 1970 in a week that begins on a Sunday.
std::time_t weekTime(int weekday, int hour, int minute)
{
    std::tm time = {};
    time.tm_year = 2024 - 1900;
    time.tm_mon = 5;
    time.tm_mday = 2 + weekday;
    time.tm_hour = hour;
    time.tm_min = minute;
    time.tm_isdst = -1;
    return std::mktime(&time);
}

} // namespace

TEST(Snapshot, ShowsThePictureInFullColour)
{
    const struct
    {
        AVPixelFormat format;
        int width, height, brightness, expected;
    } cases[] = {{AV_PIX_FMT_YUV420P, 162, 122, 235, 255},
                 {AV_PIX_FMT_YUV420P, 162, 122, 16, 0},
                 {AV_PIX_FMT_YUV420P, 1280, 720, 126, 128},
                 {AV_PIX_FMT_YUVJ420P, 162, 122, 235, 235}};
    for (const auto& c : cases) {
        const ScratchDirectory directory;
        const FramePtr frame = greyPicture(c.width, c.height, c.brightness, c.format);
        const FramePtr grey = openJpeg(saveSnapshot(*frame, directory.path(), {}));
        EXPECT_EQ(grey->width, c.width);
        EXPECT_EQ(grey->height, c.height);
        EXPECT_NEAR(*grey->data[0], c.expected, 2);

        std::memset(frame->data[1], 90, static_cast<std::size_t>(frame->linesize[1] * c.height / 2));
        std::memset(frame->data[2], 160, static_cast<std::size_t>(frame->linesize[2] * c.height / 2));
        const FramePtr coloured = openJpeg(saveSnapshot(*frame, directory.path(), {}));
        ColourConverter before;
        ColourConverter after;
        for (int colour = 0; colour < 3; ++colour)
            EXPECT_NEAR(before.convert(*frame)[3000 + colour], after.convert(*coloured)[3000 + colour], 4)
                << c.height;
    }
    const ScratchDirectory directory;
    const FramePtr frame = greyPicture(160, 120, 0);
    drawNumber(*frame, 693);
    const FramePtr saved = openJpeg(saveSnapshot(*frame, directory.path() + '/', {}));
    EXPECT_EQ(readNumber(saved->data[0], saved->linesize[0], 160, 120), 693);
}

TEST(Snapshot, HasANameOfItsOwn)
{
    const ScratchDirectory directory;
    const FramePtr frame = greyPicture(32, 32, 100);
    const auto time =
        std::chrono::system_clock::from_time_t(weekTime(0, 7, 5)) + std::chrono::milliseconds(42);
    for (int i = 0; i < 3; ++i)
        saveSnapshot(*frame, directory.path(), time);
    EXPECT_THAT(directory.names(), ElementsAre("20240602_070500_042.jpg", "20240602_070500_042_2.jpg",
                                               "20240602_070500_042_3.jpg"));
    EXPECT_EQ(saveSnapshot(*frame, directory / "missing", time), "");
}

TEST(Motion, IsWhatMoves)
{
    for (const auto& [width, height] : {std::pair{160, 120}, {640, 360}, {1280, 720}}) {
        SCOPED_TRACE(width);
        Scene scene(width, height, 6);
        MotionDetector detector;
        EXPECT_EQ(alarmsOf(detector, scene, 4, width / 40, height / 10), 0) << "no cell is armed";
        detector.setMap(mapOf('1').data());
        EXPECT_EQ(alarmsOf(detector, scene, 8, 0, height / 10), 0) << "still, at the middle level";
        detector.forget();
        detector.setLevel(80);
        EXPECT_EQ(alarmsOf(detector, scene, 6, width / 40, height / 10), 5);
    }
}

TEST(Motion, DependsOnTheLevel)
{
    Scene scene(640, 360, 0);
    MotionDetector detector;
    detector.setMap(mapOf(1).data());
    for (const auto& [level, alarms] : {std::pair{1, 0}, {-7, 0}, {100, 3}, {1'000, 3}}) {
        detector.setLevel(level);
        detector.forget();
        EXPECT_EQ(alarmsOf(detector, scene, 4, 14, 6), alarms) << level;
    }
}

/// How much a grey picture has to change at a level.
TEST(Motion, TakesLessChangeAtEachHigherLevel)
{
    constexpr int width = 240;
    constexpr int height = 160;
    const auto leastChange = [](int level) {
        MotionDetector detector;
        detector.setMap(mapOf(1).data());
        detector.setLevel(level);
        MotionDetector::Clock::time_point now{std::chrono::hours(1)};
        const FramePtr before = greyPicture(width, height, 50);
        for (int change = 1; change < 200; ++change) {
            const FramePtr after = greyPicture(width, height, 50 + change);
            detector.forget();
            detector.detect({before->data[0], before->linesize[0], width, height},
                            now += std::chrono::seconds(1));
            if (detector.detect({after->data[0], after->linesize[0], width, height},
                                now += std::chrono::seconds(1)))
                return change;
        }
        return 200;
    };
    int changes = leastChange(1);
    EXPECT_LT(changes, 100) << "every level sees something";
    for (int level = 2; level <= 100; ++level) {
        const int less = leastChange(level);
        EXPECT_LE(less, changes) << level;
        changes = less;
    }
    EXPECT_LT(changes, 10);
}

TEST(Motion, CountsInArmedCellsOnly)
{
    Scene scene(480, 320, 2); // cells of 20 by 10
    MotionDetector detector;
    for (const auto& [row, step, moves] : {std::tuple{5U, 10, true}, {5U, 0, false}, {20U, 10, false}}) {
        std::vector<unsigned char> map = mapOf(2);
        map[row * MotionDetector::columns + 3] =
            '1'; // from 60 on, of which the object crosses those of the fifth row
        detector.setMap(map.data());
        EXPECT_EQ(alarmsOf(detector, scene, 12, step, 20) > 0, moves) << row << ' ' << step;
    }
}

TEST(Motion, KeepsTheSpaceBetweenAlarms)
{
    Scene scene(640, 360, 2);
    MotionDetector detector;
    detector.setMap(mapOf(1).data());
    detector.setSpaceTime(1);
    EXPECT_EQ(alarmsOf(detector, scene, 17, 20, 30), 4); // seen 0.25 s apart, from the second picture on
}

TEST(Motion, LooksAtPicturesOfAnySize)
{
    MotionDetector detector;
    detector.setMap(mapOf(1).data());
    detector.setSpaceTime(-3);
    EXPECT_FALSE(detector.detect({nullptr, 0, 0, 0}, MotionDetector::Clock::now()));
    for (const int size : {1, 7, 23}) { // fewer pixels than cells
        Scene tiny(size, size, 0);
        EXPECT_EQ(alarmsOf(detector, tiny, 3, 0, 0), 0) << size;
    }
}

TEST(ScheduleTest, HoldsWithinItsTimes)
{
    const struct
    {
        int day, startHour, startMinute, endHour, endMinute;
        int atDay, atHour, atMinute;
        bool holds;
    } cases[] = {
        {1, 8, 30, 17, 0, 1, 8, 29, false},
        {1, 8, 30, 17, 0, 1, 8, 30, true},
        {1, 8, 30, 17, 0, 1, 16, 59, true},
        {1, 8, 30, 17, 0, 1, 17, 0, false},
        {1, 8, 30, 17, 0, 2, 12, 0, false},
        {6, 22, 0, 6, 0, 6, 23, 0, true}, // over midnight, and into the next week
        {6, 22, 0, 6, 0, 0, 5, 59, true},
        {6, 22, 0, 6, 0, 0, 6, 0, false},
        {6, 22, 0, 6, 0, 6, 5, 0, false},
        {3, 0, 0, 0, 0, 3, 0, 0, true}, // a whole day
        {3, 0, 0, 0, 0, 3, 23, 59, true},
        {3, 0, 0, 0, 0, 4, 0, 0, false},
        {3, 0, 0, 24, 0, 3, 23, 59, true},
        {0, 12, 0, 12, 0, 1, 11, 59, true},
        {2, 25, 0, 26, 0, 2, 12, 0, false}, // no such time
        {2, -5, 70, 99, 99, 2, 12, 0, false},
        {2, 0, 0, 24, 1, 2, 12, 0, false},
    };
    for (const auto& c : cases) {
        _record_time_t entry = {{}, c.startHour, c.startMinute, c.endHour, c.endMinute};
        entry.days[c.day] = 1;
        Schedule schedule;
        EXPECT_TRUE(schedule.empty());
        schedule.add(entry);
        EXPECT_FALSE(schedule.empty());
        EXPECT_EQ(schedule.covers(weekTime(c.atDay, c.atHour, c.atMinute)), c.holds)
            << c.day << ' ' << c.startHour << ':' << c.startMinute << " to " << c.endHour << ':'
            << c.endMinute << " at " << c.atDay << ' ' << c.atHour << ':' << c.atMinute;
    }
    Schedule schedule;
    schedule.add({{1, 1, 1, 1, 1, 1, 1}, INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN});
    EXPECT_FALSE(schedule.covers(weekTime(0, 0, 0)));
    schedule.add({{0, -3, 0, 0, 0, 0, 0}, 1, 0, 2, 0});
    EXPECT_TRUE(schedule.covers(weekTime(1, 1, 30)));
}
