// User accounts: the bytes of each request, what becomes of the replies, and who can log in afterwards.
#include "SdkTest.h"

#include <cstring>
#include <functional>

#include "CameraCalls.h"
#include "Core/UserInfo.h"

using kxsim::httpReply;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class UserSettings : public CameraTest
{
protected:
    /// Whether the camera lets this user in.
    bool letsIn(const char* user, const char* password) const
    {
        const long id = Kx_Ipc_Login("", "127.0.0.1", ti.port(), user, password);
        return id >= 0;
    }

    UserAccountInfo bob{"bob", "pass word", 2};
};

std::string slots(const std::string& key)
{
    std::string query;
    for (char slot = '0'; slot <= '9'; ++slot)
        query += "&paratest=" + key + "." + slot;
    return query;
}

const std::string askType = "&paratest=user.0&paratest=user.1&paratest=user.2&paratest=user.3&paratest=user.4"
                            "&paratest=user.5\t\t&paratest=user.6&paratest=user.7&paratest=user.8"
                            "&paratest=user.9";

const std::string proof = "&checkadminPwd=21232f297a57a5a743894a0e4a801fc3"; // of "admin"

} // namespace

TEST_F(UserSettings, TypeIsAskedForTheSlotOfTheName)
{
    ti.setValue("user.7", "guest");
    ti.setValue("authority.7", "3");
    EXPECT_EQ(Kx_Ipc_GetUserType(tiId, "guest"), 3);
    EXPECT_EQ(Kx_Ipc_GetUserType(tiId, "gues"), -1);
    EXPECT_EQ(Kx_Ipc_GetUserType(tiId, "uest"), -1);
    EXPECT_THAT(queries(ti), ElementsAre(askType, "&paratest=authority.7", askType, askType));
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
}

TEST_F(UserSettings, TypeIsReadOffTheRawReplies)
{
    const std::string longName(61, 'n');
    const std::tuple<std::string, std::string, std::string, int> cases[] = {
        {httpReply("OK user.4=bob\n"), "bob", httpReply("OK authority.4=12\n"), 12},
        {httpReply("OK user.4=bob\n"), "bob", httpReply("OK authority.4= -7 8\n"), -7},
        {httpReply("OK user.4=bob\n"), "bob", httpReply("nothing"), 0},
        {httpReply("OK user.4=bob\n"), "bob", std::string("\0=5", 3), 0},
        {httpReply("OK user.4=bob\n"), "bob", "Server: a=9\r\n\r\nOK authority.4=12\n", 9},
        {httpReply("OK user.4=bob\n"), "bob", std::string(300, '='), 0},
        {httpReply("OK user.4=bob\n"), "bob", "a=" + std::string(62, '0') + "12", 1},
        {httpReply("OK user.4=bob\n"), "bob", "a=" + std::string(300, '9') + "\n", -1},
        {httpReply("OK user.4=bob\n"), "bob", httpReply("", "404 Not Found"), -1},
        {httpReply("OK user.4=bob\r\n"), "bob", httpReply("OK authority.4=12\n"), -1},
        {httpReply("OK user.4=bob"), "bob", httpReply("OK authority.4=12\n"), -1},
        {httpReply("OK user.4=a=bob\n"), "bob", httpReply("OK authority.4=12\n"), -1},
        {"=bob\n", "bob", httpReply("OK authority.4=12\n"), -1},
        {httpReply("OK user.4=" + longName + "more\n"), longName, httpReply("OK authority.4=5\n"), 5},
        {"", "bob", httpReply("OK authority.4=12\n"), -1},
    };
    for (const auto& [users, name, authority, type] : cases) {
        kxsim::SimCamera camera;
        const long id = login(camera);
        camera.replaceReply("user.0", users);
        camera.replaceReply("authority", authority);
        EXPECT_EQ(Kx_Ipc_GetUserType(id, name.c_str()), type) << users << authority;
        Kx_Ipc_Logout(id);
    }
}

TEST_F(UserSettings, AddedUsersLogInAndDeletedOnesDoNot)
{
    EXPECT_EQ(Kx_Ipc_AddUser(tiId, &bob), 0);
    EXPECT_EQ(Kx_Ipc_AddUser(tiId, &bob), -1); // has the name already
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
    EXPECT_EQ(ti.value("authority.1"), "2");
    EXPECT_TRUE(letsIn("bob", "pass word"));
    EXPECT_TRUE(letsIn("admin", "admin")); // the session is the administrator's again
    ti.forgetRequests();
    EXPECT_EQ(Kx_Ipc_DeleteUser(tiId, "bob"), 0);
    EXPECT_EQ(Kx_Ipc_DeleteUser(tiId, "bob"), -1);
    EXPECT_THAT(queries(ti), ElementsAre("&deluser=bob", "&deluser=bob"));
    for (int slot = 1; slot <= 10; ++slot) { // of which the first is the administrator's
        put(bob.name, "user" + std::to_string(slot));
        EXPECT_EQ(Kx_Ipc_AddUser(tiId, &bob), slot < 10 ? 0 : -1);
    }
    EXPECT_FALSE(letsIn("bob", "pass word"));
}

