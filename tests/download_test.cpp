// Files on their way from the camera: the request on the wire, and what lands in the local file.
#include "TransferTest.h"

#include "NetManager/Download.h"

using kxsim::Fault;
using kxsim::httpReply;
using Kind = kxsim::Fault::Kind;

namespace
{

using Download = TransferTest;

constexpr std::size_t longestReply = 9'999'999;

} // namespace

TEST_F(Download, AsksForWhatItsKindNames)
{
    const std::string path = pathOf("file");
    const auto plain = [&](auto get) { return [&, get] { return get(&session, path.c_str(), reply, 1); }; };
    const auto custom = [&](unsigned kind, const char* name) {
        return [&, kind, name] { return DoDownloadCustomFile(&session, path.c_str(), reply, 1, kind, name); };
    };
    const auto plates = [&] {
        return DoDownloadLprAllLog(&session, path.c_str(), reply, 1, -2, "2024-05-01 08:00:00", "b");
    };
    const std::pair<std::function<int()>, std::string> cases[] = {
        {plain(DoDownloadLogFile), "dw=logdb"},
        {plain(DoDownloadConfigFile), "dw=cfg"},
        {custom(1, "/mnt/a b%.txt"), "dw=file&path=/mnt/a b%.txt"},
        {custom(2, ""), "dw=file&path="},
        {custom(0, "clip.avi"), "dw=sd&file=clip.avi"},
        {plates, "dw=lprlogcsv&type=-2&time_start=2024-05-01 08:00:00&time_end=b"},
    };
    for (const auto& [get, query] : cases) {
        camera.forgetRequests();
        camera.replaceReply("", fileReply("body"));
        EXPECT_EQ(outcomeOf(get), succeeds) << query;
        EXPECT_EQ(camera.requests().front().text,
                  "GET /dataloader.cgi?" + query +
                      " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(camera.port()) +
                      "\r\nConnection: Keep-Alive\r\nAuthorization: Basic YWRtaW46YWRtaW4=\r\n\r\n");
    }
    EXPECT_EQ(std::string(reply, sizeof reply), zeros(sizeof reply));
}

TEST_F(Download, CutsAnAddressAtItsBound)
{
    const std::string fixed = "http://127.0.0.1:" + std::to_string(camera.port());
    const std::string target = "/dataloader.cgi?dw=sd&file=" + std::string(2000, 'n');
    camera.replaceReply("", fileReply("body"));
    EXPECT_EQ(
        DoDownloadCustomFile(&session, pathOf("file").c_str(), reply, 1, 0, std::string(2000, 'n').c_str()),
        0);
    EXPECT_EQ(camera.requests().front().target, target.substr(0, 1022 - fixed.size()));
}

TEST_F(Download, WritesTheBodyAndAsManyZeros)
{
    for (const std::size_t size : {0U, 1U, 5000U, 3'000'001U}) {
        const std::string content = someBytes(size);
        camera.putFile("/var/log.db", content);
        EXPECT_EQ(download(pathOf("log")), succeeds) << size;
        EXPECT_TRUE(contentOf("log") == content + zeros(size)) << size;
    }
    camera.setFault({.kind = Kind::Slow, .bytes = 1, .pause = std::chrono::milliseconds(0)});
    camera.putFile("/var/log.db", "a\n\nb");
    EXPECT_EQ(download(pathOf("log")), succeeds); // with each byte in a piece of its own
    EXPECT_EQ(contentOf("log"), "a\n\nb" + zeros(4));
}

TEST_F(Download, TakesTheReplyApartAtTheFirstTwoLineFeeds)
{
    const std::string untouched = "before";
    const std::string filler(1005, 'f');
    const std::tuple<std::string, Outcome, std::string> cases[] = {
        {fileReply("body"), succeeds, "body" + zeros(4)},
        {fileReply("\n\n"), succeeds, "\n\n" + zeros(2)},
        {fileReply("b", "Content-Length: 1\n"), succeeds, "b" + zeros(1)},
        {fileReply("body", "Content-Length: 1\n"), succeeds, "body" + zeros(4)},
        {fileReply("body", "Content-Length: \n"), succeeds, "body" + zeros(4)},
        {fileReply("body", "content-length:5\n"), failsByNetwork, "body"},
        {fileReply("body", "Content-Length: 99999999999999999999999\n"), succeeds, "body" + zeros(4)},
        {fileReply("body", "Content-Length: 18446744073709551615\n"), failsByNetwork, "body"},
        {httpReply("a\n\nb"), succeeds, "b" + zeros(1)}, // that is where it ends, whatever the camera meant
        {fileReply("body", filler + "\n"), succeeds, "body" + zeros(4)},
        {filler + " 200 OK\n\nbody", succeeds, "body" + zeros(4)},
        {filler + "             200 OK\n\nbody", failsSilently, untouched}, // too far from the beginning
        {httpReply("body"), failsSilently, untouched},
        {"HTTP/1.1 200 OK\n", failsSilently, untouched},
        {"HTTP/1.1 404 Not Found\n\n200 OK", failsSilently, untouched},
        {"HTTP/1.1 401 Unauthorized\n\n", failsSilently, untouched},
        {"", failsByNetwork, untouched},
        {fileReply("half", "Content-Length: 1000\n" + filler + filler + "\n"), failsByNetwork, "half"},
        {fileReply("body", filler.substr(0, 989) + "\nContent-Length: 1000\n" + filler + "\n"), succeeds,
         "body" + zeros(4)}, // of which no more than "Content-Length: 1" is kept
    };
    for (const auto& [answer, outcome, left] : cases) {
        const std::string path = make("file", untouched);
        camera.replaceReply("", answer);
        EXPECT_EQ(download(path), outcome) << answer;
        EXPECT_EQ(contentOf("file"), left) << answer;
    }
    camera.replaceReply("", "HTTP/1.1 404 Not Found\n\n");
    EXPECT_EQ(download(pathOf("new")), failsSilently);
    EXPECT_FALSE(std::filesystem::exists(pathOf("new")));
}

