// The camera itself: identity, name, restart, the ways back to the factory's settings, online update.
#include "SdkTest.h"

#include <chrono>
#include <cstring>

using kxsim::httpReply;
using testing::ElementsAre;
using namespace std::chrono_literals;

using SystemSettings = CameraTest;

static const std::string askFeatures = "/cgi-bin/admin/admin.cgi?action=get.system.information&format=inf";
static const std::string askIdentity =
    "&paratest=title&paratest=productmodel&paratest=oemmodel&paratest=softversion&paratest=deviceversion"
    "&paratest=sdkversion&paratest=cputype";

namespace
{

SystemInfo earlierFeatures()
{
    SystemInfo info{};
    info.system_audio_support = 11;
    info.system_audio_support_mode = 12;
    info.system_lpr_support = 13;
    info.system_lpr_version = 14;
    info.system_alarm_output_support = 15;
    return info;
}

} // namespace

TEST_F(SystemSettings, IdentityAndFeaturesComeFromTwoRequests)
{
    page.setValue("title", std::string(300, 't'));
    page.setValue("oemmodel", std::string(40, 'o'));
    SystemInfo info{};
    ASSERT_EQ(Kx_Ipc_GetSystemInfo(pageId, &info), 0);
    EXPECT_THAT(queries(page), ElementsAre(askIdentity, askFeatures));
    EXPECT_EQ(info.title, std::string(255, 't'));
    EXPECT_STREQ(info.productmodel, "KX-C300B");
    EXPECT_EQ(info.oemmodel, std::string(31, 'o'));
    EXPECT_STREQ(info.softversion, "2.0.4");
    EXPECT_STREQ(info.deviceversion, "1.2");
    EXPECT_STREQ(info.sdkversion, "3.1");
    EXPECT_STREQ(info.cputype, "hi3516a");
    EXPECT_EQ(info.system_audio_support, 1);
    EXPECT_EQ(info.system_audio_support_mode, 2);
    EXPECT_EQ(info.system_lpr_support, 1);
    EXPECT_EQ(info.system_lpr_version, 3);
    EXPECT_EQ(info.system_alarm_output_support, 1);
}

TEST_F(SystemSettings, AbsentFeaturesKeepTheCallersValuesButForTheMode)
{
    const std::tuple<std::string, int, int, long> cases[] = {
        {httpReply("system_lpr=1\n"), 11, -1, KX_ERROR_NONE},
        {httpReply("system_audio_support=3\r\nsystem_audio_support_mode=4\r\n"), 3, 4, KX_ERROR_NONE},
        {httpReply("system_audio_support=\n7\r\n"), 7, -1, KX_ERROR_NONE}, // a line feed ends no value
        {httpReply("system_audio_support=5\r\n", "404 Not Found"), 5, -1, KX_ERROR_NOT_FOUND},
        {std::string("\0system_audio_support=6", 23), 11, -1, KX_ERROR_NONE},
        {"", 11, -1, KX_ERROR_NETWORK},
    };
    for (const auto& [reply, audio, mode, error] : cases) {
        SCOPED_TRACE(reply);
        g_nLastError = KX_ERROR_BUSY; // the second request forgets it
        ti.replaceReply("get.system.information", reply);
        SystemInfo info = earlierFeatures();
        EXPECT_EQ(Kx_Ipc_GetSystemInfo(tiId, &info), 0);
        EXPECT_EQ(info.system_audio_support, audio);
        EXPECT_EQ(info.system_audio_support_mode, mode);
        EXPECT_EQ(info.system_lpr_support, 13);
        EXPECT_EQ(info.system_lpr_version, 14);
        EXPECT_EQ(info.system_alarm_output_support, 15);
        EXPECT_EQ(Kx_Sdk_GetLastError(), error);
    }
    ti.forgetRequests();
    ti.replaceReply("paratest", std::string("\0OK title=x", 11));
    SystemInfo info = earlierFeatures();
    EXPECT_EQ(Kx_Ipc_GetSystemInfo(tiId, &info), -1);
    EXPECT_EQ(info.system_audio_support_mode, 12);
    EXPECT_THAT(queries(ti), ElementsAre(askIdentity));
}