TEST_F(UserSettings, AddSendsTheFieldsAndAFixedOne)
{
    put(bob.name, std::string(31, 'n'));
    std::memset(bob.password, 'p', sizeof bob.password); // not terminated
    bob.authority = -5;
    EXPECT_EQ(Kx_Ipc_AddUser(tiId, &bob), -1);
    EXPECT_THAT(queries(ti),
                ElementsAre("&adduser=" + std::string(31, 'n') + ":" + std::string(512, 'p') + ":-5:1"));
}

TEST_F(UserSettings, ANewPasswordKeepsTheAuthority)
{
    Kx_Ipc_AddUser(tiId, &bob);
    ti.forgetRequests();
    EXPECT_EQ(Kx_Ipc_ModifyPassword(tiId, "bob", "new"), 0);
    EXPECT_THAT(queries(ti),
                ElementsAre(askType, "&paratest=authority.1", "&deluser=bob&adduser=bob:new:2:0"));
    EXPECT_EQ(ti.value("authority.1"), "2");
    EXPECT_TRUE(letsIn("bob", "new"));
    EXPECT_FALSE(letsIn("bob", "pass word"));
}

TEST_F(UserSettings, ANewPasswordGoesOnWithoutTheAuthority)
{
    ti.replaceReply("adduser", httpReply("OK adduser\n"), 3);
    EXPECT_EQ(Kx_Ipc_ModifyPassword(tiId, "ghost", "new"), 0);
    EXPECT_THAT(queries(ti), ElementsAre(askType, "&deluser=ghost&adduser=ghost:new:-1:0"));
    ti.replaceReply("user.0", httpReply("", "404 Not Found"));
    EXPECT_EQ(Kx_Ipc_ModifyPassword(tiId, "admin", "new"), 0);
    EXPECT_EQ(queries(ti).back(), "&deluser=admin&adduser=admin:new:-1:0");
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NOT_FOUND);
}

TEST_F(UserSettings, TheSessionKeepsThePasswordItLoggedInWith)
{
    EXPECT_EQ(Kx_Ipc_ModifyPassword(tiId, "admin", "new"), 0);
    EXPECT_EQ(Kx_Ipc_GetUserType(tiId, "admin"), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_UNAUTHORISED);
    EXPECT_EQ(login(ti, "new"), tiId);
    EXPECT_EQ(Kx_Ipc_GetUserType(tiId, "admin"), 10);
}

TEST_F(UserSettings, SetUserProvesThePasswordOfTheSession)
{
    EXPECT_EQ(Kx_Ipc_NewSetUser(tiId, "eve", "a b", 3, 4, -1), 0);
    EXPECT_EQ(Kx_Ipc_NewSetUser(tiId, "eve", "c", 5, 6, 0), 0);
    EXPECT_EQ(ti.value("authority.1"), "5");
    EXPECT_EQ(ti.value("privilege.1"), "6");
    EXPECT_THAT(queries(ti),
                ElementsAre(proof + "&newsetuser=eve:a%20b:3:4", proof + "&newsetuser=eve:c:5:6:0"));

    EXPECT_TRUE(letsIn("eve", "c")); // now the session proves another password
    EXPECT_EQ(Kx_Ipc_NewSetUser(tiId, "mallory", "m", 10, 255, -1), -1);
    EXPECT_EQ(ti.value("user.2"), "");
}

TEST_F(UserSettings, QueriesAreCutAtTheirBounds)
{
    const std::string name(490, 'n');
    const std::string password(2000, 'p');
    Kx_Ipc_NewSetUser(tiId, name.c_str(), password.c_str(), 1, 2, 3);
    Kx_Ipc_DeleteUser(tiId, password.c_str());
    Kx_Ipc_ModifyPassword(tiId, name.c_str(), password.c_str());
    const auto filled = [](const std::string& start, std::size_t length) {
        return start + std::string(length - start.size(), 'p');
    };
    EXPECT_THAT(queries(ti),
                ElementsAre(filled(proof + "&newsetuser=" + name + ":", 2046), filled("&deluser=", 1022),
                            askType, filled("&deluser=" + name + "&adduser=" + name + ":", 1022)));
}

