// The table of sessions: which slot a login gets, and what is kept in it.
#include "SdkTest.h"

#include <cstring>
#include <limits>

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
        return takeSession("label", host, port, "user", "password", copy) ? copy.nUserId.load() : -1;
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
    endClosing(*beginClosing(first));
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
    ASSERT_TRUE(takeSession(text.c_str(), text.c_str(), 80, text.c_str(), text.c_str(), copy));
    EXPECT_EQ(std::strlen(g_UserInfo[0].label), 254U);
    EXPECT_EQ(std::strlen(copy.host), 62U);
    EXPECT_EQ(std::strlen(copy.user), 62U);
    EXPECT_EQ(std::strlen(copy.password), 30U);
}

TEST_F(SessionTable, CopiesWhatTheLatestLoginStored)
{
    UserInfo copy;
    ASSERT_TRUE(takeSession("first", "10.0.0.1", 80, "old", "old", copy));
    g_UserInfo[0].adminLock = 1;
    ASSERT_TRUE(takeSession("second", "10.0.0.1", 80, "new", "secret", copy));
    const long id = copy.nUserId;
    UserInfo again;
    ASSERT_TRUE(copySession(id, again));
    EXPECT_STREQ(g_UserInfo[0].label, "second");
    EXPECT_STREQ(again.host, "10.0.0.1");
    EXPECT_EQ(again.port, 80);
    EXPECT_STREQ(again.user, "new");
    EXPECT_STREQ(again.password, "secret");
    EXPECT_EQ(again.adminLock, 1);
    EXPECT_EQ(again.nUserId, id);
}

TEST_F(SessionTable, ASessionBeingClosedIsNobodys)
{
    const long id = take("10.0.0.1", 80);
    UserInfo* slot = beginClosing(id);
    ASSERT_EQ(slot, &g_UserInfo[0]);
    EXPECT_EQ(beginClosing(id), nullptr);
    UserInfo copy;
    EXPECT_FALSE(copySession(id, copy));
    EXPECT_EQ(GetUserInfo(0), &g_UserInfo[1]);
    EXPECT_EQ(take("10.0.0.1", 80), id + 1); // another slot
    EXPECT_EQ(GetUserInfo(std::numeric_limits<long>::min()), nullptr);
    endClosing(*slot);
    EXPECT_EQ(GetUserInfo(0), slot);
}

TEST_F(SessionTable, AFreeSlotIsEmptiedWhenItIsTaken)
{
    int something = 0;
    g_UserInfo[0].adminLock = 1;
    g_UserInfo[0].liveDataUser = &something;
    std::strcpy(g_UserInfo[0].user, "left over");
    ASSERT_NE(take("10.0.0.2", 80), -1);
    EXPECT_EQ(g_UserInfo[0].adminLock, 0);
    EXPECT_EQ(g_UserInfo[0].liveDataUser, nullptr);
    EXPECT_STREQ(g_UserInfo[0].user, "user");
}

TEST_F(SessionTable, TheEndOfAClosingSparesALaterSession)
{
    UserInfo* slot = beginClosing(take("10.0.0.1", 80));
    clearAllSessions(); // as a shutdown meanwhile does
    const long later = take("10.0.0.2", 80);
    endClosing(*slot);
    EXPECT_EQ(GetUserInfo(later), slot);
}
