// The player of recordings: what it shows and when, and that nothing a file holds or a callback does harms it.
#include <algorithm>
#include <chrono>
#include <climits>
#include <numeric>
#include <random>
#include <thread>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "PlayerTest.h"
#include "ipcctl/PlayClock.h"
#include "ipcctl/StreamTiming.h"
#include "ipcctl/ipcctl.h"

namespace
{

using namespace std::chrono_literals;
using testing::AnyOf;
using testing::ElementsAre;
using Clock = std::chrono::steady_clock;

class Player : public testing::Test
{
protected:
    Player() { g_streamTiming.playFaster = 20; }
    ~Player() override { g_streamTiming = {}; }

    ScratchDirectory directory;
};

std::vector<int> allPictures()
{
    std::vector<int> numbers(frames);
    std::iota(numbers.begin(), numbers.end(), 0);
    numbers.push_back(ended);
    return numbers;
}

} // namespace

TEST_F(Player, ShowsEveryPictureAndTellsTheEndOnce)
{
    CRecordPlayer player;
    Audience audience(player);
    EXPECT_EQ(player.IsPlayFinish(), 1);
    ASSERT_EQ(player.OpenFile(record(directory).c_str()), 0);
    EXPECT_EQ(player.IsPlayFinish(), 0);
    EXPECT_EQ(player.GetDuration(), 4'000);
    EXPECT_EQ(player.OpenFile((directory / "recording.avi").c_str()), -1);

    ASSERT_TRUE(audience.waitForEnd());
    EXPECT_EQ(player.IsPlayFinish(), 1);
    EXPECT_EQ(player.GetCurrTime(), 4'000);
    EXPECT_EQ(audience.shown(), allPictures());
    EXPECT_GT(audience.samples(), 60'000);

    audience.forget();
    player.SeekTime(3'900);
    EXPECT_EQ(player.IsPlayFinish(), 0);
    ASSERT_TRUE(audience.waitForEnd());
    EXPECT_THAT(audience.shown(), ElementsAre(97, 98, 99, ended));
    player.Stop();
    EXPECT_EQ(player.IsPlayFinish(), 1);
    EXPECT_EQ(player.GetDuration(), 0);
    EXPECT_EQ(player.OpenFile((directory / "recording.avi").c_str()), 0);
}

TEST_F(Player, KeepsThePaceOfItsLevel)
{
    const std::string path = record(directory, FileKind::Whole, false);
    const struct
    {
        int level;
        double factor;
    } cases[] = {{0, 1},    {101, 2},   {102, 4},    {103, 8}, {104, 16}, {4, 0.5},
                 {3, 0.25}, {2, 0.125}, {1, 0.0625}, {5, 1},   {105, 1},  {-1, 1}};
    for (const auto& [level, factor] : cases) {
        g_streamTiming.playFaster = static_cast<int>(16 / factor);
        const double expected = 40 * (frames - 1) / 16.0;
        double span = 0;
        for (int attempt = 0; attempt < 5 && (span < 0.99 * expected || span > 1.3 * expected); ++attempt) {
            CRecordPlayer player;
            Audience audience(player);
            ASSERT_EQ(player.OpenFile(path.c_str()), 0);
            player.SetSpeedLevel(level);
            ASSERT_TRUE(audience.waitForEnd());
            span = audience.span().count();
        }
        EXPECT_NEAR(span, expected, 0.3 * expected) << level;
    }
}

TEST_F(Player, LeavesSoundOutAtOtherSpeeds)
{
    CRecordPlayer player;
    Audience audience(player);
    ASSERT_EQ(player.OpenFile(record(directory).c_str()), 0);
    player.SetSpeedLevel(101);
    ASSERT_TRUE(audience.waitForEnd());
    EXPECT_LT(audience.samples(), 5'000);
    player.SetSpeedLevel(0);
    audience.forget();
    player.SeekTime(2'000);
    ASSERT_TRUE(audience.waitForEnd());
    EXPECT_GT(audience.samples(), 28'000);
    EXPECT_LT(audience.samples(), 40'000);
}

TEST_F(Player, PausesAndResumes)
{
    CRecordPlayer player;
    Audience audience(player);
    audience.onPicture = [&](int number) {
        if (number == 30)
            player.Pause();
    };
    ASSERT_EQ(player.OpenFile(record(directory).c_str()), 0);
    ASSERT_TRUE(audience.waitFor(31));
    std::this_thread::sleep_for(20ms); // ten pictures' time
    EXPECT_EQ(audience.shown().back(), 30);
    EXPECT_EQ(player.GetCurrTime(), 30 * 40);
    EXPECT_EQ(player.IsPlayFinish(), 0);
    player.Resume();
    ASSERT_TRUE(audience.waitForEnd());
    EXPECT_EQ(audience.shown(), allPictures());
}

TEST_F(Player, ShowsThePictureItSeeks)
{
    const std::pair<int, int> cases[] = {{1'000, 25}, {1'010, 25}, {2'960, 74}, {0, 0},        {39, 0},
                                         {40, 1},     {3'000, 75}, {-5, 0},     {INT_MAX, 99}, {1'999, 49}};
    for (const FileKind kind : {FileKind::Whole, FileKind::CutShort, FileKind::Downloaded}) {
        CRecordPlayer player;
        Audience audience(player);
        const ScratchDirectory own;
        ASSERT_EQ(player.OpenFile(record(own, kind).c_str()), 0);
        player.Pause();
        ASSERT_TRUE(audience.waitFor(1));
        for (auto [time, picture] : cases) {
            SCOPED_TRACE(std::to_string(static_cast<int>(kind)) + ' ' + std::to_string(time));
            if (kind == FileKind::CutShort && time > 2'999)
                continue; // it ends somewhere there
            audience.forget();
            player.SeekTime(time);
            EXPECT_THAT(player.GetCurrTime(),
                        AnyOf(std::clamp(time, 0, 4'000), 40 * picture)); // shown already
            ASSERT_TRUE(audience.waitFor(1));
            EXPECT_THAT(audience.shown(), ElementsAre(picture));
            EXPECT_EQ(player.GetCurrTime(), 40 * picture);
        }
        audience.forget();
        player.SeekTime(2'000);
        player.SetSpeedLevel(104);
        player.Resume();
        ASSERT_TRUE(audience.waitForEnd());
        EXPECT_EQ(audience.shown().front(), 50);
    }
}

TEST_F(Player, CallsNobodyWhoDoesNotWantIt)
{
    const std::string path = record(directory);
    for (const char* what : {"clear", "stop", "delete", "seek"}) {
        SCOPED_TRACE(what);
        auto* player = new CRecordPlayer;
        Audience audience;
        audience.watch(*player);
        std::atomic<bool> done{false};
        audience.onPicture = [&](int number) {
            if (number != 10 || done)
                return;
            if (what == std::string("clear"))
                player->SetVideoBufCallBack(nullptr, nullptr);
            else if (what == std::string("stop"))
                player->Stop();
            else if (what == std::string("seek"))
                player->SeekTime(3'960);
            else
                delete player;
            done = true;
        };
        ASSERT_EQ(player->OpenFile(path.c_str()), 0);
        if (what == std::string("seek")) {
            ASSERT_TRUE(audience.waitForEnd());
            EXPECT_EQ(audience.shown().size(), 11 + 2);
        } else {
            ASSERT_TRUE(audience.waitFor(11));
            while (!done)
                std::this_thread::yield();
            std::this_thread::sleep_for(20ms); // ten pictures' time
            EXPECT_EQ(audience.shown().size(), 11);
        }
        if (what != std::string("delete"))
            delete player;
    }
}

TEST_F(Player, WaitsForTheCallThatRunsWhenItsCallbackIsTaken)
{
    const std::string path = record(directory);
    for (const bool stop : {false, true}) {
        CRecordPlayer player;
        Audience audience(player);
        std::atomic<bool> within{false};
        audience.onPicture = [&](int) {
            within = true;
            std::this_thread::sleep_for(5ms);
            within = false;
        };
        ASSERT_EQ(player.OpenFile(path.c_str()), 0);
        ASSERT_TRUE(audience.waitFor(3));
        if (stop)
            player.Stop();
        else
            player.SetVideoBufCallBack(nullptr, nullptr);
        EXPECT_FALSE(within);
        const std::size_t count = audience.shown().size();
        std::this_thread::sleep_for(15ms);
        EXPECT_EQ(audience.shown().size(), count);
    }
}

TEST_F(Player, EndsAtAnyTime)
{
    const std::string path = record(directory);
    std::mt19937 random(5);
    for (int round = 0; round < 40; ++round) {
        const auto player = std::make_unique<CRecordPlayer>();
        Audience audience(*player);
        ASSERT_EQ(player->OpenFile(path.c_str()), 0);
        std::thread other([&] {
            player->SeekTime(static_cast<int>(random() % 5'000));
            player->SetSpeedLevel(101);
            audience.watch(*player);
            if (round % 3 == 0)
                player->Pause();
            if (round % 4 == 0)
                player->Stop();
        });
        player->GetCurrTime();
        std::this_thread::sleep_for(std::chrono::microseconds(round * 100));
        if (round % 2 == 0)
            player->Stop();
        other.join();
    }
}

TEST_F(Player, OpensNothingButRecordings)
{
    ::mkfifo((directory / "pipe.avi").c_str(), 0600);
    writeFile(directory / "list.m3u8", "#EXTM3U\n#EXTINF:1\n" + record(directory) + "\n");
    writeFile(directory / "empty.avi", "");
    CRecordPlayer player;
    for (const std::string& path :
         {directory / "missing.avi", directory / "pipe.avi", directory / "list.m3u8", directory / "empty.avi",
          directory.path(), std::string(), std::string("http://127.0.0.1/recording.avi")})
        EXPECT_EQ(player.OpenFile(path.c_str()), -1) << path;
    EXPECT_EQ(player.OpenFile(nullptr), -1);
    EXPECT_EQ(player.IsPlayFinish(), 1);
    EXPECT_EQ(player.GetDuration(), 0);

    const std::string path = directory / "with: colon.avi";
    writeFile(path, contentOf(directory / "recording.avi"));
    EXPECT_EQ(player.OpenFile(path.c_str()), 0);
}

TEST_F(Player, SurvivesFilesThatLie)
{
    g_streamTiming.playFaster = 5'000;
    g_streamTiming.fileStep = 500ms;
    const std::string whole = contentOf(record(directory));
    const std::string path = directory / "lie.avi";
    std::mt19937 random(11);
    const auto below = [&](std::size_t end) { return random() % end; };
    for (int round = 0; round < 150; ++round) {
        std::string content = whole;
        if (round % 3 == 0)
            content.resize(below(whole.size()));
        for (std::size_t changes = round % 3 == 0 ? 0 : 1 + below(20); changes > 0; --changes)
            content[below(round % 3 == 1 ? 600 : whole.size())] = static_cast<char>(random());
        writeFile(path, content);

        const auto begin = Clock::now();
        CRecordPlayer player;
        Audience audience(player);
        if (player.OpenFile(path.c_str()) == 0) {
            player.SeekTime(static_cast<int>(below(5'000)));
            player.SetSpeedLevel(104);
            std::this_thread::sleep_for(5ms);
        }
        player.Stop();
        EXPECT_LT(Clock::now() - begin, 5s) << round;
    }
}

TEST(PlayClock, RunsAtItsSpeedFromWhereItIs)
{
    const Clock::time_point start = Clock::now();
    PlayClock clock;
    clock.jump(1s, start);
    EXPECT_EQ(clock.due(3s), start + 2s);
    clock.setSpeed(4, start + 1s);
    EXPECT_EQ(clock.at(start + 2s), 6s);
    clock.setRunning(false, start + 2s);
    EXPECT_EQ(clock.at(start + 9s), 6s);
    clock.setSpeed(0.5, start + 9s);
    clock.setRunning(true, start + 10s);
    EXPECT_EQ(clock.due(7s), start + 12s);
}
