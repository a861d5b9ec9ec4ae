// What is saved of live streams: recordings, pictures, alarms, and recordings by the clock.
#include "StreamTest.h"

#include <filesystem>
#include <fstream>
#include <future>
#include <numeric>

#include "SlowDisk.h"
#include "StreamMedia.h"
#include "StreamViewer.h"

namespace
{

using testing::ElementsAre;
using testing::MatchesRegex;

/// The numbers of a recording's or a picture's frames.
std::vector<unsigned> numbersIn(const std::string& path)
{
    StreamViewer file(path);
    EXPECT_EQ(file.error(), 0) << path;
    std::vector<unsigned> numbers;
    while (file.error() == 0) {
        const auto frame = file.nextFrame();
        if (!frame)
            break;
        numbers.push_back(frame->number.value_or(~0u));
    }
    return numbers;
}

std::vector<unsigned> countFrom(unsigned first, std::size_t count)
{
    std::vector<unsigned> numbers(count);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

class StreamSavingTest : public StreamTest
{
protected:
    StreamSavingTest() { camera->SetSaveDir(directory.path().c_str()); }
    ~StreamSavingTest() override { camera->CloseMainStreamVideo(); }

    std::vector<std::string> filesOf(const std::string& extension) const
    {
        std::vector<std::string> paths;
        for (const std::string& name : directory.names())
            if (name.ends_with(extension) && !name.starts_with('.'))
                paths.push_back(directory / name);
        return paths;
    }
    void armAll()
    {
        std::vector<unsigned char> map(32 * 24, '1');
        camera->SetMotionDetectMap(map.data());
        camera->SetMotionDetectLevel(90);
    }

    ScratchDirectory directory;
};

TEST_F(StreamSavingTest, RecordsEveryFrameFromAKeyFrameOn)
{
    sim.setValue("ipratio1", "10"); // a key frame every so many
    sim.setValue("audioenable", "1");
    EXPECT_EQ(camera->StartSaveAvi(1, nullptr), -1) << "not open";
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return status().framesReceived >= 4; }));
    ASSERT_EQ(camera->StartSaveAvi(1, nullptr), 0);
    EXPECT_EQ(camera->StartSaveAvi(1, nullptr), -1) << "it is being recorded";
    ASSERT_TRUE(comesTrue([&] { return status().recordedFrames >= 25; }));
    EXPECT_EQ(status().recording, 1);
    EXPECT_EQ(camera->StopSaveAvi(1), 0);
    EXPECT_EQ(camera->StopSaveAvi(1), -1);

    const StreamStatus after = status();
    EXPECT_EQ(after.recording, 0);
    EXPECT_EQ(after.framesDecoded, 0) << "to record is to copy";
    ASSERT_THAT(directory.names(), ElementsAre(MatchesRegex("[0-9]{8}_[0-9]{6}[.]avi")));
    const std::string path = directory / directory.names()[0];
    EXPECT_EQ(static_cast<std::int64_t>(std::filesystem::file_size(path)), after.recordedBytes);
    EXPECT_EQ(numbersIn(path), countFrom(10, static_cast<std::size_t>(after.recordedFrames)));
    EXPECT_NE(StreamViewer(path).stream(AVMEDIA_TYPE_AUDIO), nullptr);
}

TEST_F(StreamSavingTest, CompletesTheRecordingOfAStreamThatIsClosed)
{
    ASSERT_EQ(openSub(), 0);
    const std::string path = directory / "named.avi";
    ASSERT_EQ(camera->StartSaveAvi(0, path.c_str()), 0);
    ASSERT_TRUE(comesTrue([&] { return status(false).recordedFrames >= 5; }));
    camera->CloseSubStreamVideo();
    EXPECT_GE(numbersIn(path).size(), 5u);
    EXPECT_EQ(camera->StopSaveAvi(0), -1);
}

TEST_F(StreamSavingTest, RecordsOnWhenTheStreamComesBack)
{
    sim.setStreamFault({.kind = kxsim::StreamFault::Kind::Disconnect, .after = 400ms});
    ASSERT_EQ(openMain(), 0);
    ASSERT_EQ(camera->StartSaveAvi(1, nullptr), 0);
    ASSERT_TRUE(comesTrue([&] { return status().reconnects >= 2; }));
    ASSERT_TRUE(
        comesTrue([&, before = status().recordedFrames] { return status().recordedFrames > before; }));
    EXPECT_EQ(camera->StopSaveAvi(1), 0);
    ASSERT_EQ(filesOf(".avi").size(), 1u);
    const auto numbers = numbersIn(filesOf(".avi")[0]);
    EXPECT_GE(std::count(numbers.begin(), numbers.end(), 0u), 2);
    EXPECT_EQ(std::count(numbers.begin(), numbers.end(), ~0u), 0);
}

