// E-mail: the settings in both dialects, and the test mail.
#include "SdkTest.h"

#include <cstring>

using kxsim::httpReply;
using testing::ElementsAre;

using SmtpSettings = CameraTest;

static const std::string askModel = "&paratest=productmodel";

TEST_F(SmtpSettings, ACameraThatAnswersWithoutItsModelCountsAsTi)
{
    page.removeValue("productmodel");
    SmtpInfo smtp{};
    EXPECT_EQ(Kx_Ipc_SetSMTP(pageId, &smtp), 0);
    EXPECT_THAT(queries(page).back(), testing::EndsWith("&smtpauth=0"));
}

TEST_F(SmtpSettings, SmtpSecurityIsANumberOrTwoFlags)
{
    const std::tuple<const char*, int, int> cases[] = {
        {"OK smtpauth=0\nOK smtpencryssl=1\nOK smtpenable=7\n", 0, 7},
        {"OK smtpencryssl=1\nOK smtpencrytls=1\n", 2, 1},
        {"OK smtpencryssl=0\nOK smtpencrytls=1\n", 1, 1},
        {"OK smtpencrytls=2\n", 9, 1},
        {"OK smtpip=x\n", 9, 1}};
    SmtpInfo before{};
    before.smtpauth = 9;
    for (const auto& [lines, auth, enable] : cases) {
        const SmtpInfo info = read(Kx_Ipc_GetSMTP, lines, before);
        EXPECT_EQ(info.smtpauth, auth) << lines;
        EXPECT_EQ(info.smtpenable, enable) << lines;
    }
}

TEST_F(SmtpSettings, SmtpTravelsInBothDialects)
{
    SmtpInfo set{"user", "a@b.org", "pass", "mail.b.org", 465, "x@b.org;y@b.org", 3, 0};
    const std::string common = "&smtpuser=user&smtppwd=pass&smtpsender=a@b.org&smtpip=mail.b.org&smtpport=465"
                               "&emailuser=x@b.org;y@b.org";
    EXPECT_EQ(Kx_Ipc_SetSMTP(tiId, &set), 0);
    EXPECT_THAT(queries(ti), ElementsAre(askModel, common + "&smtpauth=3"));
    const std::pair<int, std::string> flags[] = {{3, "&smtpencryssl=1&smtpencrytls=1"},
                                                 {2, "&smtpencryssl=1&smtpencrytls=0"},
                                                 {1, "&smtpencryssl=0&smtpencrytls=1"},
                                                 {0, "&smtpencryssl=0&smtpencrytls=0"}};
    for (const auto& [auth, text] : flags) {
        page.forgetRequests();
        set.smtpauth = auth;
        EXPECT_EQ(Kx_Ipc_SetSMTP(pageId, &set), 0);
        EXPECT_THAT(queries(page), ElementsAre(askModel, common + text));
    }
    set.smtpauth = 0;
    set.smtpenable = 1;
    page.setValue("smtpenable", "1");
    SmtpInfo got{};
    EXPECT_EQ(Kx_Ipc_GetSMTP(pageId, &got), 0);
    EXPECT_EQ(std::memcmp(&got, &set, sizeof got), 0);
}

TEST_F(SmtpSettings, TestMailIsSentRefusedOrFails)
{
    ti.setValue("smtpip", "mail.example.org");
    EXPECT_EQ(Kx_Ipc_TestSMTP(tiId), 0);
    ti.replaceReply("testsmtp", httpReply("NG testsmtp\n"));
    EXPECT_EQ(Kx_Ipc_TestSMTP(tiId), 1);
    for (const std::string& nothing : {std::string(), std::string("\0OK testsmtp", 12)}) {
        ti.replaceReply("testsmtp", nothing);
        EXPECT_EQ(Kx_Ipc_TestSMTP(tiId), -1);
    }
    EXPECT_THAT(queries(ti), ElementsAre("&testsmtp", "&testsmtp", "&testsmtp", "&testsmtp"));
}
