// What all camera calls have in common: the checks, the bounds of a query, the reading of a reply.
#include "SdkTest.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "CameraCalls.h"
#include "KxIpcSDK/Query.h"
#include "KxIpcSDK/Reply.h"

using CameraCalls = CameraTest;

TEST_F(CameraCalls, CheckInitialisedThenRecordThenSession)
{
    Records records;
    const auto expectFailure = [](const NamedCall& call, long userId, Records* given, long error) {
        g_nLastError = KX_ERROR_NONE;
        const int failure = error == KX_ERROR_NETWORK ? call.unreached : call.failure;
        EXPECT_EQ(call.run(userId, given), failure) << call.name;
        EXPECT_EQ(Kx_Sdk_GetLastError(), error) << call.name;
    };
    for (const NamedCall& call : cameraCalls) {
        if (call.takesRecord) {
            expectFailure(call, tiId, nullptr, KX_ERROR_NONE);
            expectFailure(call, 999, nullptr, KX_ERROR_NONE);
        }
        expectFailure(call, 999, &records, KX_ERROR_UNKNOWN_USER);
        expectFailure(call, 0, &records, KX_ERROR_NETWORK); // finds a free slot: no camera there
    }
    EXPECT_THAT(ti.requests(), testing::IsEmpty());
    Kx_Sdk_Destroy();
    for (const NamedCall& call : cameraCalls)
        expectFailure(call, tiId, call.takesRecord ? nullptr : &records, KX_ERROR_NOT_INITIALISED);
}

TEST_F(CameraCalls, FailedOrEmptyRepliesLeaveTheRecordAlone)
{
    const std::string replies[] = {kxsim::httpReply("OK ftpip=1.2.3.4\n404 Not Found"),
                                   std::string("\0OK ftpip=1\n", 12)};
    for (const std::string& reply : replies) {
        FtpInfo info{};
        std::strcpy(info.ftpip, "before");
        ti.replaceReply("ftpip", reply);
        EXPECT_EQ(Kx_Ipc_GetFTP(tiId, &info), -1);
        EXPECT_STREQ(info.ftpip, "before");
    }
}

namespace
{

/// What a call makes of a text at the very end of the bytes that it reads of a reply, and of the same text when its
/// last character lies beyond them.
struct ReplyBound
{
    int size; // of the reply, its terminator included
    const char* request;
    const char* text;
    int inside;
    int beyond;
    std::function<int(long id)> call;
};

/// A get; the number that it reads last.
template <typename Record, typename Value>
std::function<int(long)> reading(int (*get)(long, Record*), Value Record::*field)
{
    return [=](long id) {
        auto record = std::make_unique<Record>();
        EXPECT_EQ(get(id, record.get()), 0);
        return static_cast<int>((*record).*field);
    };
}

/// A get of one video record.
std::function<int(long)> reading(int (*get)(long, VideoInfo*, int), int VideoInfo::*field)
{
    return [=](long id) {
        VideoInfo video{};
        EXPECT_EQ(get(id, &video, 1), 0);
        return video.*field;
    };
}

std::function<int(long)> reading(int (*get)(long, int*))
{
    return [=](long id) {
        int number = 0;
        EXPECT_EQ(get(id, &number), 0);
        return number;
    };
}

int readStreamPort(long id)
{
    char address[64] = "rtsp://";
    EXPECT_EQ(Kx_IpcClient_GetRtspUrl(id, 0, address, sizeof address), 0);
    return std::atoi(std::strrchr(address, ':') + 1);
}

int readCpu(long id)
{
    SystemInfo info{};
    EXPECT_EQ(Kx_Ipc_GetSystemInfo(id, &info), 0);
    return std::atoi(info.cputype);
}

int readCodec(long id)
{
    AudioOptions options{};
    EXPECT_EQ(Kx_Ipc_GetAudioOptions(id, &options), 0);
    return static_cast<int>(options.codecs[0].codec);
}

int readKeyId(long id)
{
    char key[2048];
    int number = 0;
    EXPECT_EQ(Kx_Ipc_PasswordChallenge(id, "k", key, &number), 0);
    return number;
}

} // namespace

