// What all transfers have in common: being watched and stopped, a full disk, and what they leave behind.
#include "TransferTest.h"

#include <array>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include "BareCamera.h"
#include "NetManager/Download.h"
#include "NetManager/Upload.h"

using kxsim::Fault;
using Kind = kxsim::Fault::Kind;

namespace
{

using Transfer = TransferTest;
using Disk = TransferTest;

constexpr std::uint64_t nineMegabytes = 9'000'000;

enum class Death
{
    Orderly, // all is sent, and the connection closed
    Reset,   // half of the file is sent, and the connection reset
    Refusal  // of an upload, at its head
};

void takeUpload(const FileDescriptor& connection, std::array<char, 4096>& bytes, Death death)
{
    if (death == Death::Refusal) {
        send(connection.get(), "HTTP/1.1 401 Unauthorized\r\n\r\n", 29, MSG_NOSIGNAL);
        return;
    }
    const std::string_view end = "--\r\n";
    std::string tail;
    for (ssize_t count = 1; count > 0 && !tail.ends_with(end);) {
        count = recv(connection.get(), bytes.data(), bytes.size(), 0);
        tail.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        tail.erase(0, tail.size() - std::min(tail.size(), end.size()));
    }
    send(connection.get(), "HTTP/1.1 200 OK\n\n", 17, MSG_NOSIGNAL);
}

void sendFile(const FileDescriptor& connection, std::array<char, 4096>& bytes, Death death)
{
    bytes.fill('x');
    send(connection.get(), "HTTP/1.1 200 OK\n\n", 17, MSG_NOSIGNAL);
    for (std::uint64_t sent = 0; sent < nineMegabytes; sent += bytes.size()) {
        if (death == Death::Reset && sent > nineMegabytes / 2) {
            setLinger(connection, 0);
            return;
        }
        send(connection.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }
}

/// A camera without a memory: takes an upload and forgets it, or sends a file that it makes up.
BareCamera::Serve forgetful(Death death)
{
    return [death](const FileDescriptor& connection) {
        std::array<char, 4096> bytes{};
        const ssize_t count = recv(connection.get(), bytes.data(), bytes.size(), 0);
        if (count >= 4 && std::string_view(bytes.data(), 4) == "POST")
            takeUpload(connection, bytes, death);
        else
            sendFile(connection, bytes, death);
    };
}

std::size_t heapInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Limits the size of files that this process writes, for as long as it lives.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, SIG_DFL);
    }

private:
    rlimit before_{};
};

} // namespace

TEST_F(Transfer, TellsItsProgressOnItsOwnThread)
{
    const std::string content = someBytes(1'000'000);
    const std::string path = make("file", content);
    camera.putFile("/var/log.db", content);
    std::thread::id caller = std::this_thread::get_id();
    watch([&](const Progress&) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        return false;
    });
    for (const bool up : {true, false}) {
        calls.clear();
        EXPECT_EQ(up ? upload(path) : download(path), succeeds);
        ASSERT_GT(calls.size(), 10U);
        std::uint64_t before = 0;
        for (const Progress& now : calls) {
            EXPECT_EQ(now.userId, 1234);
            EXPECT_EQ(now.total, content.size());
            EXPECT_GE(now.done, before);
            before = now.done;
        }
        EXPECT_EQ(calls.back().done, content.size());
    }
    EXPECT_EQ(exportConfig(directory), succeeds);
    EXPECT_EQ(calls.back().userId, 1234);
    EXPECT_GT(calls.back().done, 0U);
    EXPECT_EQ(calls.back().total, 0U);
}

TEST_F(Transfer, TellsOfAFileThatIsLongerThanItTakes)
{
    camera.replaceReply("", fileReply(zeros(12'000'000), "Content-Length: 12000000\n"));
    watch([](const Progress&) { return false; });
    EXPECT_EQ(download(pathOf("log")), succeeds);
    EXPECT_EQ(calls.back().total, 12'000'000U);
    EXPECT_LT(calls.back().done, 10'000'000U);
}

