// What all transfers have in common: being watched and stopped, a full disk, and what they leave behind.
#include "TransferTest.h"

#include <array>
#include <csignal>
#include <cstdio>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include "BareCamera.h"

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
    Reset    // half of the file is sent, and the connection reset
};

void forgetUpload(const FileDescriptor& connection, std::array<char, 4096>& bytes)
{
    const std::string_view end = "--\r\n";
    ssize_t count = 1;
    while (count > 0 && !std::string_view(bytes.data(), static_cast<std::size_t>(count)).ends_with(end))
        count = recv(connection.get(), bytes.data(), bytes.size(), 0);
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
            forgetUpload(connection, bytes);
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
    EXPECT_GT(calls.back().done, 0U);
    EXPECT_EQ(calls.back().total, 0U);
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
    for (const std::size_t limit : {300'000U, 1'500'000U}) { // in the body, and in the zeros behind it
        const FileSizeLimit diskSize(limit);
        EXPECT_EQ(download(pathOf("file")), failsSilently);
        EXPECT_TRUE(contentOf("file") == (content + zeros(500'000)).substr(0, limit));
        EXPECT_EQ(upload(pathOf("file")), succeeds);
    }
    const FileSizeLimit diskSize(100);
    EXPECT_EQ(exportConfig(directory), failsSilently);
    EXPECT_EQ(contentOf("config.ini").size(), 100U);
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
