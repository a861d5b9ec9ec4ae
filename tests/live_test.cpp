// Live view: its begin and end, what goes to the callback, recordings, snapshots, motion.
#include "MediaTest.h"

#include <thread>

#include "KxIpcSDK/media/FrameHandlers.h"

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

const std::vector<std::string> openingMain = {
    "SetVideoBufCallBack(handler)", "SetAudioBufCallBack(handler)", "SetDecodeEnable(1, 1)",
    "OpenMainStreamVideo(rtsp://127.0.0.1:8554/main, admin, secret)"};
const std::vector<std::string> stopping = {
    "SetDecodeEnable(1, 0)",    "SetDecodeEnable(0, 0)", "CloseSubStreamVideo()",
    "CloseMainStreamVideo()",   "StopDisplay()",         "SetAudioBufCallBack(null)",
    "SetVideoBufCallBack(null)"};

std::vector<std::string> operator+(std::vector<std::string> texts, const std::vector<std::string>& more)
{
    texts.insert(texts.end(), more.begin(), more.end());
    return texts;
}

} // namespace

using Live = MediaTest;

namespace
{

MotionSettingsInfo motion;
RecordScheduleInfo times;
std::uint8_t cells[32][24];
KxLiveStatus toldStatus;
char savedAs[64];

constexpr long noCode = KX_ERROR_NONE;
constexpr long liveState = KX_ERROR_LIVE_STATE;
constexpr long notNeeded = -1;

const struct
{
    const char* name;
    std::function<int(long id, bool given)> run; // not given: its argument is null
    bool takesArgument;
    int failure;
    long withoutObject; // its code when the session has no stream object
} streamCalls[] = {
    {"SetSaveDir", [](long id, bool given) { return Kx_IpcClient_SetSaveDir(id, given ? "" : nullptr); },
     true, -1, noCode},
    {"SaveLiveData", [](long id, bool given) { return Kx_IpcClient_SaveLiveData(id, given ? "" : nullptr); },
     true, -1, noCode},
    {"StopSaveLiveData", [](long id, bool) { return Kx_IpcClient_StopSaveLiveData(id); }, false, 0, noCode},
    {"CaptureImage",
     [](long id, bool given) {
         return Kx_IpcClient_CaptureImage(id, savedAs, sizeof savedAs, given ? "" : nullptr);
     },
     true, -1, noCode},
    {"DrawGrid", [](long id, bool given) { return Kx_IpcClient_DrawGrid(id, 0, given ? cells : nullptr); },
     true, -1, liveState},
    {"SetMotionSettings",
     [](long id, bool given) { return Kx_IpcClient_SetMotionSettings(id, given ? &motion : nullptr); }, true,
     -1, liveState},
    {"AddMotionSchedule",
     [](long id, bool given) { return Kx_IpcClient_AddMotionSchedule(id, given ? &times : nullptr); }, true,
     -1, liveState},
    {"AddAutoSaveSchedule",
     [](long id, bool given) { return Kx_IpcClient_AddAutoSaveSchedule(id, given ? &times : nullptr); }, true,
     -1, liveState},
    {"GetLiveStatus",
     [](long id, bool given) { return Kx_IpcClient_GetLiveStatus(id, given ? &toldStatus : nullptr); }, true,
     -1, liveState},
    {"StopLivePlay", [](long id, bool) { return Kx_IpcClient_StopLivePlay(id); }, false, 0, notNeeded},
    {"SetLiveDataCallBack",
     [](long id, bool) { return Kx_IpcClient_SetLiveDataCallBack(id, nullptr, nullptr); }, false, -1,
     liveState},
    {"OpenLive", [](long id, bool) { return Kx_IpcClient_OpenLive(id, 0); }, false, -1, liveState},
    {"SetPlayDataCallBack",
     [](long id, bool) { return Kx_IpcClient_SetPlayDataCallBack(id, nullptr, nullptr); }, false, -1,
     notNeeded},
    {"OpenPlayBack",
     [](long id, bool given) {
         return Kx_IpcClient_OpenPlayBack(id, given ? "a.avi" : nullptr, nullptr, nullptr);
     },
     true, -1, notNeeded},
};

} // namespace

