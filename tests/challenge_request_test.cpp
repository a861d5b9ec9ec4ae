// The requests of the account management on the wire, what becomes of their replies, and the digest.
#include "SdkTest.h"

#include <cstring>
#include <utility>

#include "Core/UserInfo.h"
#include "NetManager/Challenge.h"
#include "NetManager/Md5.h"

using kxsim::Fault;
using kxsim::httpReply;

namespace
{

using Request = int (*)(UserInfo* session, const char* query, char* reply, int replySize);

class ChallengeRequest : public SdkTest
{
protected:
    ChallengeRequest()
    {
        std::strcpy(session.host, camera.host().c_str());
        session.port = camera.port();
        std::strcpy(session.user, "admin");
        std::strcpy(session.password, "admin");
    }

    int run(Request request, const std::string& query)
    {
        return request(&session, query.c_str(), reply, sizeof reply);
    }

    kxsim::SimCamera camera;
    UserInfo session;
    char reply[256] = {};
};

constexpr std::pair<Request, const char*> requests[] = {{DoRequestForChallenge, "/challenge?PublicKeytool="},
                                                        {DoRequestForPassword, "/vb.htm?language=ie"}};

} // namespace

TEST_F(ChallengeRequest, SendsItsTemplateWhateverTheQueryBeginsWith)
{
    const std::string rest = " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(camera.port()) +
                             "\r\nConnection: Keep-Alive\r\nAuthorization: Basic YWRtaW46YWRtaW4=\r\n\r\n";
    const std::pair<const char*, const char*> queries[] = {
        {"&x=1", "&x=1"}, {"page=a b", "page=a%20b"}, {"%+/#&=", "%+/#&="}, {"", ""}};
    for (const auto& [request, target] : requests) {
        for (const auto& [query, sent] : queries) {
            camera.forgetRequests();
            run(request, query);
            ASSERT_EQ(camera.requests().size(), 1U) << target << query;
            EXPECT_EQ(camera.requests().front().text, std::string("GET ") + target + sent + rest);
        }
    }
}

TEST_F(ChallengeRequest, OnlyThePasswordRequestProbesFirst)
{
    EXPECT_EQ(run(DoRequestForChallenge, "key"), 0);
    EXPECT_EQ(camera.connections(), 1U);
    EXPECT_EQ(run(DoRequestForPassword, "&x"), 0);
    EXPECT_EQ(camera.connections(), 3U);
}

TEST_F(ChallengeRequest, MapsStatusTextsAnywhereInTheReply)
{
    const std::tuple<std::string, long, long> cases[] = {
        {httpReply("", "400 Bad Request"), KX_ERROR_NETWORK, KX_ERROR_NETWORK},
        {httpReply("", "401 Unauthorized"), KX_ERROR_UNAUTHORISED, KX_ERROR_UNAUTHORISED},
        {httpReply("", "403 Forbidden"), KX_ERROR_FORBIDDEN, KX_ERROR_FORBIDDEN},
        {httpReply("", "404 Not Found"), KX_ERROR_NOT_FOUND, KX_ERROR_NOT_FOUND},
        {httpReply("", "502 Bad Gateway"), KX_ERROR_BAD_GATEWAY, KX_ERROR_BAD_GATEWAY},
        {httpReply("404 Not Found 403 Forbidden"), KX_ERROR_FORBIDDEN, KX_ERROR_FORBIDDEN},
        {httpReply("nothing"), KX_ERROR_NONE, KX_ERROR_NONE}, // the status line holds an "OK"
        {httpReply("nothing", "204 No Content"), KX_ERROR_NONE, KX_ERROR_BUSY},
        {std::string("HTTP\0OK", 7), KX_ERROR_NONE, KX_ERROR_BUSY},
    };
    for (const auto& [answer, error, challengeError] : cases) {
        for (const auto& [request, target] : requests) {
            SCOPED_TRACE(target + answer);
            const long expected = request == DoRequestForChallenge ? challengeError : error;
            g_nLastError = KX_ERROR_NONE;
            camera.replaceReply("", answer);
            EXPECT_EQ(run(request, "key"), expected == KX_ERROR_NONE ? 0 : -1);
            EXPECT_EQ(g_nLastError, expected);
        }
    }
}

