// The table of sessions: which slot a login gets, and what is kept in it.
#include "SdkTest.h"

#include <cstring>
#include <memory>

#include "Core/UserInfo.h"

namespace
{

class SessionTable : public testing::Test
{
protected:
    void SetUp() override { clearAllSessions(); }
    void TearDown() override { clearAllSessions(); }

    static long take(const char* host, int port)
    {
        UserInfo copy;
        return takeSession("label", host, port, "user", "password", copy) != nullptr ? copy.nUserId.load() : -1;
    }
};

} // namespace

TEST_F(SessionTable, ReusesTheSessionOfTheSameHostAndPort)
{
    const long first = take("10.0.0.1", 80);
    EXPECT_EQ(take("10.0.0.1", 81), first + 1);
    EXPECT_EQ(take("10.0.0.2", 80), first + 2);
    EXPECT_EQ(take("10.0.0.1", 80), first);
    EXPECT_EQ(GetUserInfo(first), &g_UserInfo[0]);
    EXPECT_EQ(GetUserInfo(first + 2), &g_UserInfo[2]);
    EXPECT_EQ(GetUserInfo(first + 3), nullptr);
    EXPECT_EQ(GetUserInfo(0), &g_UserInfo[3]);
}

TEST_F(SessionTable, TakesAHoleBeforeItFindsASessionBehindIt)
{
    const long first = take("10.0.0.1", 80);
    const long last = take("10.0.0.2", 80);
    clearSession(g_UserInfo[0], first);
    const long hole = take("10.0.0.2", 80);
    EXPECT_EQ(hole, last + 1);
    EXPECT_EQ(GetUserInfo(hole), &g_UserInfo[0]);
    EXPECT_EQ(GetUserInfo(last), &g_UserInfo[1]);
    EXPECT_EQ(take("10.0.0.2", 80), hole);
}

TEST_F(SessionTable, HoldsFiveHundred)
{
    for (int port = 1; port <= 500; ++port)
        ASSERT_NE(take("10.0.0.1", port), -1);
    EXPECT_EQ(take("10.0.0.1", 501), -1);
    EXPECT_EQ(GetAvaiUserInfo("10.0.0.1", 500), &g_UserInfo[499]);
    EXPECT_EQ(GetUserInfo(0), nullptr);
}

TEST_F(SessionTable, KeepsOneCharacterLessThanAFieldCouldHold)
{
    const std::string text(300, 'x');
    UserInfo copy;
    const UserInfo* slot = takeSession(text.c_str(), text.c_str(), 80, text.c_str(), text.c_str(), copy);
    EXPECT_EQ(std::strlen(slot->label), 254U);
    EXPECT_EQ(std::strlen(slot->host), 62U);
    EXPECT_EQ(std::strlen(slot->user), 62U);
    EXPECT_EQ(std::strlen(slot->password), 30U);
    EXPECT_STREQ(copy.host, slot->host);
    EXPECT_STREQ(copy.password, slot->password);
}

TEST_F(SessionTable, ClearsOnlyTheSessionThatIsMeant)
{
    const long id = take("10.0.0.1", 80);
    clearSession(g_UserInfo[0], id - 1);
    UserInfo copy;
    ASSERT_TRUE(copySession(id, copy));
    EXPECT_STREQ(copy.host, "10.0.0.1");
    EXPECT_EQ(copy.port, 80);
    clearSession(g_UserInfo[0], id);
    EXPECT_FALSE(copySession(id, copy));
    EXPECT_STREQ(g_UserInfo[0].host, "");
    EXPECT_STREQ(g_UserInfo[0].label, "");
}

TEST_F(SessionTable, FreshSlotsAreEmptyButForWhatALoginFills)
{
    int something = 0;
    UserInfo copy;
    UserInfo* slot = takeSession("l", "10.0.0.1", 80, "u", "p", copy);
    slot->adminLock = 1;
    slot->liveDataUser = &something;
    clearSession(*slot, copy.nUserId);
    ASSERT_EQ(GetAvaiUserInfo("10.0.0.2", 80), slot);
    EXPECT_EQ(slot->adminLock, 0);
    EXPECT_EQ(slot->liveDataUser, nullptr);
    EXPECT_STREQ(slot->user, "");
}