/// Stream 1 is another one than when the recording began.
TEST_F(StreamSavingTest, StopsTheRecordingThatItStarted)
{
    ASSERT_EQ(openSub(), 0);
    ASSERT_EQ(camera->StartSaveAvi(1, nullptr), 0);
    ASSERT_TRUE(comesTrue([&] { return status(false).recordedFrames > 0; }));
    ASSERT_EQ(openMain(), 0);
    EXPECT_EQ(camera->StopSaveAvi(1), 0);
    EXPECT_EQ(status(false).recording, 0);

    ASSERT_EQ(camera->StartSaveAvi(0, (directory / "sub.avi").c_str()), 0);
    ASSERT_EQ(camera->StartSaveAvi(1, (directory / "main.avi").c_str()), 0);
    ASSERT_TRUE(
        comesTrue([&] { return status(true).recordedFrames > 0 && status(false).recordedFrames > 0; }));
    EXPECT_EQ(camera->StopSaveAvi(1), 0);
    EXPECT_EQ(status(true).recording, 0) << "the main stream's first";
    EXPECT_EQ(status(false).recording, 1);
}

class SlowDiskTest : public StreamSavingTest
{
protected:
    SlowDiskTest()
    {
        _record_time_t always{.days = {}, .startHour = 0, .startMinute = 0, .endHour = 24, .endMinute = 0};
        std::fill(std::begin(always.days), std::end(always.days), 1);
        camera->AddAutoSaveTime(&always); // on the main stream, first of the two recordings
        g_streamTiming.close = 500ms;
        EXPECT_EQ(openMain(), 0);
        EXPECT_EQ(openSub(), 0);
        EXPECT_EQ(camera->StartSaveAvi(1, nullptr), 0);
        EXPECT_EQ(camera->StartSaveAvi(0, nullptr), 0);
        EXPECT_TRUE(
            comesTrue([&] { return status(true).recordedFrames >= 5 && status(false).recordedFrames >= 5; }));
    }
    bool areWhole() const
    {
        const auto hasIndex = [](const std::string& path) {
            std::ifstream file(path);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            return bytes.find("idx1") != bytes.npos;
        };
        const auto paths = filesOf(".avi");
        return paths.size() == 3 && std::all_of(paths.begin(), paths.end(), hasIndex);
    }

    static constexpr auto limit = 900ms; // less than twice what is waited
};

TEST_F(SlowDiskTest, DoesNotHoldUpTheEndOfACamera)
{
    {
        const SlowDisk disk;
        ASSERT_TRUE(comesTrue([&] { return disk.caught() >= 2; })) << "both readers";
        EXPECT_LT(timeOf([&] { status(); }), 100ms);
        EXPECT_LT(timeOf([&] { CIpCameraManager::GetInstance()->DelIpCamera(1000); }), limit);
    }
    EXPECT_TRUE(comesTrue([&] { return areWhole(); }));
}

TEST_F(SlowDiskTest, HoldsUpNothingButTheEndOfARecording)
{
    EXPECT_EQ(camera->SaveImage(1, 1'000), 0);
    {
        const SlowDisk disk;
        ASSERT_TRUE(comesTrue([&] { return disk.caught() >= 2; }));
        auto stopping = std::async(std::launch::async, [&] {
            return timeOf([&] { EXPECT_EQ(camera->StopSaveAvi(1), -1) << "not yet"; });
        });
        while (stopping.wait_for(20ms) != std::future_status::ready) {
            EXPECT_LT(timeOf([&] { status(); }), 100ms);
            EXPECT_LT(timeOf([&] { camera->SetMotionDetectLevel(10); }), 100ms);
        }
        EXPECT_LT(stopping.get(), limit);
        EXPECT_LT(timeOf([&] { camera->CloseMainStreamVideo(); }), limit)
            << "and the other stream is watched";
        EXPECT_LT(timeOf([&] { camera->CloseSubStreamVideo(); }), limit);
    }
    EXPECT_TRUE(comesTrue([&] { return areWhole(); }));
}

TEST_F(StreamSavingTest, SavesTheLatestPictureWhetherItIsDecodedOrNot)
{
    ASSERT_EQ(openMain(), 0);
    for (const bool watched : {false, true}) {
        if (watched)
            watch();
        ASSERT_TRUE(comesTrue(
            [&, before = status().framesReceived] { return status().framesReceived >= before + 5; }));
        const auto received = static_cast<unsigned>(status().framesReceived);
        ASSERT_EQ(camera->SaveImage(1, 1), 0);
        const std::string path = camera->GetLastImage();
        EXPECT_THAT(path, MatchesRegex(".*/[0-9]{8}_[0-9]{6}_[0-9]{3}[.]jpg"));
        ASSERT_EQ(numbersIn(path).size(), 1u);
        EXPECT_GE(numbersIn(path)[0] + 2, received) << "at most the frame before";
        EXPECT_EQ(status().framesDecoded > 0, watched);
    }
    EXPECT_EQ(directory.names().size(), 2u);
}

TEST_F(StreamSavingTest, SavesTheNextPicturesUpToTheCount)
{
    ASSERT_EQ(openMain(), 0);
    EXPECT_EQ(camera->SaveImage(1, 0), -1);
    ASSERT_EQ(camera->SaveImage(1, 4), 0);
    ASSERT_TRUE(comesTrue([&] { return filesOf(".jpg").size() == 4; }));
    std::vector<unsigned> numbers;
    for (const std::string& path : filesOf(".jpg"))
        numbers.push_back(numbersIn(path).at(0));
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end())) << testing::PrintToString(numbers);
    ASSERT_TRUE(
        comesTrue([&, before = status().framesReceived] { return status().framesReceived >= before + 3; }));
    EXPECT_EQ(filesOf(".jpg").size(), 4u);
    EXPECT_EQ(camera->GetLastImage(), filesOf(".jpg").back());
}

