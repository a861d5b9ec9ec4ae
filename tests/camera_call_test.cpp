// What all camera calls have in common: the checks, the bounds of a query, the reading of a reply.
#include "SdkTest.h"

#include <cstring>

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
    EXPECT_EQ(std::string(query), std::string(1000, 'x') + "&k=" + std::string(19, 'y'));
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