TEST_F(Live, CallsCheckInitialisedArgumentSessionAndStreamObject)
{
    GetUserInfo(id)->livePlaying = 1; // but there is no stream object
    for (const auto& call : streamCalls) {
        SCOPED_TRACE(call.name);
        const auto failsWith = [&](long userId, bool given) {
            return errorOf(call.failure, [&] { return call.run(userId, given); });
        };
        if (call.takesArgument) {
            EXPECT_EQ(failsWith(id, false), KX_ERROR_NONE);
            EXPECT_EQ(failsWith(999, false), KX_ERROR_NONE);
        }
        EXPECT_EQ(failsWith(999, true), KX_ERROR_UNKNOWN_USER);
        if (call.withoutObject != notNeeded) {
            EXPECT_EQ(failsWith(id, true), call.withoutObject);
        }
    }
    Kx_Sdk_Destroy();
    for (const auto& call : streamCalls)
        EXPECT_EQ(errorOf(call.failure, [&] { return call.run(id, true); }), KX_ERROR_NOT_INITIALISED)
            << call.name;
    EXPECT_EQ(Kx_IpcClient_LivePlay(999), 0);
    EXPECT_EQ(Kx_IpcClient_PlayBack(999), 0);
}

TEST_F(Live, AddressHasTheCamerasPortAndFitsItsRoom)
{
    const struct
    {
        const char* reply;
        char stream;
        int size;
        const char* address; // null: fails
    } cases[] = {
        {"OK mainrtspport=554\n", 0, 64, "rtsp://127.0.0.1:554/main"},
        {"OK mainrtspport=554\n", 1, 64, "rtsp://127.0.0.1:554/sub"},
        {"OK mainrtspport=554\n", -7, 64, "rtsp://127.0.0.1:554/sub"},
        {"OK mainrtspport=0x\n", 0, 64, "rtsp://127.0.0.1:0/main"},
        {"OK mainrtspport=554\n", 0, 26, "rtsp://127.0.0.1:554/mai"},
        {"OK mainrtspport=554\n", 0, 2, ""},
        {"OK mainrtspport=554\n", 0, 1, "before"},
        {"OK mainrtspport=554\n", 0, -1, "before"},
        {"OK mainrtspport=-1\n", 0, 64, nullptr},
        {"OK subrtspport=554\n", 0, 64, nullptr},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.reply << row.size);
        camera.replaceReply("", kxsim::httpReply(row.reply));
        char address[64] = "before";
        EXPECT_EQ(Kx_IpcClient_GetRtspUrl(id, row.stream, address, row.size), row.address ? 0 : -1);
        EXPECT_STREQ(address, row.address ? row.address : "before");
    }
    EXPECT_EQ(queries(camera)[0], "&paratest=mainrtspport");
}

TEST_F(Live, OpensTheStreamAtItsAddressWithItsHandlersReady)
{
    Kx_IpcClient_SetLiveDataCallBack(id, see, nullptr);
    EXPECT_EQ(Kx_IpcClient_OpenLive(id, 0), 0);
    EXPECT_THAT(standin::takeTexts(), ElementsAreArray(openingMain));
    EXPECT_EQ(errorOf(-1, [&] { return Kx_IpcClient_OpenLive(id, 1); }), KX_ERROR_LIVE_STATE);
    EXPECT_EQ(queries(camera).size(), 1U);

    EXPECT_EQ(Kx_IpcClient_StopLivePlay(id), 1); // clears the callback: nothing is to be decoded for it
    standin::takeCalls();
    EXPECT_EQ(Kx_IpcClient_OpenLive(id, 1), 0);
    EXPECT_THAT(standin::takeTexts(),
                ElementsAre(testing::_, testing::_, "SetDecodeEnable(0, 0)",
                            "OpenSubStreamVideo(rtsp://127.0.0.1:8554/sub, admin, secret)"));
}

