// The configuration export, and the fetchers that hand a reply back.
#include "TransferTest.h"

using kxsim::Fault;
using kxsim::httpReply;
using Kind = kxsim::Fault::Kind;
using testing::HasSubstr;

namespace
{

using Export = TransferTest;
using Fetch = TransferTest;
using Fetcher = int (*)(UserInfo* session, const char* path, char* reply, int replySize);

std::string requestFor(const std::string& target, int port)
{
    return "GET " + target + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
           "\r\nConnection: Keep-Alive\r\nAuthorization: Basic YWRtaW46YWRtaW4=\r\n\r\n";
}

std::string named(const std::string& name, const std::string& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Disposition: attachment; filename=\"" + name + "\"\r\n\r\n" + body;
}

} // namespace

TEST_F(Export, WritesTheConfigurationUnderTheCamerasNameAndAsManyZeros)
{
    std::memset(reply, '#', sizeof reply);
    testing::internal::CaptureStdout();
    EXPECT_EQ(exportConfig(directory), succeeds);
    const std::string body = std::string(reply).substr(std::string(reply).find("[param]"));
    EXPECT_THAT(body, HasSubstr("\nftpipport=21\n"));
    EXPECT_EQ(contentOf("config.ini"), body + zeros(body.size()));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ssss ==> " + std::to_string(2 * body.size()) + ", " + directory + "/config.ini \n");
    EXPECT_EQ(camera.requests().front().text, requestFor("/dataloader.cgi?dw=cfg", camera.port()));
}

TEST_F(Export, TakesOnlyTheNameOfTheNamedFile)
{
    const std::string longName(300, 'n');
    const struct
    {
        std::string reply;
        Outcome outcome;
        std::string file;
        std::string left;
    } cases[] = {
        {named("a.ini", "[param]\nx"), succeeds, "a.ini", "[param]\nx" + zeros(9)},
        {named("../../etc/b.ini", "[param]"), succeeds, "b.ini", "[param]" + zeros(7)},
        {named("%s%n.ini", "[param]"), succeeds, "%s%n.ini", "[param]" + zeros(7)},
        {named("c.ini", std::string("[param]\0y", 9)), succeeds, "c.ini",
         std::string("[param]\0y", 9) + zeros(9)},
        {"200 OK filename=\"d.ini[param][param]", succeeds, "d.ini", "[param][param]" + zeros(14)},
        {named("", "[param]"), failsSilently, "", ""},
        {named("..", "[param]"), failsSilently, "", ""},
        {named("e/", "[param]"), failsSilently, "", ""},
        {named(longName, "[param]"), failsSilently, "", ""}, // too long for a file system
        {named("g.ini", "nothing"), failsSilently, "", ""},
        {"HTTP/1.1 200 OK\n\n[param]\nfilename=\"h.ini\"", failsSilently, "", ""},
        {"HTTP/1.1 401 Unauthorized\nfilename=\"i.ini\"\n\n[param] 200 OK", failsSilently, "", ""},
        {"HTTP/1.1 200 OK\nContent-Length: 9\nfilename=\"j.ini\"\n\n[param]", failsByNetwork, "", ""},
        {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\nfilename=\"k.ini\"\r\n\r\n[param]x", failsByNetwork, "",
         ""},
        {"", failsByNetwork, "", ""},
    };
    for (const auto& row : cases) {
        std::filesystem::create_directory(pathOf("into"));
        camera.replaceReply("", row.reply);
        EXPECT_EQ(exportConfig(pathOf("into")), row.outcome) << row.reply;
        if (row.outcome == succeeds) {
            EXPECT_EQ(contentOf("into/" + row.file), row.left);
        } else {
            EXPECT_TRUE(std::filesystem::is_empty(pathOf("into"))) << row.reply;
        }
        std::filesystem::remove_all(pathOf("into"));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory), {}), 0);
}

TEST_F(Export, CutsTheReplyAtTheBuffersSize)
{
    const std::string whole = named("a.ini", "[param]" + std::string(1000, 'x'));
    const std::size_t headerSize = whole.find("[param]");
    std::memset(reply, '#', sizeof reply);
    camera.replaceReply("", whole);
    EXPECT_EQ(DoExportConfig(&session, directory.c_str(), reply, 200), 0);
    EXPECT_EQ(contentOf("a.ini"), whole.substr(headerSize, 199 - headerSize) + zeros(199 - headerSize));
    EXPECT_EQ(std::string(reply, 201), whole.substr(0, 199) + '\0' + '#');
}

TEST_F(Export, LeavesPathsThatAreTooLongAlone)
{
    std::string deep = directory;
    while (deep.size() < 480)
        deep += "/" + std::string(20, 'd');
    deep += "/" + std::string(508 - deep.size(), 'd'); // room for a name of one character
    std::filesystem::create_directories(deep + "e");
    std::filesystem::create_directories(deep);
    EXPECT_EQ(exportConfig(deep), succeeds);
    EXPECT_TRUE(std::filesystem::exists(deep + "/c"));
    EXPECT_EQ(exportConfig(deep + "e"), failsSilently);
}

TEST_F(Export, EndsWithTheCodeOfEachFault)
{
    const std::pair<Fault, Outcome> cases[] = {
        {{.kind = Kind::Refuse}, failsByNetwork},
        {{.kind = Kind::Unreachable}, failsByNetwork},
        {{.kind = Kind::SilentBefore}, failsByNetwork},
        {{.kind = Kind::SilentAfter}, failsByNetwork},
        {{.kind = Kind::EmptyReply}, failsByNetwork},
        {{.kind = Kind::Garbage}, failsSilently},
        {{.kind = Kind::Status}, failsSilently},
        {{.kind = Kind::CutShort, .bytes = 300}, failsByNetwork},
    };
    g_timing = shortTiming();
    for (const auto& [fault, outcome] : cases) {
        camera.setFault(fault);
        EXPECT_EQ(exportConfig(directory), outcome) << static_cast<int>(fault.kind);
    }
    EXPECT_TRUE(std::filesystem::is_empty(directory));
}