TEST_F(UserSettings, ChallengeGivesTheKeyAndItsNumber)
{
    char key[2048] = "before";
    int id = -7;
    EXPECT_EQ(Kx_Ipc_PasswordChallenge(tiId, "my key", key, &id), 0);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(std::strlen(key), 32U);
    const std::string first = key;
    EXPECT_EQ(Kx_Ipc_PasswordChallenge(tiId, "my key", key, &id), 0);
    EXPECT_EQ(id, 2);
    EXPECT_NE(key, first);
    EXPECT_EQ(ti.requests().front().target, "/challenge?PublicKeytool=my%20key");
}

TEST_F(UserSettings, ChallengeReadsWhatTheReplyHolds)
{
    const std::tuple<std::string, int, const char*, int> cases[] = {
        {"OK challenge\n", 0, "before", -7},
        {"OK challenge\nkey=\nkeyid=\n", 0, "", 0},
        {"OK challenge\nkeyid=12x\nkey=a b=c\r\n", 0, "a b=c\r", 12},
        {"OK challenge\nkey=%d%s%n%%5%\nkeyid=3\n", 0, "%d%s%n%5%", 3},
        {"key=k\nkeyid=4\n", -1, "before", -7},
        {"NG challenge\nkey=k\nkeyid=4\n", -1, "before", -7},
    };
    for (const auto& [lines, result, wantedKey, wantedId] : cases) {
        char key[2048] = "before";
        int id = -7;
        ti.replaceReply("challenge", httpReply(lines));
        EXPECT_EQ(Kx_Ipc_PasswordChallenge(tiId, "k", key, &id), result) << lines;
        EXPECT_STREQ(key, wantedKey) << lines;
        EXPECT_EQ(id, wantedId) << lines;
    }
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE);
}

TEST_F(UserSettings, AllSlotsAreReadInThreeRequests)
{
    Kx_Ipc_AddUser(tiId, &bob);
    ti.setValue("user.9", std::string(40, 'n'));
    ti.setValue("authority.9", "300");
    ti.setValue("privilege.9", "-1");
    ti.removeValue("user.8");
    ti.removeValue("authority.8");
    ti.removeValue("privilege.8");
    ti.forgetRequests();
    UserListEntry entries[11];
    std::memset(entries, '#', sizeof entries);
    EXPECT_EQ(Kx_Ipc_GetAllUser(tiId, entries), 0);
    EXPECT_THAT(queries(ti), ElementsAre(slots("user"), slots("authority"), slots("privilege")));

    const std::tuple<std::size_t, std::string, int, int> expected[] = {
        {0, "admin", 10, 255}, {1, "bob", 2, 0}, {2, "", 0, 0}, {9, std::string(32, 'n'), 44, 255}};
    for (const auto& [slot, name, authority, privilege] : expected) {
        EXPECT_EQ(entries[slot].name, name);
        EXPECT_EQ(entries[slot].authority, authority);
        EXPECT_EQ(entries[slot].privilege, privilege);
    }
    for (const std::size_t untouched : {8U, 10U}) {
        UserListEntry before;
        std::memset(&before, '#', sizeof before);
        EXPECT_EQ(std::memcmp(&entries[untouched], &before, sizeof before), 0) << untouched;
    }
}

TEST_F(UserSettings, AFailedListKeepsWhatItCouldNotRead)
{
    const std::string failure = httpReply("OK authority.0=1\nOK privilege.0=1\n404 Not Found");
    for (const std::string& part : {slots("user"), slots("authority"), slots("privilege")}) {
        UserListEntry entries[10] = {};
        entries[0].privilege = 77;
        ti.replaceReply(part, failure);
        EXPECT_EQ(Kx_Ipc_GetAllUser(tiId, entries), -1);
        EXPECT_STREQ(entries[0].name, part == slots("user") ? "" : "admin");
        EXPECT_EQ(entries[0].authority, part == slots("privilege") ? 10 : 0);
        EXPECT_EQ(entries[0].privilege, 77);
    }
}