TEST_F(Live, OpeningThatFailsSaysWhyAndLeavesNothingOpen)
{
    const auto open = [&] { return Kx_IpcClient_OpenLive(id, 0); };
    Kx_IpcClient_SetLiveDataCallBack(id, see, nullptr);
    camera.replaceReply("mainrtspport", kxsim::httpReply("", "404 Not Found"));
    EXPECT_EQ(errorOf(-1, open), KX_ERROR_NOT_FOUND);
    camera.replaceReply("mainrtspport", kxsim::httpReply("OK other=1\n"));
    EXPECT_EQ(errorOf(-1, open), KX_ERROR_NETWORK);
    EXPECT_THAT(standin::takeTexts(), IsEmpty());

    standin::behaviour().openResult = -1;
    EXPECT_EQ(errorOf(-1, open), KX_ERROR_NETWORK);
    EXPECT_THAT(standin::takeTexts(), ElementsAreArray(openingMain + stopping));
    EXPECT_EQ(errorOf(-1, [] { return Kx_IpcClient_OpenLive(0, 0); }), KX_ERROR_UNKNOWN_USER);

    standin::behaviour().openResult = 0;
    EXPECT_EQ(open(), 0);
    standin::sendPicture(*standin::receiversOf(id), nullptr, 8, 4);
    EXPECT_EQ(seen.size(), 1U); // the callback was kept
}

TEST_F(Live, StoppingSwitchesOffInOrderWithAPause)
{
    g_timing.decodersOff = std::chrono::milliseconds(30);
    Kx_IpcClient_SetLiveDataCallBack(id, see, this);
    openLive();
    EXPECT_EQ(errorOf(-1, [&] { return Kx_IpcClient_SetLiveDataCallBack(id, nullptr, nullptr); }),
              KX_ERROR_LIVE_STATE);
    GetUserInfo(id)->liveWord = 7;
    const auto receivers = standin::receiversOf(id);
    EXPECT_EQ(errorOf(1, [&] { return Kx_IpcClient_StopLivePlay(id); }), KX_ERROR_NONE);

    const auto calls = standin::takeCalls();
    std::vector<std::string> texts;
    for (const standin::Call& call : calls)
        texts.push_back(call.text);
    ASSERT_THAT(texts, ElementsAreArray(stopping));
    EXPECT_GE(calls[2].time - calls[1].time, g_timing.decodersOff);
    const UserInfo& session = *GetUserInfo(id);
    EXPECT_EQ(session.liveDataCallback, nullptr);
    EXPECT_EQ(session.liveDataUser, nullptr);
    EXPECT_EQ(session.liveWord, 0U);
    standin::sendPicture(*receivers, nullptr, 8, 4);
    EXPECT_THAT(seen, IsEmpty());

    EXPECT_EQ(errorOf(1, [&] { return Kx_IpcClient_StopLivePlay(id); }), KX_ERROR_LIVE_STATE);
    EXPECT_THAT(standin::takeTexts(), IsEmpty());
}

TEST_F(Live, StoppingWithoutAStreamObjectClearsTheSession)
{
    GetUserInfo(id)->livePlaying = 1;
    EXPECT_EQ(errorOf(1, [&] { return Kx_IpcClient_StopLivePlay(id); }), KX_ERROR_NONE);
    EXPECT_EQ(GetUserInfo(id)->livePlaying, 0);
    EXPECT_THAT(standin::takeTexts(), IsEmpty());
}

TEST_F(Live, EndOfTheSessionStopsIt)
{
    openLive();
    ASSERT_EQ(Kx_IpcClient_OpenPlayBack(id, "a.avi", nullptr, nullptr), 0);
    standin::takeCalls();
    EXPECT_EQ(Kx_Ipc_Logout(id), 0);
    EXPECT_THAT(standin::takeTexts(),
                ElementsAreArray(stopping + std::vector<std::string>{"DelIpCamera()", "destroyed()"}));

    id = login(camera, "secret");
    openLive();
    ASSERT_EQ(Kx_IpcClient_OpenPlayBack(id, "a.avi", nullptr, nullptr), 0);
    standin::takeCalls();
    Kx_Sdk_Destroy();
    EXPECT_THAT(standin::takeTexts(),
                ElementsAreArray(stopping + std::vector<std::string>{"SetVideoBufCallBack(null)",
                                                                     "SetAudioBufCallBack(null)", "Stop()",
                                                                     "destroyed()", "DeleteInstance()"}));
}