TEST_F(Transfer, StopsWhenToldAndLeavesTheSessionUsable)
{
    const std::string content = someBytes(2'000'000);
    const std::string path = make("file", content);
    camera.putFile("/var/log.db", content);
    for (const std::uint64_t when : {0U, 1U, 1'000'000U, 2'000'000U}) {
        watch([when](const Progress& now) { return now.total > 0 && now.done >= when; });
        EXPECT_EQ(upload(path), failsSilently) << when;
        const std::size_t callsBefore = calls.size();
        EXPECT_EQ(download(pathOf("log")), failsSilently) << when;
        EXPECT_GT(calls.size(), callsBefore);
        EXPECT_GE(contentOf("log").size(), when);
        EXPECT_TRUE(content.starts_with(contentOf("log")));
    }
    watch([](const Progress& now) { return now.done > 100; });
    EXPECT_EQ(exportConfig(directory), failsSilently);
    EXPECT_FALSE(std::filesystem::exists(pathOf("config.ini")));

    EXPECT_EQ(camera.file("/sd/file"), std::nullopt);
    Kx_Sdk_SetTransferCallBack(nullptr, nullptr);
    EXPECT_EQ(upload(path), succeeds);
    EXPECT_EQ(download(pathOf("log")), succeeds);
}

TEST_F(Transfer, CanBeStoppedWhileTheCameraIsSilent)
{
    g_timing.transferReply = g_timing.uploadReply = std::chrono::hours(1);
    g_timing.watchPause = std::chrono::milliseconds(5);
    const std::string small = make("small", "content");
    const std::string big = make("big", zeros(20'000'000));
    const auto waits = [this](const Progress& now) {
        return calls.size() > 5 && calls[calls.size() - 3].done == now.done;
    };
    for (const Kind kind : {Kind::SilentBefore, Kind::SilentAfter}) {
        camera.setFault({.kind = kind});
        for (const std::string& path : {small, big}) {
            watch(waits);
            calls.clear();
            EXPECT_EQ(upload(path), failsSilently);
        }
        watch(waits);
        calls.clear();
        EXPECT_EQ(download(pathOf("log")), failsSilently);
        calls.clear();
        EXPECT_EQ(exportConfig(directory), failsSilently);
    }

    camera.setFault({.kind = Kind::Slow, .bytes = 200, .pause = std::chrono::hours(1)});
    camera.putFile("/var/log.db", someBytes(1000));
    g_timing.stalledReply = std::chrono::hours(1);
    calls.clear();
    EXPECT_EQ(download(pathOf("log")), failsSilently); // in the middle of the file
    camera.setFault({.kind = Kind::Slow, .bytes = 17, .pause = std::chrono::hours(1)});
    calls.clear();
    EXPECT_EQ(upload(small), failsSilently); // after the answer's "200 OK"
    camera.setFault({.kind = Kind::Unreachable});
    const std::string url = "http://127.0.0.1:" + std::to_string(camera.port()) + "/";
    g_timing.transferConnect = std::chrono::hours(1);
    calls.clear();
    EXPECT_EQ(UploadFile(url.c_str(), small.c_str(), "", ""), 0); // behind its probe
    EXPECT_EQ(calls.back().total, 7U);
}