TEST_F(UserSettings, SecurityQuestionsEndAtTheCarriageReturn)
{
    const SqaInfo all = read(Kx_Ipc_GetSQA, "sqa_enable=1\r\nsqa_type_0=2\r\nsqa_question_0=a\nb\r\n"
                                            "sqa_type_1=3\r\nsqa_question_1=c # d\r\nsqa_type_2=4\r\n"
                                            "sqa_question_2=" +
                                                std::string(300, 'q') + "\r\n");
    EXPECT_THAT(queries(ti), ElementsAre("/cgi-bin/admin/admin.cgi?action=get.sqa&format=inf"));
    EXPECT_EQ(all.sqa_enable, 1);
    EXPECT_EQ(all.sqa_type_0, 2);
    EXPECT_STREQ(all.sqa_question_0, "a\nb");
    EXPECT_EQ(all.sqa_type_1, 3);
    EXPECT_STREQ(all.sqa_question_1, "c # d");
    EXPECT_EQ(all.sqa_type_2, 4);
    EXPECT_EQ(all.sqa_question_2, std::string(255, 'q'));

    SqaInfo before{};
    before.sqa_enable = 9;
    put(before.sqa_question_1, "before");
    const SqaInfo some = read(Kx_Ipc_GetSQA, "sqa_type_1=5\r\n", before);
    EXPECT_EQ(some.sqa_enable, 9);
    EXPECT_EQ(some.sqa_type_1, 5);
    EXPECT_STREQ(some.sqa_question_1, "before");

    SqaInfo own{};
    EXPECT_EQ(Kx_Ipc_GetSQA(pageId, &own), 0);
    EXPECT_STREQ(own.sqa_question_0, "What was the name of your first school?");
}

TEST_F(UserSettings, ALockedSessionManagesNoAccounts)
{
    GetUserInfo(tiId)->adminLock = 1;
    Records records;
    for (const NamedCall& call : cameraCalls) {
        const std::string name = call.name;
        if (name != "AddUser" && name != "DeleteUser" && name != "NewSetUser" && name != "GetAllUser" &&
            name != "GetSQA")
            continue;
        g_nLastError = KX_ERROR_NONE;
        EXPECT_EQ(call.run(tiId, nullptr), -1) << name;
        EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NONE) << name;
        EXPECT_EQ(call.run(tiId, &records), -1) << name;
        EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_FORBIDDEN) << name;
    }
    EXPECT_THAT(queries(ti), IsEmpty());
    EXPECT_EQ(Kx_Ipc_GetUserType(tiId, "admin"), 10);
    EXPECT_EQ(Kx_Ipc_PasswordChallenge(tiId, "k", records.challengeKey, &records.challengeKeyId), 0);
    EXPECT_EQ(Kx_Ipc_ModifyPassword(tiId, "admin", "new"), 0);
}

TEST_F(UserSettings, TracesShowNoSecretAndNoFailure)
{
    const auto trace = [](const std::string& text) { return "KxOutputDebugInfo: " + text + " \n"; };
    const std::string slotTrace = trace("====Get UserType1:%s===");
    const std::string typeTraces = slotTrace + trace("====Get UserType2:%s===");
    Records records;
    const std::pair<std::function<int()>, std::string> cases[] = {
        {[&] { return Kx_Ipc_GetUserType(tiId, "admin"); }, typeTraces},
        {[&] { return Kx_Ipc_GetUserType(tiId, "ghost"); }, slotTrace},
        {[&] { return Kx_Ipc_AddUser(tiId, &bob); }, trace("==AddUser Response:%s==")},
        {[&] { return Kx_Ipc_ModifyPassword(tiId, "bob", "new"); },
         typeTraces + trace("==Add User:%s password:%s Response:%s==")},
        {[&] { return Kx_Ipc_NewSetUser(tiId, "bob", "new", 1, 2, 3); }, trace("==newAddUser Response:%s==")},
        {[&] { return Kx_Ipc_DeleteUser(tiId, "bob"); }, trace("==DelUser Response:%s==")},
        {[&] { return Kx_Ipc_PasswordChallenge(tiId, "k", records.challengeKey, &records.challengeKeyId); },
         trace("==password challenge Response:%s==")},
        {[&] { return Kx_Ipc_GetAllUser(tiId, records.users); }, ""},
        {[&] { return Kx_Ipc_GetSQA(tiId, &records.questions); }, ""},
    };
    for (const bool works : {true, false}) {
        if (!works)
            ti.setFault({.kind = kxsim::Fault::Kind::Status, .status = 404});
        for (const auto& [call, printed] : cases) {
            testing::internal::CaptureStdout();
            call();
            EXPECT_EQ(testing::internal::GetCapturedStdout(), works ? printed : "") << printed;
        }
    }
    ti.setFault({.kind = kxsim::Fault::Kind::Status, .status = 404, .onlyFor = "authority"});
    testing::internal::CaptureStdout();
    Kx_Ipc_GetUserType(tiId, "admin");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), slotTrace);
}