TEST_F(StreamSavingTest, FailsWhereNothingCanBeSaved)
{
    EXPECT_EQ(camera->SaveImage(1, 1), -1) << "not open";
    EXPECT_STREQ(camera->GetLastImage(), "");
    ASSERT_EQ(openMain(), 0);
    camera->SetSaveDir((directory / "missing").c_str());
    EXPECT_EQ(camera->SaveImage(1, 1), -1);
    EXPECT_EQ(camera->StartSaveAvi(1, nullptr), -1);
    EXPECT_STREQ(camera->GetLastImage(), "");

    camera->CloseMainStreamVideo();
    g_streamTiming.firstImage = 200ms;
    sim.setStreamFault({.kind = kxsim::StreamFault::Kind::NoKeyFrame, .after = 60s});
    ASSERT_EQ(openMain(), 0);
    camera->SetSaveDir(directory.path().c_str());
    EXPECT_LT(timeOf([&] { EXPECT_EQ(camera->SaveImage(1, 1), -1); }), 3s) << "no picture came";
}

TEST_F(StreamSavingTest, SavesNoPictureOfAStreamThatHasBrokenOff)
{
    g_streamTiming.firstImage = 50ms;
    g_streamTiming.firstPause = 10s;
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return camera->SaveImage(1, 1) == 0; }));
    sim.setStreamFault({.kind = kxsim::StreamFault::Kind::Disconnect});
    ASSERT_TRUE(comesTrue([&] { return status().connected == 0; }));
    EXPECT_EQ(camera->SaveImage(1, 1), -1);
}

TEST_F(StreamSavingTest, SavesWhatMoves)
{
    sim.setValue("ipratio1", "10");
    camera->SetMotionSpaceTime(3600);
    camera->SetMotionSaveType(3, 2, 1);
    armAll();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return status().motionAlarms == 1; }));
    EXPECT_TRUE(comesTrue([&] { return filesOf(".jpg").size() == 2; }));
    EXPECT_TRUE(comesTrue([&] { return status().recording == 1; }));
    EXPECT_TRUE(comesTrue([&] { return status().recording == 0; })) << "after a second";
    ASSERT_EQ(filesOf(".avi").size(), 1u);
    EXPECT_NEAR(static_cast<double>(numbersIn(filesOf(".avi")[0]).size()), rate, 6);
    EXPECT_EQ(filesOf(".jpg").size(), 2u);
    EXPECT_EQ(status().motionAlarms, 1);
}

TEST_F(StreamSavingTest, SavesWithinTheTimesOnly)
{
    _record_time_t never{.days = {}, .startHour = 0, .startMinute = 0, .endHour = 24, .endMinute = 0};
    _record_time_t always = never;
    std::fill(std::begin(always.days), std::end(always.days), 1);
    camera->SetMotionSaveType(1, 1, 0);
    camera->AddMotionSaveTime(&never);
    camera->AddAutoSaveTime(&never);
    armAll();
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return status().motionAlarms >= 2; })) << "alarms are counted at all times";
    EXPECT_THAT(directory.names(), ElementsAre());

    camera->AddMotionSaveTime(&always);
    EXPECT_TRUE(comesTrue([&] { return !filesOf(".jpg").empty(); }));
    EXPECT_TRUE(filesOf(".avi").empty());
    camera->AddAutoSaveTime(&always);
    EXPECT_TRUE(comesTrue([&] { return status().recordedFrames >= 5; }));
    EXPECT_EQ(camera->StartSaveAvi(1, nullptr), 0) << "the application's recordings do not mind";
    camera->CloseMainStreamVideo();
    EXPECT_GE(numbersIn(filesOf(".avi")[0]).size(), 5u);
}

/// The main stream's is the one that counts, and in its absence the sub stream.
TEST_F(StreamSavingTest, WatchesOneStreamAtATime)
{
    armAll();
    ASSERT_EQ(openSub(), 0);
    ASSERT_TRUE(comesTrue([&] { return status(false).motionAlarms > 0; }));
    ASSERT_EQ(openMain(), 0);
    ASSERT_TRUE(comesTrue([&] { return status(true).motionAlarms > 0; }));
    const auto decoded = status(false).framesDecoded;
    EXPECT_EQ(status(false).motionAlarms, 0);
    ASSERT_TRUE(comesTrue(
        [&, before = status(false).framesReceived] { return status(false).framesReceived >= before + 5; }));
    EXPECT_LE(status(false).framesDecoded, decoded + 1);
    camera->CloseMainStreamVideo();
    EXPECT_TRUE(comesTrue([&] { return status(false).motionAlarms > 0; }));
}

} // namespace