TEST_F(Live, HandlersPassFramesOnUnderTheSessionsId)
{
    UserInfo session;
    session.nUserId = 1234;
    session.liveDataUser = &session;
    session.playbackDataUser = this;
    unsigned char pixels[24];
    short samples[4];
    const auto sendAll = [&](UserInfo* user) {
        return std::vector<int>{HandleVideoBuffCB(nullptr, user, pixels, 4, 2, 0, 25.0F),
                                HandlerRealAudioBufCB(nullptr, user, samples, 4, 1),
                                HandleVideoBuffCB_Play(nullptr, user, pixels, 4, 2, 0, 25.0F),
                                HandlerRealAudioBufCB_Play(nullptr, user, samples, 4, 1)};
    };
    EXPECT_THAT(sendAll(nullptr), ElementsAre(-1, -1, -1, -1));
    EXPECT_THAT(sendAll(&session), ElementsAre(0, 0, 0, 0));
    session.playbackDataCallback = see; // without a player
    EXPECT_THAT(sendAll(&session), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(seen, IsEmpty());

    session.liveDataCallback = see;
    session.player = reinterpret_cast<CRecordPlayer*>(this);
    EXPECT_THAT(sendAll(&session), ElementsAre(0, 0, 0, 0));
    const SeenFrame picture{1234, KX_DATA_VIDEO, pixels, 24, 4, 2, &session};
    const SeenFrame sound{1234, KX_DATA_AUDIO, samples, 4, 0, 0, &session};
    EXPECT_THAT(
        seen, ElementsAre(picture, sound, picture, sound)); // the playback's, too, with the live view's user

    session.nUserId = std::numeric_limits<std::int64_t>::min(); // being closed
    EXPECT_THAT(sendAll(&session), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(seen.size(), 4U);
}

TEST_F(Live, SavesAndTakesSnapshotsInTheDirectoryGiven)
{
    const char* const longName = "/tmp/20300102_030405_678.jpg";
    char path[64] = "before";
    EXPECT_EQ(errorOf(-1, [&] { return Kx_IpcClient_SetSaveDir(id, "/tmp"); }), KX_ERROR_NONE);
    EXPECT_EQ(errorOf(-1, [&] { return Kx_IpcClient_SaveLiveData(id, ""); }), KX_ERROR_NONE);
    EXPECT_EQ(errorOf(0, [&] { return Kx_IpcClient_StopSaveLiveData(id); }), KX_ERROR_NONE);
    EXPECT_EQ(errorOf(-1, [&] { return Kx_IpcClient_CaptureImage(id, path, 64, ""); }), KX_ERROR_LIVE_STATE);

    openLive();
    EXPECT_EQ(Kx_IpcClient_SetSaveDir(id, ""), 0);
    EXPECT_EQ(Kx_IpcClient_SaveLiveData(id, ""), 0);
    EXPECT_EQ(Kx_IpcClient_SaveLiveData(id, "/tmp"), 0);
    EXPECT_EQ(Kx_IpcClient_StopSaveLiveData(id), 1);
    EXPECT_THAT(standin::takeTexts(), ElementsAre("SetSaveDir()", "StartSaveAvi(1, null)", "SetSaveDir(/tmp)",
                                                  "StartSaveAvi(1, null)", "StopSaveAvi(1)"));

    standin::behaviour().lastImage = longName;
    EXPECT_EQ(Kx_IpcClient_CaptureImage(id, path, 1, ""), 0);
    EXPECT_STREQ(path, "before");
    EXPECT_EQ(Kx_IpcClient_CaptureImage(id, path, 10, "/tmp"), 0);
    EXPECT_STREQ(path, "/tmp/203");
    EXPECT_EQ(Kx_IpcClient_CaptureImage(id, path, 64, ""), 0);
    EXPECT_STREQ(path, longName);
    EXPECT_THAT(standin::takeTexts(),
                ElementsAre("SaveImage(1, 1)", "SetSaveDir(/tmp)", "SaveImage(1, 1)", "SaveImage(1, 1)"));
}

TEST_F(Live, MotionSettingsAreClampedAndScheduled)
{
    openLive();
    MotionSettingsInfo settings{
        .level = 700, .spaceTime = -3, .map = {}, .saveType = 255, .saveValue1 = 9, .saveValue2 = 4000};
    settings.map[0][1] = settings.map[31][23] = '1';
    std::string map(768, '.'); // which stands for a zero byte
    map[1] = map[767] = '1';
    EXPECT_EQ(Kx_IpcClient_SetMotionSettings(id, &settings), 0);
    EXPECT_THAT(standin::takeTexts(),
                ElementsAre("SetMotionDetectLevel(700)", "SetMotionSpaceTime(-3)",
                            "SetMotionDetectMap(" + map + ")", "SetMotionSaveType(255, 5, 1800)"));
    settings.saveValue1 = settings.saveValue2 = -1;
    EXPECT_EQ(Kx_IpcClient_SetMotionSettings(id, &settings), 0);
    EXPECT_EQ(standin::takeTexts().back(), "SetMotionSaveType(255, -1, -1)");

    std::uint8_t grid[32][24] = {};
    grid[1][0] = 1;
    map.assign(768, '0');
    map[24] = '1';
    EXPECT_EQ(Kx_IpcClient_DrawGrid(id, 99, grid), 0);
    EXPECT_THAT(standin::takeTexts(), ElementsAre("SetMotionDetectMap(" + map + ")"));

    const std::pair<int, std::string> days[] = {{0, "1, 0, 0, 0, 0, 0, 0"},   {6, "0, 0, 0, 0, 0, 0, 1"},
                                                {7, "0, 0, 0, 0, 0, 0, 1"},   {255, "0, 0, 0, 0, 0, 0, 1"},
                                                {256, "1, 0, 0, 0, 0, 0, 0"}, {-254, "0, 0, 1, 0, 0, 0, 0"}};
    for (const auto& [day, flags] : days) {
        const RecordScheduleInfo schedule{day, 22, -1, 99, 5};
        EXPECT_EQ(Kx_IpcClient_AddMotionSchedule(id, &schedule), 0);
        EXPECT_EQ(Kx_IpcClient_AddAutoSaveSchedule(id, &schedule), 0);
        EXPECT_THAT(standin::takeTexts(), ElementsAre("AddMotionSaveTime(" + flags + ", 22, -1, 99, 5)",
                                                      "AddAutoSaveTime(" + flags + ", 22, -1, 99, 5)"));
    }
}

TEST_F(Live, StatusIsThatOfTheOpenStream)
{
    KxLiveStatus status{};
    const auto ask = [&] { return Kx_IpcClient_GetLiveStatus(id, &status); };
    EXPECT_EQ(errorOf(-1, ask), KX_ERROR_LIVE_STATE);
    for (const char stream : {'\0', '\1'}) {
        openLive(stream);
        standin::behaviour().status = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
        EXPECT_EQ(ask(), 0);
        const KxLiveStatus told{1, 2, 3, 4, 5, 6, 7, 8, 14, 15, 9, 10, 11, 12, 13, 0};
        EXPECT_EQ(std::memcmp(&status, &told, sizeof told), 0);
        Kx_IpcClient_StopLivePlay(id);
        status.width = 77;
        EXPECT_EQ(errorOf(-1, ask), KX_ERROR_LIVE_STATE);
        EXPECT_EQ(status.width, 77);
    }
}

TEST_F(Live, ConnectionLimitIsReadAndWritten)
{
    int number = 7;
    camera.replaceReply("", kxsim::httpReply("OK other=1\n"));
    EXPECT_EQ(Kx_IpcClient_GetMaxConnectionLimit(id, &number), 0);
    EXPECT_EQ(number, 7);
    camera.replaceReply("", kxsim::httpReply("OK curmaxconn=3\nOK maxconn=12\n"), 2);
    EXPECT_EQ(Kx_IpcClient_GetMaxConnectionLimit(id, &number), 0);
    EXPECT_EQ(number, 12);
    EXPECT_EQ(Kx_IpcClient_GetCurrentConnectionNum(id, &number), 0);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(Kx_IpcClient_SetMaxConnectionLimit(id, -5), 0);
    EXPECT_THAT(queries(camera),
                ElementsAre("&paratest=maxconn", "&paratest=maxconn", "&paratest=curmaxconn", "&maxconn=-5"));
}
