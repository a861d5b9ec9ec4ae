// Playback of recorded files.
#include "MediaTest.h"

#include <cstdlib>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class PlayBack : public MediaTest
{
protected:
    void open()
    {
        ASSERT_EQ(Kx_IpcClient_OpenPlayBack(id, "a.avi", see, nullptr), 0);
        standin::takeCalls();
    }
};

struct PlayerRow
{
    const char* name;
    std::function<int(long)> run;
    int result;
    int failure;
    const char* call; // what it tells the player
};

const PlayerRow playerCalls[] = {
    {"Pause", Kx_IpcClient_PlayBackPause, 1, 0, "Pause()"},
    {"Resume", Kx_IpcClient_PlayBackResume, 1, 0, "Resume()"},
    {"Control", [](long id) { return Kx_IpcClient_PlayBackControl(id, 1, 1); }, 0, -1, "SetSpeedLevel(101)"},
    {"GetCurrentTime", Kx_IpcClient_GetCurrentTime, 1500, -1, nullptr},
    {"GetFileDuration", Kx_IpcClient_GetFileDuration, 60000, -1, nullptr},
    {"Seek", [](long id) { return Kx_IpcClient_SeekPlayTime(id, -4); }, 0, -1, "SeekTime(-4)"},
    {"IsPlayFinished", Kx_IpcClient_IsPlayFinished, 1, -1, nullptr},
    {"Stop", Kx_IpcClient_StopPlayBack, 1, 0, "SetVideoBufCallBack(null)"},
};

} // namespace

TEST_F(PlayBack, CallsNeedAPlayerAndReachIt)
{
    for (const PlayerRow& row : playerCalls) {
        SCOPED_TRACE(row.name);
        const auto failWith = [&](long userId) {
            return errorOf(row.failure, [&] { return row.run(userId); });
        };
        EXPECT_EQ(failWith(id), KX_ERROR_NO_PLAYBACK);
        EXPECT_EQ(failWith(0), KX_ERROR_NO_PLAYBACK);
        EXPECT_EQ(failWith(999), KX_ERROR_UNKNOWN_USER);
        open();
        EXPECT_EQ(errorOf(row.result, [&] { return row.run(id); }), KX_ERROR_NONE);
        const auto calls = standin::takeTexts();
        EXPECT_EQ(calls.empty() ? "" : calls[0], row.call != nullptr ? row.call : "");
        Kx_IpcClient_StopPlayBack(id);
    }
}

TEST_F(PlayBack, SpeedsAreTheLibrarysLevels)
{
    open();
    const struct
    {
        int direction;
        int step;
        const char* call; // null: none
    } cases[] = {
        {1, 0, "SetSpeedLevel(0)"},
        {1, 1, "SetSpeedLevel(101)"},
        {1, 2, "SetSpeedLevel(102)"},
        {1, 3, "SetSpeedLevel(103)"},
        {1, 4, "SetSpeedLevel(104)"},
        {1, 5, nullptr},
        {1, -1, nullptr},
        {2, 0, "SetSpeedLevel(0)"},
        {2, 1, "SetSpeedLevel(4)"},
        {2, 2, "SetSpeedLevel(3)"},
        {2, 3, "SetSpeedLevel(2)"},
        {2, 4, "SetSpeedLevel(1)"},
        {2, 7, nullptr},
        {3, 2, "SetSpeedLevel(0)"},
        {0, 9, "SetSpeedLevel(0)"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(Kx_IpcClient_PlayBackControl(id, row.direction, row.step), 0);
        const auto calls = standin::takeTexts();
        EXPECT_EQ(calls.empty() ? "" : calls[0], row.call != nullptr ? row.call : "")
            << row.direction << row.step;
    }
}

TEST_F(PlayBack, OpensOneFileAndStopsItForGood)
{
    int word = 0;
    Kx_IpcClient_SetLiveDataCallBack(id, nullptr, &word);
    EXPECT_EQ(Kx_IpcClient_OpenPlayBack(id, "a.avi", see, this), 0);
    EXPECT_THAT(standin::takeTexts(), ElementsAre("SetVideoBufCallBack(handler)",
                                                  "SetAudioBufCallBack(handler)", "OpenFile(a.avi)"));
    EXPECT_EQ(errorOf(-1, [&] { return Kx_IpcClient_OpenPlayBack(id, "b.avi", see, this); }), KX_ERROR_BUSY);
    EXPECT_EQ(standin::livingPlayers(), 1);
    EXPECT_EQ(GetUserInfo(id)->playbackDataUser, this);

    standin::takeCalls();
    EXPECT_EQ(Kx_IpcClient_StopPlayBack(id), 1);
    EXPECT_THAT(standin::takeTexts(), ElementsAre("SetVideoBufCallBack(null)", "SetAudioBufCallBack(null)",
                                                  "Stop()", "destroyed()"));
    EXPECT_EQ(errorOf(0, [&] { return Kx_IpcClient_StopPlayBack(id); }), KX_ERROR_NO_PLAYBACK);
}

TEST_F(PlayBack, FramesGoToItsCallbackWithTheLiveViewsUser)
{
    int word = 0;
    Kx_IpcClient_SetLiveDataCallBack(id, nullptr, &word);
    std::uint8_t pixel[3];
    standin::behaviour().whileOpening = [&] { standin::sendPicture(*standin::lastPlayer(), pixel, 1, 1); };
    ASSERT_EQ(Kx_IpcClient_OpenPlayBack(id, "a.avi", see, this), 0);
    EXPECT_EQ(Kx_IpcClient_SetPlayDataCallBack(id, nullptr, nullptr), 0); // which changes nothing
    standin::sendPicture(*standin::lastPlayer(), nullptr, 0, 0);
    EXPECT_THAT(seen, ElementsAre(SeenFrame{id, KX_DATA_VIDEO, pixel, 3, 1, 1, &word},
                                  SeenFrame{id, KX_DATA_VIDEO, nullptr, 0, 0, 0, &word}));
}

TEST_F(PlayBack, FileThatCanNotBeOpenedLeavesNoPlayer)
{
    standin::behaviour().openResult = -1;
    const auto open = [&](long userId, const char* path) {
        return errorOf(-1, [&] { return Kx_IpcClient_OpenPlayBack(userId, path, see, nullptr); });
    };
    EXPECT_EQ(open(id, "a.avi"), KX_ERROR_NO_PLAYBACK);
    EXPECT_EQ(open(id, "a.avi"), KX_ERROR_NO_PLAYBACK);
    EXPECT_EQ(open(id, nullptr), KX_ERROR_NONE);
    EXPECT_EQ(open(999, "a.avi"), KX_ERROR_UNKNOWN_USER);
    EXPECT_EQ(open(0, "a.avi"), KX_ERROR_UNKNOWN_USER); // a free slot takes no player
    EXPECT_EQ(standin::livingPlayers(), 0);
}

TEST_F(PlayBack, ListOfFoundFilesIsFreedButItsHead)
{
    FoundFileInfo head{};
    FoundFileInfo** end = &head.next;
    for (int i = 0; i < 3; ++i) {
        *end = static_cast<FoundFileInfo*>(
            std::calloc(1, sizeof head)); // kept by nobody else, or the sanitizer tells
        end = &(*end)->next;
    }
    const FoundFileInfo* const first = head.next;
    Kx_Sdk_Destroy();
    EXPECT_EQ(Kx_IpcClient_DestroyFindFiles(&head), 0);
    EXPECT_EQ(head.next, first);
    EXPECT_EQ(Kx_IpcClient_DestroyFindFiles(nullptr), 0);
}