TEST_F(Download, CutsAReplyThatIsTooLong)
{
    const std::string header = fileReply("", "Content-Length: 12000000\n");
    const std::string sent = header + someBytes(12'000'000);
    camera.replaceReply("", sent);
    EXPECT_EQ(download(pathOf("file")), succeeds);
    const std::string body = sent.substr(header.size(), longestReply - header.size());
    EXPECT_TRUE(contentOf("file") == body + zeros(body.size()));

    camera.setFault({.kind = Kind::Endless});
    EXPECT_EQ(download(pathOf("file")), succeeds);
    camera.setFault({.kind = Kind::Endless}); // a header, too, that never ends
    camera.replaceReply("", "HTTP/1.1 200 OK\n");
    EXPECT_EQ(download(pathOf("file")), failsSilently);
}

TEST_F(Download, EndsWithTheCodeOfEachFault)
{
    const std::string content = someBytes(50'000);
    camera.putFile("/var/log.db", content);
    const std::pair<Kind, Outcome> cases[] = {
        {Kind::Refuse, failsByNetwork},       {Kind::Unreachable, failsByNetwork},
        {Kind::SilentBefore, failsByNetwork}, {Kind::SilentAfter, failsByNetwork},
        {Kind::EmptyReply, failsByNetwork},   {Kind::Garbage, failsSilently},
        {Kind::Status, failsSilently},
    };
    g_timing = shortTiming();
    for (const auto& [kind, outcome] : cases) {
        camera.setFault({.kind = kind});
        EXPECT_EQ(download(pathOf("file")), outcome) << static_cast<int>(kind);
        EXPECT_FALSE(std::filesystem::exists(pathOf("file"))) << static_cast<int>(kind);
    }
    g_timing = {};
    camera.clearFault();
    EXPECT_EQ(download(pathOf("file")), succeeds);
}

TEST_F(Download, KeepsWhatCameBeforeTheCameraDied)
{
    const std::string content = someBytes(50'000);
    camera.putFile("/var/log.db", content);
    g_timing.stalledReply = std::chrono::milliseconds(50);
    const Fault faults[] = {{.kind = Kind::CutShort, .bytes = 30'000},
                            {.kind = Kind::Slow, .bytes = 30'000, .pause = std::chrono::hours(1)}};
    for (const Fault& fault : faults) {
        camera.setFault(fault);
        EXPECT_EQ(download(pathOf("file")), failsByNetwork);
        const std::string got = contentOf("file");
        EXPECT_GT(got.size(), 29'000U);
        EXPECT_TRUE(content.starts_with(got));
    }
}

TEST_F(Download, RefusesNullArgumentsWithoutACode)
{
    char path[] = "/dev/null";
    const auto get = [](UserInfo* who, const char* where, char* room, const char* name) {
        return outcomeOf([=] { return DoDownloadCustomFile(who, where, room, 1, 1, name); });
    };
    EXPECT_EQ(get(nullptr, path, reply, ""), failsSilently);
    EXPECT_EQ(get(&session, nullptr, reply, ""), failsSilently);
    EXPECT_EQ(get(&session, path, nullptr, ""), failsSilently);
    EXPECT_EQ(get(&session, path, reply, nullptr), failsSilently);
    EXPECT_EQ(DoDownloadLprAllLog(&session, path, reply, 1, 0, nullptr, ""), -1);
    EXPECT_EQ(DoDownloadLprAllLog(&session, path, reply, 1, 0, "", nullptr), -1);
    EXPECT_EQ(DownloadFile(nullptr, path, "", ""), 0);
    EXPECT_EQ(DownloadFile("http://127.0.0.1/", nullptr, "", ""), 0);
    EXPECT_EQ(g_nLastError, KX_ERROR_NONE);
    EXPECT_EQ(camera.connections(), 0U);
}