TEST_F(CameraCalls, ReadTheirRepliesToTheBoundAndNoFurther)
{
    constexpr char refusal[] = "404 Not Found";
    const auto named = [](const std::string& name) -> std::function<int(long)> {
        for (const NamedCall& call : cameraCalls)
            if (call.name == name)
                return [&call](long id) { return call.run(id, std::make_unique<Records>().get()); };
        throw std::invalid_argument(name);
    };
    const ReplyBound bounds[] = {
        {512, "onvifport", "OK onvifport=123", 123, 12, reading(Kx_Ipc_GetPortInfo, &PortInfo::onvifport)},
        {1024, "datetime", "\n[SYSTEMDATETIME]\nsystem_datetime_localdatetime_date_year=123", 123, 12,
         reading(Kx_Ipc_GetSystemDate, &DateTimeInfo::year)},
        {2048, "cputype", "OK cputype=123", 123, 12, readCpu},
        {2048, "get.system.information", "system_lpr_version=123", 123, 12,
         reading(Kx_Ipc_GetSystemInfo, &SystemInfo::system_lpr_version)},
        {1024, "updateprogress", "OK updateprogress=123", 123, 12, reading(Kx_Ipc_GetUpdateOnlineProgress)},
        {1024, "updateonline", "OK updateonline", 0, -1, named("UpdateOnline")},
        {256, "ipcamrestartcmd", refusal, -1, 0, named("RebootSystem")},
        {256, "paradefaultcmd", refusal, -1, 0, named("RestoreSystem")},
        {256, "kxdefaultcmd", refusal, -1, 0, named("ResetSystem")},
        {256, "keepipcmd", "OK keepipcmd", 0, -1, named("ResetSystemOnlyKeepIp")},
        {256, "keepusercmd", "OK keepusercmd", 0, -1, named("ResetSystemOnlyKeepUser")},
        {1024, "chipninterface", "OK chipninterface=123", 123, 12, Kx_Ipc_GetAllChipInterface},
        {10240, "get.model.general", "system_led_support=123", 123, 12,
         reading(Kx_Ipc_GetModelGeneral, &ModelGeneralInfo::system_led_support)},
        {256, "adduser", "OK adduser", 0, -1, named("AddUser")},
        {256, "adduser", "OK adduser", 0, -1, named("ModifyPassword")},
        {256, "deluser", "OK deluser", 0, -1, named("DeleteUser")},
        {256, "newsetuser", "OK newsetuser", 0, -1, named("NewSetUser")},
        {256, "challenge", "OK challenge\nkeyid=123", 123, 12, readKeyId},
        {4096, "get.sqa", "sqa_type_2=123", 123, 12, reading(Kx_Ipc_GetSQA, &SqaInfo::sqa_type_2)},
        {4096, "get.video.general", "event_stream_iframe = '123", 123, 12,
         reading(Kx_Ipc_GetVideoConfig, &VideoInfo::eventiframe)},
        {4096, "maincodec", "OK platformforweb=123", 123, 12,
         reading(Kx_Ipc_GetVideoConfig, &VideoInfo::platformforweb)},
        {1024, "maincodec", "OK bitrate1=123", 123, 12,
         reading(Kx_Ipc_GetVideoConfig_ForOldVer, &VideoInfo::bitrate)},
        {512, "audioenable", "OK speex=123", 123, 12, reading(Kx_Ipc_GetAudioConfig, &AudioInfo::speex)},
        {512, "page=audio", refusal, -1, 0, named("SetAudioConfig")},
        {10240, "get.audio.options", "audio_codec_0 = '123", 123, 12, readCodec},
        {1024, "textenable1", "OK dateformat=123", 123, 12,
         reading(Kx_Ipc_GetOSD_ForOldVer, &OsdStreamInfo::dateformat)},
        {512, "mainrtspport", "OK mainrtspport=123", 123, 12, readStreamPort},
        {1024, "maxconn", "OK maxconn=123", 123, 12, reading(Kx_IpcClient_GetMaxConnectionLimit)},
        {1024, "curmaxconn", "OK curmaxconn=123", 123, 12, reading(Kx_IpcClient_GetCurrentConnectionNum)},
    };
    for (const ReplyBound& bound : bounds) {
        SCOPED_TRACE(bound.text);
        const std::string text = bound.text;
        std::string before = "NG" + text.substr(2, text.find('\n') - 2); // which is not what is looked for
        before.resize(static_cast<std::size_t>(bound.size) - 1 - text.size(), ' ');
        ti.replaceReply(bound.request, before + text);
        EXPECT_EQ(bound.call(tiId), bound.inside);
        ti.replaceReply(bound.request, ' ' + before + text);
        EXPECT_EQ(bound.call(tiId), bound.beyond);
    }
}

TEST(QuotedReplyLine, EndsAtTheLastQuoteBeforeTheSemicolon)
{
    const std::pair<const char*, const char*> cases[] = {
        {"a = '640';b = '1';", "640"}, {"a = '640", "640"},    {"a = '-3' ;", "-3"},
        {"a = 'it's';", "it's"},       {"a = '';", ""},        {"a = 'long text';", "long te"},
        {"a='640';", "before"},        {"a = 640;", "before"},
    };
    for (const auto& [lines, value] : cases) {
        char field[8] = "before";
        EXPECT_EQ(QuotedStyle::find(lines, "a", field, sizeof field), std::strcmp(value, "before") != 0);
        EXPECT_STREQ(field, value) << lines;
    }
}

TEST(QueryText, IsCutAtItsBound)
{
    Query query;
    const char longText[2000] = {};
    query.add("%s", std::string(1000, 'x').c_str());
    query.text("k", longText);
    query.add("%s", std::string(100, 'y').c_str());
    query.number("never", 1);
    EXPECT_EQ(std::string(query), std::string(1000, 'x').append("&k=").append(19, 'y'));
}

TEST(QueryText, ReadsNoFurtherThanTheField)
{
    const struct
    {
        char field[4];
        char behind[4];
    } record = {{'a', 'b', 'c', 'd'}, {'n', 'o', '!', '\0'}};
    Query query;
    query.text("k", record.field);
    EXPECT_STREQ(query, "&k=abcd");
}
