// The request on the wire, and what becomes of the reply.
#include "SdkTest.h"

#include <csignal>
#include <cstring>
#include <memory>
#include <thread>

#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include "BareCamera.h"
#include "Core/UserInfo.h"
#include "NetManager/Exchange.h"
#include "NetManager/RequestChannel.h"
#include "NetManager/Socket.h"

using kxsim::Fault;
using kxsim::httpReply;

namespace
{

class RequestChannel : public SdkTest
{
protected:
    RequestChannel()
    {
        std::strcpy(session.host, camera.host().c_str());
        session.port = camera.port();
        std::strcpy(session.user, "admin");
        std::strcpy(session.password, "admin");
    }

    int request(const char* query, signed char admin = 0)
    {
        return DoRequest(&session, query, reply, sizeof reply, admin);
    }

    kxsim::SimCamera camera;
    UserInfo session;
    char reply[1024] = {};
};

} // namespace

TEST_F(RequestChannel, SendsTheTemplateOfTheQuerysKind)
{
    const std::string rest = " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(camera.port()) +
                             "\r\nConnection: Keep-Alive\r\nAuthorization: Basic YWRtaW46YWRtaW4=\r\n\r\n";
    const std::tuple<const char*, signed char, const char*> cases[] = {
        {"&paratest=ftpip", 0, "/vb.htm?language=ie&paratest=ftpip"},
        {"page=video", 0, "/vb.htm?page=video"},
        {"", 0, "/vb.htm?action=get.network.general&user=admin&pwd=admin&"},
        {"action=get.sqa&format=inf", 1, "/cgi-bin/admin/admin.cgi?action=get.sqa&format=inf"},
        {"&x=1", 3, "/cgi-bin/admin/admin.cgi?&x=1"},
        {"", 2, "/cgi-bin/admin/admin.cgi?"},
        {"&ftppath=a b  c", 0, "/vb.htm?language=ie&ftppath=a%20b%20%20c"},
        {"&x=50%#\xC3\xA4%41", 0, "/vb.htm?language=ie&x=50%#\xC3\xA4%41"},
    };
    for (const auto& [query, admin, target] : cases) {
        camera.forgetRequests();
        request(query, admin);
        ASSERT_EQ(camera.requests().size(), 1U) << target;
        EXPECT_EQ(camera.requests().front().text, std::string("GET ") + target + rest);
    }
}

TEST_F(RequestChannel, SendsCredentialsWithAnEmptyPassword)
{
    session.password[0] = '\0';
    EXPECT_EQ(request("&paratest=ftpip"), -1);
    EXPECT_EQ(g_nLastError, KX_ERROR_UNAUTHORISED);
    EXPECT_THAT(camera.requests().front().text, testing::HasSubstr("Authorization: Basic YWRtaW46\r\n"));
}

TEST_F(RequestChannel, EscapesTheWholeLoginPath)
{
    std::strcpy(session.user, "a b");
    request("");
    EXPECT_EQ(camera.requests().front().target, "/vb.htm?action=get.network.general&user=a%20b&pwd=admin&");
}

TEST_F(RequestChannel, MapsStatusTextsAnywhereInTheReply)
{
    const std::tuple<std::string, int, long> cases[] = {
        {httpReply("", "400 Bad Request"), -1, KX_ERROR_NETWORK},
        {httpReply("", "401 Unauthorized"), -1, KX_ERROR_UNAUTHORISED},
        {httpReply("", "404 Not Found"), -1, KX_ERROR_NOT_FOUND},
        {httpReply("", "502 Bad Gateway"), -1, KX_ERROR_BAD_GATEWAY},
        {httpReply("", "403 Forbidden"), 0, KX_ERROR_NONE},
        {httpReply("", "500 Internal Server Error"), 0, KX_ERROR_NONE},
        {httpReply("OK note=a page said 404 Not Found\n"), -1, KX_ERROR_NOT_FOUND},
        {httpReply("502 Bad Gateway 404 Not Found 401 Unauthorized"), -1, KX_ERROR_UNAUTHORISED},
        {std::string("OK\0 404 Not Found", 17), 0, KX_ERROR_NONE},
    };
    for (const auto& [answer, result, error] : cases) {
        g_nLastError = KX_ERROR_NONE;
        camera.replaceReply("&x", answer);
        EXPECT_EQ(request("&x"), result) << answer;
        EXPECT_EQ(g_nLastError, error) << answer;
    }
}