TEST_F(Transfer, WaitsForEachStepAsLongAsThatMayTake)
{
    using std::chrono::milliseconds;
    const std::string small = make("small", "content");
    const std::string big = make("big", zeros(20'000'000)); // more than fits on the way
    const std::string url = "http://127.0.0.1:" + std::to_string(camera.port()) + "/";
    camera.putFile("/var/log.db", someBytes(1000));
    const auto stopsAfter = [](int bytes) {
        return Fault{
            .kind = Kind::Slow, .bytes = static_cast<std::size_t>(bytes), .pause = std::chrono::hours(1)};
    };
    const struct
    {
        milliseconds Timing::*limit;
        Fault fault;
        std::function<int()> call;
    } cases[] = {
        {&Timing::transferConnect,
         {.kind = Kind::Unreachable},
         [&] { return UploadFile(url.c_str(), small.c_str(), "", ""); }},
        {&Timing::transferConnect,
         {.kind = Kind::Unreachable},
         [&] { return DownloadFile(url.c_str(), small.c_str(), "", ""); }},
        {&Timing::uploadReply, {.kind = Kind::SilentAfter}, [&] { return upload(small).first; }},
        {&Timing::uploadReply, {.kind = Kind::SilentBefore}, [&] { return upload(big).first; }},
        {&Timing::uploadReply, stopsAfter(9), [&] { return upload(small).first; }},
        {&Timing::transferReply, {.kind = Kind::SilentAfter}, [&] { return download(small).first; }},
        {&Timing::stalledReply, stopsAfter(200), [&] { return download(small).first; }},
        {&Timing::transferReply, {.kind = Kind::SilentAfter}, [&] { return exportConfig(directory).first; }},
        {&Timing::probe, {.kind = Kind::Unreachable}, [&] { return exportConfig(directory).first; }},
    };
    for (const auto& row : cases) {
        g_timing = {};
        for (auto limit : {&Timing::probe, &Timing::connect, &Timing::firstReply, &Timing::transferConnect,
                           &Timing::transferReply, &Timing::uploadReply, &Timing::stalledReply})
            g_timing.*limit = milliseconds(20'000);
        g_timing.*row.limit = milliseconds(30);
        camera.setFault(row.fault);
        const auto start = std::chrono::steady_clock::now();
        row.call();
        EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(15'000)) << &row - cases;
    }
}

TEST_F(Transfer, DoesNotWaitForACameraThatKeepsTheConnection)
{
    const std::string header = "Content-Length: 4\n";
    const auto keepsOpen = [&](const std::string& sent, int endless) {
        camera.replaceReply("", sent + std::string(static_cast<std::size_t>(endless), '.'));
        camera.setFault(
            {.kind = Kind::Slow, .bytes = sent.size(), .pause = std::chrono::hours(1), .count = 1});
    };
    g_timing.completeReply = std::chrono::milliseconds(10);
    g_timing.stalledReply = g_timing.uploadReply = std::chrono::hours(1);
    keepsOpen(fileReply("body", header), 1);
    EXPECT_EQ(download(pathOf("file")), succeeds);
    EXPECT_EQ(contentOf("file"), "body" + zeros(4));
    keepsOpen(fileReply("done", header), 1);
    EXPECT_EQ(upload(make("small", "content")), succeeds);
    keepsOpen(fileReply("[param]", "filename=\"a.ini\"\r\nContent-Length: 7\n"), 1);
    EXPECT_EQ(exportConfig(directory), succeeds);
    EXPECT_EQ(contentOf("a.ini"), "[param]" + zeros(7));
}

TEST_F(Transfer, TellsARefusalFromADeath)
{
    const BareCamera refusing(forgetful(Death::Refusal));
    connectTo(refusing.port());
    const std::string path = make("big", zeros(20'000'000));
    EXPECT_EQ(upload(path), failsSilently);
}

TEST_F(Transfer, AsksTheCallbackInForceWithItsOwnArgument)
{
    static int seen;
    const auto note = [](long, std::uint64_t, std::uint64_t, void* user) {
        return seen += user == nullptr, 0;
    };
    Kx_Sdk_SetTransferCallBack(note, &seen);
    Kx_Sdk_SetTransferCallBack(note, nullptr);
    upload(make("small", "content"));
    EXPECT_GT(seen, 0);
}

TEST_F(Transfer, KeepsToTheCallbackThatItBeganWith)
{
    const std::string path = make("file", someBytes(500'000));
    watch([](const Progress&) {
        Kx_Sdk_SetTransferCallBack([](long, std::uint64_t, std::uint64_t, void*) { return 1; }, nullptr);
        return false;
    });
    EXPECT_EQ(upload(path), succeeds);
    EXPECT_EQ(calls.back().done, 500'000U);
    EXPECT_EQ(upload(path), failsSilently); // which the new one stops
}

TEST_F(Disk, WhenFullFailsTheTransferWithoutACode)
{
    EXPECT_EQ(download("/dev/full"), failsSilently);
    EXPECT_EQ(download(directory), failsSilently);
    EXPECT_EQ(download(pathOf("missing/file")), failsSilently);

    const std::string content = someBytes(1'000'000);
    camera.putFile("/var/log.db", content);
    const auto limited = [](rlim_t limit, auto call) {
        const FileSizeLimit diskSize(limit); // of the test's output too
        return call();
    };
    for (const std::size_t limit : {300'000U, 1'500'000U}) { // in the body, and in the zeros behind it
        EXPECT_EQ(limited(limit, [&] { return download(pathOf("file")); }), failsSilently);
        EXPECT_TRUE(contentOf("file") == (content + zeros(500'000)).substr(0, limit));
        EXPECT_EQ(upload(pathOf("file")), succeeds);
    }
    EXPECT_EQ(limited(100, [&] { return exportConfig(directory); }), failsSilently);
    EXPECT_EQ(contentOf("config.ini").size(), 100U);
}

TEST_F(Disk, IsNoNamedPipe)
{
    ASSERT_EQ(mkfifo(pathOf("config.ini").c_str(), 0600), 0);
    EXPECT_EQ(download(pathOf("config.ini")), failsSilently);
    EXPECT_EQ(exportConfig(directory), failsSilently);
    const FileDescriptor reader(open(pathOf("config.ini").c_str(), O_RDONLY | O_NONBLOCK));
    EXPECT_EQ(download(pathOf("config.ini")), failsSilently);
}

TEST_F(Transfer, LeavesNoDescriptorBehind)
{
    const std::string path = make("file", someBytes(300'000));
    camera.putFile("/var/log.db", someBytes(300'000));
    const auto soon = std::chrono::milliseconds(10);
    g_timing.probe = g_timing.firstReply = g_timing.transferConnect = g_timing.transferReply = soon;
    g_timing.uploadReply = g_timing.stalledReply = soon;
    const auto runAll = [&] {
        upload(path);
        upload(directory);
        download(pathOf("log"));
        download("/dev/full");
        exportConfig(directory);
        exportConfig("/dev/null");
        DoDownloadLprPicture(&session, "/x", reply, sizeof reply);
        DoCustomUrlRequest(&session, "/x", reply, sizeof reply);
    };
    const std::size_t before = openDescriptors();
    for (int kind = static_cast<int>(Kind::None); kind <= static_cast<int>(Kind::Status); ++kind) {
        if (static_cast<Kind>(kind) == Kind::Endless) // of which ten megabytes are taken
            continue;
        camera.setFault({.kind = static_cast<Kind>(kind), .bytes = 20'000});
        watch([](const Progress&) { return false; });
        runAll();
        watch([](const Progress& now) { return now.done > 1000; });
        runAll();
    }
    camera.clearFault();
    EXPECT_TRUE(descriptorsFallTo(before)) << openDescriptors() << " open, " << before << " at the start";
}

TEST_F(Transfer, TakesNoMemoryForTheFile)
{
    const std::string path = pathOf("file");
    std::ofstream(path) << "x";
    std::filesystem::resize_file(path, nineMegabytes);
    for (const bool up : {true, false}) {
        const BareCamera forgetting(forgetful(Death::Orderly));
        connectTo(forgetting.port());
        std::size_t most = 0;
        const std::size_t before = heapInUse();
        watch([&](const Progress&) {
            most = std::max(most, heapInUse());
            return false;
        });
        EXPECT_EQ(up ? upload(path) : download(path), succeeds);
        EXPECT_GE(calls.back().done, nineMegabytes);
        EXPECT_LT(most, before + 1'000'000) << (up ? "upload" : "download");
    }
}

TEST_F(Transfer, TellsAResetFromAnOrderlyEnd)
{
    const BareCamera dying(forgetful(Death::Reset));
    connectTo(dying.port());
    EXPECT_EQ(download(pathOf("file")), failsByNetwork); // though the camera told no length
    EXPECT_LE(contentOf("file").size(), nineMegabytes / 2 + 8192);
}