TEST_F(SystemSettings, TheNameIsSentAsItStandsAndCutAtTheQuerysBound)
{
    EXPECT_EQ(Kx_Ipc_SetDeviceName(tiId, "front 100%n"), 0);
    EXPECT_EQ(ti.value("title"), "front 100%n");
    EXPECT_EQ(Kx_Ipc_SetDeviceName(tiId, std::string(2000, 'n').c_str()), 0);
    EXPECT_THAT(queries(ti), ElementsAre("&title=front%20100%n", "&title=" + std::string(1015, 'n')));
    g_nLastError = KX_ERROR_NONE;
    EXPECT_EQ(Kx_Ipc_SetDeviceName(tiId, nullptr), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
    EXPECT_EQ(Kx_Ipc_SetDeviceName(999, nullptr), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_UNKNOWN_USER);
}

TEST_F(SystemSettings, CommandsAreSentAndOnlyTheKeepingResetsNeedTheirConfirmation)
{
    const std::tuple<int (*)(long), std::string, int> cases[] = {
        {Kx_Ipc_RebootSystem, "ipcamrestartcmd", 0},
        {Kx_Ipc_RestoreSystem, "paradefaultcmd", 0},
        {Kx_Ipc_ResetSystem, "kxdefaultcmd", 0},
        {Kx_Ipc_ResetSystemOnlyKeepIp, "keepipcmd", -1},
        {Kx_Ipc_ResetSystemOnlyKeepUser, "keepusercmd", -1}};
    for (const auto& [call, word, unconfirmed] : cases) {
        SCOPED_TRACE(word);
        ti.forgetRequests();
        const std::string other = word == "keepipcmd" ? "keepusercmd" : "keepipcmd";
        const std::pair<std::string, int> replies[] = {{httpReply("OK " + word + "\n"), 0},
                                                       {httpReply("OK " + other + "\n"), unconfirmed},
                                                       {httpReply("NG " + word + "\n"), unconfirmed},
                                                       {std::string("\0OK", 3) + word, unconfirmed},
                                                       {httpReply("OK " + word, "404 Not Found"), -1},
                                                       {"", -1}};
        for (const auto& [reply, result] : replies) {
            ti.replaceReply(word, reply);
            EXPECT_EQ(call(tiId), result) << reply;
        }
        EXPECT_THAT(queries(ti), testing::Each("&" + word));
    }
}

TEST_F(SystemSettings, AResetBringsBackTheFactorysSettingsButForWhatItKeeps)
{
    const std::pair<int (*)(long), bool> cases[] = {{Kx_Ipc_RestoreSystem, false},
                                                    {Kx_Ipc_ResetSystem, false},
                                                    {Kx_Ipc_ResetSystemOnlyKeepUser, false},
                                                    {Kx_Ipc_ResetSystemOnlyKeepIp, true}};
    for (const auto& [reset, keepsAddress] : cases) {
        kxsim::SimCamera camera{{.restartTime = 0ms}};
        const long id = login(camera);
        for (const char* key : {"gateway", "ftpip", "title", "ftppath"})
            camera.setValue(key, "changed");
        camera.removeValue("ftppath");
        EXPECT_EQ(reset(id), 0);
        EXPECT_EQ(camera.value("gateway"), keepsAddress ? "changed" : "192.168.1.1");
        EXPECT_EQ(camera.value("ftpip"), "");
        EXPECT_EQ(camera.value("ftppath"), "/");
        EXPECT_EQ(camera.value("title"), "camera");
        EXPECT_EQ(camera.value("productmodel"), "KX-C200T"); // what it is stays, and where it listens
        EXPECT_EQ(camera.value("httpport"), std::to_string(camera.port()));
        EXPECT_GE(login(camera), 1000);
    }
}

TEST_F(SystemSettings, AnUpdateIsFoundBegunAndFollowed)
{
    char reply[512];
    std::memset(reply, 'x', sizeof reply);
    EXPECT_EQ(Kx_Ipc_GetUpdateInfo(tiId, reply, sizeof reply), 0);
    EXPECT_EQ(std::string(reply), httpReply("OK checkupdate=2.1.0\n"));
    EXPECT_EQ(reply[sizeof reply - 1], '\0');

    int progress = 77;
    EXPECT_EQ(Kx_Ipc_GetUpdateOnlineProgress(tiId, &progress), 0);
    EXPECT_EQ(progress, 77); // no update is running
    EXPECT_EQ(Kx_Ipc_UpdateOnline(tiId, ""), -1);
    EXPECT_EQ(Kx_Ipc_UpdateOnline(tiId, "2.1.0"), 0);
    for (const int expected : {0, 25, 50, 75, 100, 100}) {
        EXPECT_EQ(Kx_Ipc_GetUpdateOnlineProgress(tiId, &progress), 0);
        EXPECT_EQ(progress, expected);
    }
    EXPECT_EQ(ti.value("softversion"), "2.1.0");
    EXPECT_THAT(queries(ti),
                testing::IsSupersetOf({std::string("/vb.htm?checkupdate=http://update.kx-cameras."
                                                   "example/version"),
                                       std::string("&updateonline=2.1.0"), std::string("&updateprogress")}));
}

TEST_F(SystemSettings, AnErrorOutranksTheProgress)
{
    const std::pair<std::string, int> cases[] = {{httpReply("OK updateprogress=40\nOK errcode=3\n"), 3},
                                                 {httpReply("OK errcode=-1\n"), -1},
                                                 {httpReply("OK errcode=\nOK updateprogress=40\n"), 0},
                                                 {httpReply("OK updateprogress=40%\n"), 40},
                                                 {httpReply("updateprogress=40\n"), 7},
                                                 {std::string("\0OK updateprogress=40", 21), 7}};
    for (const auto& [reply, expected] : cases) {
        int progress = 7;
        ti.replaceReply("updateprogress", reply);
        EXPECT_EQ(Kx_Ipc_GetUpdateOnlineProgress(tiId, &progress), 0) << reply;
        EXPECT_EQ(progress, expected) << reply;
    }
}

TEST_F(SystemSettings, UpdateNeedsTheCamerasWord)
{
    char reply[64] = "before";
    g_nLastError = KX_ERROR_NONE;
    for (const int size : {0, -1})
        EXPECT_EQ(Kx_Ipc_GetUpdateInfo(tiId, reply, size), -1);
    EXPECT_STREQ(reply, "before");
    for (const std::string& body : {std::string("NG checkupdate\n"), std::string("checkupdate=1\n")}) {
        ti.replaceReply("checkupdate", body);
        EXPECT_EQ(Kx_Ipc_GetUpdateInfo(tiId, reply, sizeof reply), -1);
        EXPECT_EQ(std::string(reply), body);
    }
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
    ti.replaceReply("checkupdate", "");
    EXPECT_EQ(Kx_Ipc_GetUpdateInfo(tiId, reply, sizeof reply), -1);
    EXPECT_EQ(std::string(reply, sizeof reply), std::string(sizeof reply, '\0'));
    ti.replaceReply("updateonline", httpReply("OK update\n"));
    EXPECT_EQ(Kx_Ipc_UpdateOnline(tiId, "x"), -1);
}