TEST_F(RequestChannel, FillsAllButTheLastByteOfTheReply)
{
    for (const std::size_t length : {1U, 98U, 99U, 100U, 101U, 5000U, 20000U}) {
        std::string sent(length, 'r');
        sent[length / 2] = '\0'; // copied like any other byte
        char buffer[100];
        std::memset(buffer, '#', sizeof buffer);
        camera.replaceReply("&x", sent);
        ASSERT_EQ(DoRequest(&session, "&x", buffer, sizeof buffer, 0), 0) << length;
        std::string expected = sent.substr(0, 99);
        expected.resize(99, '\0');
        EXPECT_EQ(std::string(buffer, 99), expected) << length;
        EXPECT_EQ(buffer[99], '#');
    }
}

TEST_F(RequestChannel, ReadsASlowReplyToItsEnd)
{
    char whole[sizeof reply];
    ASSERT_EQ(request("&paratest=ftpip"), 0);
    std::memcpy(whole, reply, sizeof reply);
    camera.setFault({.kind = Fault::Kind::Slow, .bytes = 7, .pause = std::chrono::milliseconds(1)});
    ASSERT_EQ(request("&paratest=ftpip"), 0);
    EXPECT_STREQ(reply, whole);
}

TEST_F(RequestChannel, SignalsForTheApplicationDoNotDisturbIt)
{
    struct sigaction interrupt = {};
    interrupt.sa_handler = [](int) {}; // without SA_RESTART: every system call is cut short
    sigaction(SIGALRM, &interrupt, nullptr);
    ualarm(2000, 2000);
    camera.setFault({.kind = Fault::Kind::Slow, .bytes = 20, .pause = std::chrono::milliseconds(5)});
    EXPECT_EQ(request("&paratest=mainrtspport"), 0);
    EXPECT_THAT(reply, testing::HasSubstr("OK mainrtspport=554"));

    g_timing.stalledReply = std::chrono::milliseconds(50); // which the signals must not begin anew for ever
    camera.setFault({.kind = Fault::Kind::Slow, .bytes = 20, .pause = std::chrono::seconds(30)});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(request("&paratest=mainrtspport"), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    ualarm(0, 0);
}

TEST_F(RequestChannel, TouchesTheReplyOnlyWhenItComesToReading)
{
    g_timing = shortTiming();
    const std::pair<Fault::Kind, const char*> cases[] = {
        {Fault::Kind::Refuse, "before"}, {Fault::Kind::SilentAfter, "before"}, {Fault::Kind::EmptyReply, ""}};
    for (const auto& [kind, left] : cases) {
        std::strcpy(reply, "before");
        camera.setFault({.kind = kind});
        EXPECT_EQ(request("&x"), -1);
        EXPECT_STREQ(reply, left);
    }
}

TEST_F(RequestChannel, RefusesNullArgumentsWithoutACode)
{
    EXPECT_EQ(DoRequest(nullptr, "&x", reply, sizeof reply, 0), -1);
    EXPECT_EQ(DoRequest(&session, nullptr, reply, sizeof reply, 0), -1);
    EXPECT_EQ(DoRequest(&session, "&x", nullptr, sizeof reply, 0), -1);
    EXPECT_EQ(DoRequest(&session, "&x", reply, 0, 0), -1);
    EXPECT_EQ(g_nLastError, KX_ERROR_NONE);
    EXPECT_EQ(request("&x"), 0);
    EXPECT_EQ(camera.connections(), 2U); // this one's: the probe's and the request's
}

TEST_F(RequestChannel, CutsARequestAtTheBoundOfItsKind)
{
    g_timing.firstReply = std::chrono::milliseconds(300);
    const std::pair<signed char, std::size_t> cases[] = {{0, 20478}, {1, 20479}};
    for (const auto& [admin, longest] : cases) {
        camera.forgetRequests();
        request("x", admin);
        const std::size_t room = longest - camera.requests().back().text.size();
        request(std::string(1 + room, 'x').c_str(), admin);
        EXPECT_EQ(camera.requests().back().text.size(), longest);
        EXPECT_EQ(request(std::string(2 + room, 'x').c_str(), admin), -1); // loses its last line feed
        EXPECT_EQ(g_nLastError, KX_ERROR_NETWORK);
    }
    camera.forgetRequests();
    request(std::string(20481, 'x').c_str(), 1); // too long to be escaped: left out
    EXPECT_EQ(camera.requests().back().target, "/cgi-bin/admin/admin.cgi?");
}

TEST_F(RequestChannel, ConnectsWithinItsTime)
{
    camera.setFault({.kind = Fault::Kind::Unreachable}); // past the probe, which would tell it first
    std::atomic<int> failedReads{0};
    const ExchangeRules rules{.connectWait = std::chrono::milliseconds(50),
                              .replyWait = std::chrono::seconds(20),
                              .nothingReceived = KX_ERROR_NONE,
                              .refusals = {},
                              .failedReads = failedReads};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(exchange(*resolveIpv4(session.host, session.port), "GET", reply, sizeof reply, rules), -1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(g_nLastError, KX_ERROR_NETWORK);
}

TEST_F(RequestChannel, WorksWithDescriptorsAboveAThousand)
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    if (limit.rlim_max < 2048 || setrlimit(RLIMIT_NOFILE, &limit) != 0)
        GTEST_SKIP() << "runs where a process may open 2048 descriptors";
    std::vector<std::unique_ptr<FileDescriptor>> taken;
    while (taken.empty() || taken.back()->get() < 1100)
        taken.push_back(std::make_unique<FileDescriptor>(dup(STDIN_FILENO)));
    EXPECT_EQ(request("&paratest=ftpip"), 0);
}

TEST_F(RequestChannel, SurvivesUrgentDataAndResets)
{
    g_timing.firstReply = std::chrono::milliseconds(500);
    const std::tuple<const char*, int, int> cases[] = {{"!", MSG_OOB, -1}, {"", 0, -1}, {"abc", 0, 0}};
    for (const auto& [sent, flags, result] : cases) {
        const BareCamera rude([sent = std::string(sent), flags = flags](const FileDescriptor& connection) {
            char byte = 0;
            recv(connection.get(), &byte, 1, MSG_PEEK); // left unread, the request makes the close a reset
            send(connection.get(), sent.data(), sent.size(), flags);
            std::this_thread::sleep_for(std::chrono::milliseconds(20)); // the bytes are read before it
        });
        session.port = rude.port();
        std::memset(reply, 0, sizeof reply);
        EXPECT_EQ(request("&x"), result);
        EXPECT_STREQ(reply, result == 0 ? sent : "");
    }
}

TEST_F(RequestChannel, ProbeCountsARefusalAsReachable)
{
    g_timing = shortTiming();
    EXPECT_EQ(IsHostConnect("127.0.0.1", camera.port()), 1);
    EXPECT_EQ(IsHostConnect("localhost", camera.port()), 1);
    camera.setFault({.kind = Fault::Kind::Refuse});
    EXPECT_EQ(IsHostConnect("127.0.0.1", camera.port()), 1);
    EXPECT_EQ(IsHostConnect("::1", camera.port()), 0); // no IPv4 address
    EXPECT_EQ(IsHostConnect("", 80), 0);
    EXPECT_EQ(g_nLastError, KX_ERROR_NONE);
}

TEST_F(RequestChannel, ProbeSaysWhyItFailed)
{
    g_timing = shortTiming();
    testing::internal::CaptureStdout();
    EXPECT_EQ(IsHostConnect(nullptr, 80), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "KxOutputDebugInfo: [KxLog]:Fun(IpcNet::IsHostConnect)->{sHost = NULL} \n");
    camera.setFault({.kind = Fault::Kind::Unreachable});
    testing::internal::CaptureStdout();
    EXPECT_EQ(IsHostConnect("127.0.0.1", camera.port()), 0);
    EXPECT_THAT(
        testing::internal::GetCapturedStdout(),
        testing::EndsWith("{select} | err=Operation now in progress=================================\n"));
}