// The codes of all faults: hostile_camera_test.cpp.
TEST_F(ChallengeRequest, FailsWithinItsOwnTimesAndLeavesTheReplyAlone)
{
    EXPECT_EQ(Timing{}.accountConnect, std::chrono::seconds(5));
    EXPECT_EQ(Timing{}.accountReply, std::chrono::seconds(5));
    g_timing.accountConnect = g_timing.accountReply = g_timing.probe = std::chrono::milliseconds(60);
    for (const auto kind : {Fault::Kind::Unreachable, Fault::Kind::SilentBefore, Fault::Kind::SilentAfter}) {
        camera.setFault({.kind = kind});
        for (const auto& [request, target] : requests) {
            SCOPED_TRACE(testing::Message() << target << " under fault " << static_cast<int>(kind));
            std::strcpy(reply, "before");
            const auto start = std::chrono::steady_clock::now();
            EXPECT_EQ(run(request, "key"), -1);
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
            EXPECT_STREQ(reply, "before");
        }
    }
}

TEST_F(ChallengeRequest, TakesAReplyThatComesInPiecesToItsEnd)
{
    const std::string whole = httpReply("OK challenge\nkey=" + std::string(60, 'k') + "\n");
    camera.setFault({.kind = Fault::Kind::Slow, .bytes = 40, .pause = std::chrono::milliseconds(5)});
    for (const auto& [request, target] : requests) {
        camera.replaceReply("", whole);
        EXPECT_EQ(run(request, "key"), 0);
        EXPECT_EQ(reply, whole) << target;
    }
}

TEST_F(ChallengeRequest, EndsTheReplyAsATextDoes)
{
    const std::pair<std::string, std::size_t> cases[] = {{"OK", 2},
                                                         {std::string("OK 1\0 OK 2", 10), 4},
                                                         {"OK" + std::string(96, 'r'), 98},
                                                         {"OK" + std::string(97, 'r'), 99},
                                                         {"OK" + std::string(5000, 'r'), 99}};
    for (const auto& [sent, kept] : cases) {
        for (const auto& [request, target] : requests) {
            char buffer[100];
            std::memset(buffer, '#', sizeof buffer);
            camera.replaceReply("", sent);
            EXPECT_EQ(request(&session, "key", buffer, sizeof buffer), 0);
            EXPECT_EQ(std::string(buffer, sizeof buffer),
                      sent.substr(0, kept) + std::string(sizeof buffer - kept, '\0'))
                << target;
        }
    }
}

TEST_F(ChallengeRequest, CutsARequestAtItsBound)
{
    g_timing.accountReply = std::chrono::milliseconds(300);
    for (const auto& [request, target] : requests) {
        camera.forgetRequests();
        run(request, "x");
        const std::size_t room = 20479 - camera.requests().back().text.size();
        run(request, std::string(1 + room, 'x'));
        EXPECT_EQ(camera.requests().back().text.size(), 20479U) << target;
        EXPECT_EQ(run(request, std::string(2 + room, 'x')), -1); // loses its last line feed
        run(request, std::string(20481, 'x'));                   // too long to be escaped: left out
        EXPECT_EQ(camera.requests().back().target, target);
    }
}

TEST_F(ChallengeRequest, RefusesNullArgumentsWithoutACode)
{
    for (const auto& [request, target] : requests) {
        EXPECT_EQ(request(nullptr, "x", reply, sizeof reply), -1);
        EXPECT_EQ(request(&session, nullptr, reply, sizeof reply), -1);
        EXPECT_EQ(request(&session, "x", nullptr, sizeof reply), -1);
        EXPECT_EQ(request(&session, "x", reply, 0), -1);
    }
    EXPECT_EQ(g_nLastError, KX_ERROR_NONE);
    EXPECT_EQ(camera.connections(), 0U);
}

TEST(Md5Digest, IsThirtyTwoLowerCaseDigitsAndNothingMore)
{
    const std::pair<std::string, const char*> cases[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"}};
    for (const auto& [text, digest] : cases) {
        unsigned char out[33];
        std::memset(out, '#', sizeof out);
        md5_encry_data(text.c_str(), out);
        EXPECT_EQ(std::string(out, out + sizeof out), digest + std::string("#")) << text;
    }
}