TEST_F(Fetch, SendsThePathWithItsBlanksEncoded)
{
    for (const Fetcher fetch : {DoDownloadLprPicture, DoCustomUrlRequest}) {
        camera.forgetRequests();
        camera.replaceReply("", httpReply("body"));
        EXPECT_EQ(fetch(&session, "/snapshot.cgi?a=b c&d=%", reply, sizeof reply), 0);
        EXPECT_EQ(camera.requests().front().text, requestFor("/snapshot.cgi?a=b%20c&d=%", camera.port()));
    }
}

TEST_F(Fetch, HandsBackTheReplyOrTheBodyAlone)
{
    const std::string picture = std::string("\xFF\xD8\0", 3) + someBytes(300);
    const struct
    {
        std::string reply;
        Outcome whole;
        Outcome bodyOnly;
        std::string body;
    } cases[] = {
        {httpReply(picture), succeeds, succeeds, picture},
        {httpReply("a\r\n\r\nb"), succeeds, succeeds, "a\r\n\r\nb"},
        {httpReply(""), succeeds, failsByNetwork, ""},
        {"no header at all", succeeds, failsByNetwork, ""},
        {httpReply("error 404 Not Found"),
         {-1, KX_ERROR_NOT_FOUND},
         {-1, KX_ERROR_NOT_FOUND},
         "error 404 Not Found"},
        {httpReply("x", "404 Not Found"), {-1, KX_ERROR_NOT_FOUND}, succeeds, "x"},
        {httpReply("502 Bad Gateway 401 Unauthorized"),
         {-1, KX_ERROR_UNAUTHORISED},
         {-1, KX_ERROR_UNAUTHORISED},
         "502 Bad Gateway 401 Unauthorized"},
        {httpReply("400 Bad Request"), failsByNetwork, failsByNetwork, "400 Bad Request"},
        {httpReply(std::string("x\0 502 Bad Gateway", 18)), succeeds, succeeds,
         std::string("x\0 502 Bad Gateway", 18)},
        {"", failsByNetwork, failsByNetwork, ""},
    };
    for (const auto& row : cases) {
        for (const Fetcher fetch : {DoDownloadLprPicture, DoCustomUrlRequest}) {
            const bool whole = fetch == DoDownloadLprPicture;
            std::string kept = whole ? row.reply : row.body;
            kept.resize(sizeof reply);
            std::memset(reply, '#', sizeof reply);
            camera.replaceReply("", row.reply);
            EXPECT_EQ(outcomeOf([&] { return fetch(&session, "/x", reply, sizeof reply); }),
                      whole ? row.whole : row.bodyOnly)
                << row.reply;
            EXPECT_TRUE(std::string(reply, sizeof reply) == kept) << row.reply;
        }
    }
}

TEST_F(Fetch, KeepsWhatFitsTheBuffer)
{
    const std::string whole = httpReply(std::string(100'000, 'x'));
    const std::size_t headerSize = whole.find("xxx");
    camera.replaceReply("", whole, 2);
    EXPECT_EQ(DoDownloadLprPicture(&session, "/x", reply, 1000), 0);
    EXPECT_EQ(std::string(reply, 1000), whole.substr(0, 999) + '\0');
    EXPECT_EQ(DoCustomUrlRequest(&session, "/x", reply, 1000), 0);
    EXPECT_EQ(std::string(reply), std::string(999 - headerSize, 'x'));
}

TEST_F(Fetch, EndsEachFaultInItsTime)
{
    using std::chrono::milliseconds;
    for (const Fetcher fetch : {DoDownloadLprPicture, DoCustomUrlRequest}) {
        for (auto limit : {&Timing::probe, &Timing::firstReply}) {
            g_timing.probe = g_timing.connect = g_timing.firstReply = g_timing.stalledReply =
                milliseconds(20'000);
            g_timing.*limit = milliseconds(30);
            camera.setFault({.kind = limit == &Timing::probe ? Kind::Unreachable : Kind::SilentAfter});
            const auto start = std::chrono::steady_clock::now();
            EXPECT_EQ(outcomeOf([&] { return fetch(&session, "/x", reply, sizeof reply); }), failsByNetwork);
            EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(15'000));
        }
    }
}

TEST_F(Fetch, ClearsTheBufferBeforeAnythingElseButForNullArguments)
{
    camera.setFault({.kind = Kind::Unreachable});
    g_timing = shortTiming();
    for (const Fetcher fetch : {DoExportConfig, DoDownloadLprPicture, DoCustomUrlRequest}) {
        const auto outcome = [&](UserInfo* who, const char* path, char* room, int size) {
            return outcomeOf([&] { return fetch(who, path, room, size); });
        };
        std::memset(reply, '#', sizeof reply);
        EXPECT_EQ(outcome(nullptr, "/x", reply, 9), failsSilently);
        EXPECT_EQ(outcome(&session, nullptr, reply, 9), failsSilently);
        EXPECT_EQ(outcome(&session, "/x", nullptr, 9), failsSilently);
        EXPECT_EQ(outcome(&session, "/x", reply, 0), failsSilently);
        EXPECT_EQ(reply[0], '#');
        EXPECT_EQ(outcome(&session, "/x", reply, 9), failsByNetwork);
        EXPECT_EQ(std::string(reply, 10), zeros(9) + '#');
    }
}
