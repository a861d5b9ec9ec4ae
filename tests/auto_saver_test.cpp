// What is saved of alarms and by the clock, and for how long: by clocks that the tests turn.
#include <algorithm>
#include <ctime>

#include <gmock/gmock.h>

#include "ChildProcess.h"
#include "StreamMedia.h"
#include "ipcctl/AutoSaver.h"
#include "ipcctl/StreamTiming.h"

namespace
{

using namespace std::chrono_literals;
using testing::ElementsAre;

/// Every day from one hour to another.
_record_time_t daily(int startHour, int endHour)
{
    _record_time_t time{
        .days = {}, .startHour = startHour, .startMinute = 0, .endHour = endHour, .endMinute = 0};
    std::ranges::fill(time.days, 1);
    return time;
}

/// A saver, and a stream of five pictures a second, key frames all, that it watches.
class AutoSaverTest : public testing::Test
{
protected:
    AutoSaverTest()
    {
        g_streamTiming = {};
        place_->setDirectory(directory.path());
        settings.map.fill('1');
        settings.level = 90;
        std::tm noon = {};
        noon.tm_year = 2024 - 1900;
        noon.tm_mday = 1;
        noon.tm_hour = 12;
        wall_ = std::mktime(&noon);
    }

    /// So many seconds, in which something moves or nothing.
    void pass(int seconds, bool moving = false)
    {
        saver.follow(settings);
        if (frame_ == 0)
            saver.begin({.video = video_.parameters.get(), .frameRate = {5, 1}});
        for (int i = 0; i < 5 * seconds; ++i, ++frame_) {
            saver.takeVideo(*video_.packets[static_cast<std::size_t>(frame_ % 5)], 200.0 * frame_);
            shown_ = moving ? 1 - shown_ : shown_;
            saver.takeFrame(*pictures_[shown_]);
            now_ += 200ms;
            wall_ += i % 5 == 4;
        }
    }

    bool recording() const
    {
        StreamStatus status{};
        saver.addTo(status);
        return status.recording != 0;
    }
    std::ptrdiff_t files(const std::string& extension) const
    {
        return std::ranges::count_if(directory.names(),
                                     [&](const std::string& name) { return name.ends_with(extension); });
    }

    static constexpr int hour = 3'600;
    ScratchDirectory directory;
    AutoSaveSettings settings;

private:
    const Media video_ = encodeVideo({.frames = 5, .rate = {5, 1}, .keyDistance = 1});
    const FramePtr pictures_[2] = {greyPicture(160, 120, 50), greyPicture(160, 120, 200)};
    const std::shared_ptr<SavePlace> place_ = std::make_shared<SavePlace>();
    AutoSaver::Clock::time_point now_{1h};
    std::time_t wall_ = 0;
    int frame_ = 0;
    int shown_ = 0;

protected:
    AutoSaver saver{place_, settings, {[this] { return now_; }, [this] { return wall_; }}};
    void turnClock(int seconds) { wall_ += seconds; }
};

TEST_F(AutoSaverTest, RecordsByTheClockUntilTheTimeIsOver)
{
    settings.autoTimes.add(daily(13, 14));
    settings.setSaveType(2, 0, 5);
    pass(2);
    EXPECT_FALSE(recording());
    turnClock(hour);
    pass(2, true); // an alarm while it is recorded anyway
    EXPECT_TRUE(recording());
    pass(10);
    EXPECT_TRUE(recording());
    turnClock(hour);
    pass(1);
    EXPECT_FALSE(recording());
    EXPECT_EQ(files(".avi"), 1);
    turnClock(23 * hour);
    pass(1);
    EXPECT_TRUE(recording()) << "the next day";
}

TEST_F(AutoSaverTest, RecordsForAsLongAsItWasToldAfterTheLastAlarm)
{
    settings.setSaveType(2, 0, 4);
    settings.spaceTime = 1;
    pass(2);
    EXPECT_FALSE(recording());
    pass(3, true);
    pass(3);
    EXPECT_TRUE(recording());
    pass(2);
    EXPECT_FALSE(recording());
    EXPECT_EQ(files(".avi"), 1);
}

TEST_F(AutoSaverTest, SavesNoAlarmsOutsideTheirTimes)
{
    settings.setSaveType(3, 2, 4);
    settings.motionTimes.add(daily(13, 14));
    pass(2, true);
    EXPECT_THAT(directory.names(), ElementsAre());
    turnClock(hour);
    pass(2, true);
    EXPECT_TRUE(recording());
    EXPECT_GT(files(".jpg"), 0);
}

TEST_F(AutoSaverTest, EndsWhatTheSettingsNoLongerAskFor)
{
    const struct
    {
        const char* name;
        int type, images, seconds;
        unsigned char cell;
        bool savesOn, recordsOn;
    } cases[] = {
        {"all", 3, 1'000, 100, '1', true, true},           {"no images", 2, 1'000, 100, '1', false, true},
        {"no recording", 1, 1'000, 100, '1', true, false}, {"nothing", 0, 0, 0, '1', false, false},
        {"no number", 3, 0, 0, '1', false, false},         {"below", 3, -5, -5, '1', false, false},
        {"no cell", 3, 1'000, 100, '0', false, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        settings.setSaveType(3, 1'000, 100);
        settings.map.fill('1');
        pass(2, true);
        ASSERT_TRUE(recording());
        settings.setSaveType(c.type, c.images, c.seconds);
        settings.map.fill(c.cell);
        const auto before = files(".jpg");
        pass(1);
        EXPECT_EQ(files(".jpg") > before, c.savesOn);
        EXPECT_EQ(recording(), c.recordsOn);
        const auto recordings = files(".avi");
        pass(1, true);
        EXPECT_EQ(files(".avi"), recordings) << "nor does it begin anew";
        settings.setSaveType(0, 0, 0);
        pass(1);
    }
}

TEST_F(AutoSaverTest, WaitsWithTheNextRecordingWhenTheDiskIsFull)
{
    settings.autoTimes.add(daily(0, 24));
    const auto run = [&] {
        limitFiles(16'000);
        pass(10);
        EXPECT_EQ(files(".avi"), 1);
        EXPECT_FALSE(recording());
        pass(10);
        EXPECT_EQ(files(".avi"), 2);
    };
    EXPECT_TRUE(endsBy(0, run));
}

} // namespace
