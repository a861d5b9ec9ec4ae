// Files on their way to the camera: the form on the wire, and what becomes of the camera's answer.
#include "TransferTest.h"

#include <sys/stat.h>

#include "NetManager/TransferUrl.h"
#include "NetManager/Upload.h"

using kxsim::Fault;
using kxsim::httpReply;
using Kind = kxsim::Fault::Kind;

namespace
{

using Upload = TransferTest;

std::string partHeader(const std::string& name)
{
    return "-----------------------------7dc3a91310a6e\r\n"
           "Content-Disposition: form-data; name=\"file\"; filename=\"" +
           name + "\"\r\nContent-Type: application/octet-stream\r\n\r\n";
}

const std::string closing = "\r\n-----------------------------7dc3a91310a6e--\r\n";

} // namespace

TEST_F(Upload, SendsTheFormToTheEndpointOfItsKind)
{
    const std::string content = someBytes(100'000);
    const std::string path = make("some file.bin", content);
    const std::string body = partHeader("some file.bin") + content + closing;
    const auto modal = [&](auto send, int mode) {
        return [&, send, mode] { return send(&session, path.c_str(), reply, 1, mode); };
    };
    const auto plain = [&](auto send) {
        return [&, send] { return send(&session, path.c_str(), reply, 1); };
    };
    const std::pair<std::function<int()>, const char*> cases[] = {
        {plain(DoFirmwareUpdate), "/update.cgi"},
        {plain(DoUploadFileToSdCard), "/dataloader.cgi?up=sd"},
        {plain(DoUploadLprlist), "/dataloader.cgi?up=lprlist"},
        {modal(DoUploadOemFile, 1), "/dataloader.cgi?up=oem"},
        {modal(DoUploadOemFile, 2), "/dataloader.cgi?up=oem"},
        {modal(DoUploadOemFile, 0), "/uploadoem.cgi"},
        {modal(DoUploadOemFile, 3), "/uploadoem.cgi"},
        {modal(DoUploadCfgFile, 1), "/dataloader.cgi?up=cfg"},
        {modal(DoUploadCfgFile, 2), "/dataloader.cgi?up=cfg"},
        {modal(DoUploadCfgFile, 0), "/uploadpara.cgi"},
        {modal(DoUploadCfgFile, -1), "/uploadpara.cgi"},
    };
    for (const auto& [send, target] : cases) {
        camera.forgetRequests();
        camera.replaceReply("", httpReply("OK upload\n"));
        EXPECT_EQ(outcomeOf(send), succeeds) << target;
        ASSERT_EQ(camera.requests().size(), 1U) << target;
        const kxsim::Request request = camera.requests().front();
        EXPECT_EQ(request.text.substr(0, request.text.find("Accept: ")),
                  "POST " + std::string(target) + " HTTP/1.1 \r\nAuthorization: Basic YWRtaW46YWRtaW4=\r\n");
        EXPECT_THAT(request.text, testing::ContainsRegex("\r\nAccept: image/[^\r]*, \\*/\\*\r\n"));
        EXPECT_THAT(
            request.text,
            testing::EndsWith(
                "*/*\r\nAccept-Language: zh-cn\r\n"
                "Content-Type: multipart/form-data; boundary=---------------------------7dc3a91310a6e\r\n"
                "Accept-Encoding: gzip, deflate\r\nContent-Length: " +
                std::to_string(body.size()) + "\r\n\r\n"));
        EXPECT_TRUE(request.body == body) << target;
    }
    EXPECT_EQ(std::string(reply, sizeof reply), zeros(sizeof reply));
}

TEST_F(Upload, ReachesTheCameraWhole)
{
    for (const std::size_t size : {0U, 1U, 16384U, 3'000'001U}) {
        const std::string content = someBytes(size);
        EXPECT_EQ(upload(make("clip.avi", content)), succeeds) << size;
        EXPECT_TRUE(camera.file("/sd/clip.avi") == content) << size;
    }
}

TEST_F(Upload, CutsAFormWhoseFileNameIsTooLongAndCountsWhatItSends)
{
    const std::size_t longestName = 254 - partHeader("").size();
    const std::string longest(longestName, 'n');
    EXPECT_EQ(upload(make(longest, "content")), succeeds);
    EXPECT_EQ(camera.file("/sd/" + longest), "content");

    const std::string tooLong(longestName + 1, 'n');
    EXPECT_EQ(upload(make(tooLong, "content")), failsSilently); // the camera finds no form in it
    EXPECT_EQ(camera.requests().back().body, partHeader(tooLong).substr(0, 254) + "content" + closing);
}

TEST_F(Upload, SucceedsWhenTheAnswerSaysSo)
{
    const std::string path = make("file", "content");
    const std::pair<std::string, Outcome> cases[] = {
        {httpReply(""), succeeds},
        {std::string("\0\xFF 200 OK", 9), succeeds},
        {std::string(4090, 'x') + "200 OK", succeeds},
        {std::string(4091, 'x') + "200 OK", failsSilently}, // beyond what is kept of an answer
        {httpReply("5 mismatch"), failsSilently},
        {httpReply("", "401 Unauthorized"), failsSilently},
        {httpReply("", "404 Not Found"), failsSilently},
        {"200", failsSilently},
        {"", failsSilently},
    };
    for (const auto& [answer, outcome] : cases) {
        camera.replaceReply("", answer);
        EXPECT_EQ(upload(path), outcome) << answer;
    }
    put(session.password, "wrong");
    EXPECT_EQ(upload(path), failsSilently);
    EXPECT_EQ(camera.requests().back().status, 401);
    EXPECT_EQ(camera.file("/sd/file"), std::nullopt);
}

TEST_F(Upload, SaysSoWhenTheCameraFindsTheFileDamaged)
{
    camera.setFault({.kind = Kind::Mismatch});
    testing::internal::CaptureStdout();
    EXPECT_EQ(upload(make("file", "content")), failsSilently);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr("Md5 mismatch."));
    EXPECT_EQ(camera.file("/sd/file"), std::nullopt);
}

