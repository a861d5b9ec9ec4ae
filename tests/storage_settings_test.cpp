// The memory card, recording, and the camera's search of its recordings.
#include "SdkTest.h"

#include <algorithm>
#include <array>
#include <cstring>

using kxsim::httpReply;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class StorageSettings : public CameraTest
{
protected:
    /// What GetPlaybackTime makes of these lines in a room of `size` bytes, which has an 'x' behind its end.
    std::pair<int, std::string> positionIn(std::uint32_t size, const std::string& lines)
    {
        ti.replaceReply("", httpReply(lines));
        std::string room(size + 1, 'x');
        const int result = Kx_Ipc_GetPlaybackTime(tiId, room.data(), size);
        EXPECT_EQ(room[size], 'x');
        return {result, room.substr(0, result == 0 ? room.find('\0') : room.size() - 1)};
    }

    SdCardInfo card()
    {
        SdCardInfo info{};
        EXPECT_EQ(Kx_Ipc_GetSdCardInfo(tiId, &info), 0);
        return info;
    }
};

const char from[] = "20240501090000";
const char to[] = "20240501193000";

} // namespace

TEST_F(StorageSettings, SpeakTheCamerasLanguage)
{
    char text[64];
    SdCardInfo card{};
    RecordInfo recording{1, 2, 3, 4, 5, 6, 4'294'967'295U};
    Kx_Ipc_GetSdCardInfo(tiId, &card);
    Kx_Ipc_MountSdCard(tiId);
    Kx_Ipc_UnMountSdCard(tiId);
    Kx_Ipc_FormatSdCard(tiId);
    Kx_Ipc_SetRecordConfig(tiId, &recording);
    Kx_Ipc_GetRecordConfig(tiId, &recording);
    Kx_Ipc_EraseOemConfig(tiId);
    Kx_Ipc_GetPlaybackPageCnt(tiId, "a", "b");
    Kx_Ipc_GetPlaybackFilename(tiId, -7, "a", "b", text, sizeof text);
    Kx_Ipc_GetPlaybackFileInfo(tiId, "a", text, sizeof text);
    Kx_Ipc_GetPlaybackHttpFileInfo(tiId, "a", text, sizeof text);
    Kx_Ipc_GetPlaybackTime(tiId, text, sizeof text);
    Kx_Ipc_StopPlayback(tiId);
    Kx_Ipc_PausePlayback(tiId);
    Kx_Ipc_ResumePlayback(tiId);
    Kx_Ipc_ChangePlaybackSpeed(tiId, -4);
    EXPECT_THAT(queries(ti),
                ElementsAre("&paratest=sdinsert&paratest=sdtotalsize&paratest=sdfreesize", "&sdunmount=8",
                            "&sdunmount=1", "&sdformat=1",
                            "/vb.htm?page=sdrecordset&deletesdoldfile=6&msfsprerecordtime=-1",
                            "&paratest=productmodel&paratest=recordstoragetype&paratest=recordframetype"
                            "&paratest=nasrecordframetype&paratest=sdfilemaxsize&paratest=nasfilemaxsize"
                            "&paratest=deletesdoldfile&paratest=msfsprerecordtime",
                            "&eraseoem", "/vb.htm?PBStartTimePos=a&PBEndTimePos=b&PBFileTotalPage",
                            "/vb.htm?PBStartTimePos=a&PBEndTimePos=b&PBFilePageIndex=-7",
                            "/vb.htm?PBCurTimePos=a", "/vb.htm?PBCurTimePosHttp=a", "/vb.htm?PBCurTimePos",
                            "/vb.htm?PBState=-1", "/vb.htm?PBState=0", "/vb.htm?PBState=1",
                            "/vb.htm?PBSpeed=-4&PBState=2"));
}

TEST_F(StorageSettings, CardSizesAreNumbersOf32Bits)
{
    const std::pair<std::string, std::int64_t> sizes[] = {
        {"31166976", 31166976},
        {"-1", -1},
        {"4294967297", 1},
        {std::string(127, '0') + "15", 1}, // of which 128 characters count
        {"none", 0},
    };
    for (const auto& [told, size] : sizes) {
        const SdCardInfo before{1, 2, 3};
        const auto info = read(Kx_Ipc_GetSdCardInfo, "OK sdtotalsize=" + told + "\n", before);
        EXPECT_EQ(info.sdtotalsize, size) << told;
        EXPECT_EQ(info.sdinsert, 1);
        EXPECT_EQ(info.sdfreesize, 3);
    }
}

TEST_F(StorageSettings, RecordingIsReadByFamily)
{
    const std::string told = "OK recordstoragetype=12\nOK recordframetype=13\nOK nasrecordframetype=14\n"
                             "OK sdfilemaxsize=15\nOK nasfilemaxsize=16\nOK deletesdoldfile=17\n"
                             "OK msfsprerecordtime=18\n";
    using Fields = std::array<std::uint32_t, 7>;
    const std::pair<std::string, Fields> rows[] = {
        {"OK productmodel=KX-1T\n" + told, {1, 15, 13, 9, 9, 9, 9}},
        {told, {1, 15, 13, 9, 9, 9, 9}},
        {"OK productmodel=KX-1B\n" + told, {12, 15, 13, 16, 14, 17, 18}},
        {"OK productmodel=KX-1A\n" + told, {12, 15, 13, 16, 14, 17, 18}},
        {"OK productmodel=KX-1A\n", {9, 9, 9, 9, 9, 9, 9}},
    };
    for (const auto& [lines, wanted] : rows) {
        const auto info = read(Kx_Ipc_GetRecordConfig, lines, RecordInfo{9, 9, 9, 9, 9, 9, 9});
        Fields fields;
        std::memcpy(fields.data(), &info, sizeof info);
        EXPECT_EQ(fields, wanted) << lines;
    }
}

TEST_F(StorageSettings, APageCountIsTheResult)
{
    const std::pair<std::string, int> replies[] = {
        {httpReply("OK PBStartTimePos\nOK pbfiletotalpage=12\n"), 12},
        {httpReply("OK pbfiletotalpage=0\n"), 0},
        {httpReply("OK pbfiletotalpages=12\n"), -1},
        {httpReply("OK pbfiletotalpage=12\n", "502 Bad Gateway"), -1},
        {std::string("\0OK pbfiletotalpage=1\n", 22), -1},
        {"HTTP/1.1 200 OK\r\n\r\n" + std::string(500, ' ') + "OK pbfiletotalpage=1\n",
         -1}, // beyond 511 bytes
    };
    for (const auto& [reply, count] : replies) {
        ti.replaceReply("", reply);
        EXPECT_EQ(Kx_Ipc_GetPlaybackPageCnt(tiId, from, to), count) << reply;
    }
}

TEST_F(StorageSettings, TextsAreCopiedWithinTheRoomGiven)
{
    const std::string long_(19'000, 'y');
    using Result = std::pair<int, std::string>;
    EXPECT_EQ(positionIn(100, "OK pbcurtimepos=%s%n&a b\nOK x=1\n"), Result(0, "%s%n&a b"));
    EXPECT_EQ(positionIn(4, "OK pbcurtimepos=1234\n"), Result(0, "123"));
    EXPECT_EQ(positionIn(5, "OK pbcurtimepos=1234\n"), Result(0, "1234"));
    EXPECT_EQ(positionIn(1, "OK pbcurtimepos=1234\n"), Result(0, ""));
    EXPECT_EQ(positionIn(30'000, "OK pbcurtimepos=" + long_ + "\n"), Result(0, long_));
    EXPECT_EQ(positionIn(3, "NG\n"), Result(-1, "xxx"));

    char small[] = "x";
    ti.replaceReply("", httpReply("OK pbcurtimepos=1\n"));
    EXPECT_EQ(Kx_Ipc_GetPlaybackTime(tiId, small, 4'294'967'295U), 0);
    EXPECT_STREQ(small, "1");
    ti.forgetRequests();
    EXPECT_EQ(Kx_Ipc_GetPlaybackTime(tiId, small, 0), -1);
    EXPECT_STREQ(small, "1");
    EXPECT_THAT(ti.requests(), IsEmpty());
}

TEST_F(StorageSettings, ACardIsMountedUnmountedAndFormatted)
{
    const SdCardInfo mounted = card();
    EXPECT_EQ(mounted.sdinsert, 1);
    EXPECT_GT(mounted.sdtotalsize, mounted.sdfreesize);
    EXPECT_EQ(Kx_Ipc_UnMountSdCard(tiId), 0);
    EXPECT_EQ(card().sdtotalsize, 0);
    EXPECT_EQ(Kx_Ipc_GetPlaybackPageCnt(tiId, from, to), -1);
    EXPECT_EQ(Kx_Ipc_MountSdCard(tiId), 0);
    EXPECT_EQ(card().sdfreesize, mounted.sdfreesize);
    EXPECT_EQ(Kx_Ipc_FormatSdCard(tiId), 0);
    EXPECT_EQ(card().sdfreesize, mounted.sdtotalsize);
    EXPECT_EQ(Kx_Ipc_GetPlaybackPageCnt(tiId, from, to), 0);
    ti.setValue("sdinsert", "0");
    EXPECT_EQ(card().sdtotalsize, 0);
}

TEST_F(StorageSettings, RecordingsAreSearchedPageByPage)
{
    ASSERT_EQ(Kx_Ipc_GetPlaybackPageCnt(tiId, from, to), 3);
    std::string all;
    char text[256];
    for (int index = 0; index < 3; ++index) {
        EXPECT_EQ(Kx_Ipc_GetPlaybackFilename(tiId, index, from, to, text, sizeof text), 0);
        all += std::string(text) + ";";
    }
    EXPECT_EQ(std::count(all.begin(), all.end(), ';'), 11); // one an hour, the first of them at nine
    EXPECT_THAT(all, testing::StartsWith("20240501090000.avi,"));
    EXPECT_EQ(Kx_Ipc_GetPlaybackFilename(tiId, 3, from, to, text, sizeof text), -1);

    EXPECT_EQ(Kx_Ipc_GetPlaybackFileInfo(tiId, "20240501101500", text, sizeof text), 0);
    EXPECT_STREQ(text, "20240501101500,20240501100000.avi");
    EXPECT_EQ(Kx_Ipc_GetPlaybackHttpFileInfo(tiId, "20240501111500", text, sizeof text), 0);
    EXPECT_THAT(text, testing::EndsWith("/dataloader.cgi?dw=sd&file=20240501110000.avi"));
    EXPECT_EQ(Kx_Ipc_GetPlaybackTime(tiId, text, sizeof text), 0);
    EXPECT_STREQ(text, "20240501111500");
    EXPECT_EQ(Kx_Ipc_GetPlaybackFileInfo(tiId, "20240502000000", text, sizeof text), -1);
}

TEST_F(StorageSettings, PlaybackIsSteered)
{
    char text[64];
    EXPECT_EQ(Kx_Ipc_GetPlaybackFileInfo(tiId, "20240501101500", text, sizeof text), 0);
    EXPECT_EQ(Kx_Ipc_PausePlayback(tiId), 0);
    EXPECT_EQ(ti.value("PBState"), "0");
    EXPECT_EQ(Kx_Ipc_ResumePlayback(tiId), 0);
    EXPECT_EQ(ti.value("PBState"), "1");
    EXPECT_EQ(Kx_Ipc_ChangePlaybackSpeed(tiId, 8), 0);
    EXPECT_EQ(ti.value("PBState"), "2");
    EXPECT_EQ(ti.value("PBSpeed"), "8");
    EXPECT_EQ(Kx_Ipc_StopPlayback(tiId), 0);
    EXPECT_EQ(Kx_Ipc_GetPlaybackTime(tiId, text, sizeof text), -1);
}