TEST_F(Upload, SendsNothingWithoutAFile)
{
    ASSERT_EQ(mkfifo(pathOf("pipe").c_str(), 0600), 0);
    for (const std::string& path :
         {pathOf("missing"), directory, directory + "/", pathOf("pipe"), std::string()})
        EXPECT_EQ(upload(path), failsSilently) << path;
    EXPECT_LE(camera.connections(), 5U); // the probes
    for (const char* url : {"http://:80/", "http://256.0.0.1/"})
        EXPECT_EQ(outcomeOf([&] { return UploadFile(url, directory.c_str(), "", ""); }),
                  (Outcome{0, KX_ERROR_NONE}));
}

TEST_F(Upload, SendsWhatTheFileHadAtFirstOrFails)
{
    const std::string content = someBytes(500'000);
    const std::string path = make("file", content);
    watch([&](const Progress& now) {
        if (now.done == 0)
            std::ofstream(path, std::ios::app) << "more";
        return false;
    });
    EXPECT_EQ(upload(path), succeeds);
    EXPECT_TRUE(camera.file("/sd/file") == content);

    watch([&](const Progress& now) {
        if (now.done == 0)
            std::filesystem::resize_file(path, 100'000);
        return false;
    });
    EXPECT_EQ(upload(path), failsSilently);
    EXPECT_EQ(camera.requests().size(), 1U);
}

TEST_F(Upload, EndsWithTheCodeOfEachFault)
{
    const std::string small = make("small", "content");
    const std::string big = make("big", zeros(20'000'000)); // more than fits on the way
    const std::pair<Fault, Outcome> cases[] = {
        {{.kind = Kind::Refuse}, failsByNetwork},
        {{.kind = Kind::Unreachable}, failsByNetwork},
        {{.kind = Kind::SilentBefore}, failsSilently},
        {{.kind = Kind::SilentAfter}, failsSilently},
        {{.kind = Kind::EmptyReply}, failsSilently},
        {{.kind = Kind::Status, .status = 503}, failsSilently},
        {{.kind = Kind::Garbage}, failsSilently},
        {{.kind = Kind::CutShort, .bytes = 9}, failsSilently},
        {{.kind = Kind::CutShort, .bytes = 15}, succeeds},
    };
    g_timing = shortTiming();
    for (const auto& [fault, outcome] : cases) {
        camera.setFault(fault);
        EXPECT_EQ(upload(small), outcome) << static_cast<int>(fault.kind);
    }
    camera.setFault({.kind = Kind::SilentBefore});
    EXPECT_EQ(upload(big), failsByNetwork);
    g_timing = {};
    camera.clearFault();
    EXPECT_EQ(upload(small), succeeds);
}

TEST_F(Upload, TakesAnAnswerThatComesInPieces)
{
    camera.setFault({.kind = Kind::Slow, .bytes = 1, .pause = std::chrono::milliseconds(1)});
    EXPECT_EQ(upload(make("file", "content")), succeeds);
}

TEST_F(Upload, TellsOfTheFailedProbe)
{
    g_timing = shortTiming();
    camera.setFault({.kind = Kind::Unreachable});
    const std::string path = make("file", "content");
    testing::internal::CaptureStdout();
    EXPECT_EQ(upload(path), failsByNetwork);
    EXPECT_EQ(DoFirmwareUpdate(&session, path.c_str(), reply, 1), -1);
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::AllOf(testing::HasSubstr("KxOutputDebugInfo: Connect(%s:%d) Failed. \n"),
                               testing::HasSubstr(
                                   "KxOutputDebugInfo: upgrade IsHostConnect Connect(%s:%d) Failed. \n")));
}

TEST_F(Upload, RefusesNullArgumentsWithoutACode)
{
    const std::string path = make("file", "content");
    const auto send = [](UserInfo* who, const char* what, char* room) {
        return outcomeOf([=] { return DoUploadCfgFile(who, what, room, 1, 1); });
    };
    EXPECT_EQ(send(nullptr, path.c_str(), reply), failsSilently);
    EXPECT_EQ(send(&session, nullptr, reply), failsSilently);
    EXPECT_EQ(send(&session, path.c_str(), nullptr), failsSilently);
    const char* const texts[] = {"http://127.0.0.1/", path.c_str(), "user", "password"};
    for (int missing = 0; missing < 4; ++missing) {
        const auto text = [&](int i) { return i == missing ? nullptr : texts[i]; };
        EXPECT_EQ(UploadFile(text(0), text(1), text(2), text(3)), 0);
    }
    EXPECT_EQ(camera.connections(), 0U);
}

TEST(TransferUrl, IsTakenApart)
{
    const struct
    {
        std::string url;
        bool good;
        std::string host;
        int port;
        std::string path;
    } cases[] = {
        {"http://10.0.0.1:8080/a/b?c=d:1/2", true, "10.0.0.1", 8080, "/a/b?c=d:1/2"},
        {"http://camera/a b", true, "camera", 80, "/a b"},
        {"http://camera:/a", true, "camera", 80, "/a"},
        {"http://camera:81", true, "camera", 81, "/"},
        {"http://camera:81x/a", true, "camera", 81, "/a"},
        {"http://" + std::string(300, 'h') + ":82/a", true, std::string(255, 'h'), 82, "/a"},
        {"http:///a", false, "", 0, ""},
        {"https://camera/", false, "", 0, ""},
        {"camera/a", false, "", 0, ""},
        {"", false, "", 0, ""},
    };
    for (const auto& row : cases) {
        char host[urlHostSize] = {};
        int port = 0;
        const char* path = "";
        EXPECT_EQ(parse_url(row.url.c_str(), host, port, path), row.good) << row.url;
        EXPECT_EQ(host, row.host);
        EXPECT_EQ(port, row.port) << row.url;
        EXPECT_EQ(path, row.path) << row.url;
    }
}
