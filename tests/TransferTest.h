// Fixture for tests of file transfers: a camera, a session with it, and a directory of their own.
#pragma once

#include "SdkTest.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <stdlib.h>

#include "Core/UserInfo.h"
#include "NetManager/Fetchers.h"
#include "NetManager/FileTransfer.h"

using Outcome = std::pair<int, long>; // result and last error

/// The outcome of a call, its own error only.
template <typename Call>
Outcome outcomeOf(Call call)
{
    g_nLastError = KX_ERROR_NONE;
    const int result = call();
    return {result, g_nLastError};
}

inline const Outcome succeeds{0, KX_ERROR_NONE};
inline const Outcome failsSilently{-1, KX_ERROR_NONE};
inline const Outcome failsByNetwork{-1, KX_ERROR_NETWORK};

/// Bytes that are no text and differ from place to place.
inline std::string someBytes(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 31 + i / 251);
    return bytes;
}

inline std::string zeros(std::size_t size)
{
    return std::string(size, '\0');
}

/// A reply that hands out a file, as cameras write it.
inline std::string fileReply(const std::string& body, const std::string& headers = "")
{
    return "HTTP/1.1 200 OK\n" + headers + "\n" + body;
}

/// One call of the application's transfer callback.
struct Progress
{
    long userId;
    std::uint64_t done;
    std::uint64_t total;
};

class TransferTest : public SdkTest
{
protected:
    void SetUp() override
    {
        SdkTest::SetUp();
        connectTo(camera.port());
        char pattern[] = "/tmp/kx_transfer_XXXXXX";
        directory = mkdtemp(pattern);
    }

    void TearDown() override
    {
        Kx_Sdk_SetTransferCallBack(nullptr, nullptr);
        std::filesystem::remove_all(directory);
        SdkTest::TearDown();
    }

    void connectTo(int port)
    {
        session.nUserId = 1234;
        put(session.host, "127.0.0.1");
        session.port = port;
        put(session.user, "admin");
        put(session.password, "admin");
    }

    std::string pathOf(const std::string& name) const { return directory + "/" + name; }

    std::string make(const std::string& name, const std::string& content) const
    {
        std::ofstream(pathOf(name), std::ios::binary) << content;
        return pathOf(name);
    }

    std::string contentOf(const std::string& name) const
    {
        std::ifstream file(pathOf(name), std::ios::binary);
        return file ? std::string(std::istreambuf_iterator(file), {}) : "no such file";
    }

    Outcome upload(const std::string& path)
    {
        return outcomeOf([&] { return DoUploadFileToSdCard(&session, path.c_str(), reply, sizeof reply); });
    }

    Outcome download(const std::string& path)
    {
        return outcomeOf([&] { return DoDownloadLogFile(&session, path.c_str(), reply, sizeof reply); });
    }

    Outcome exportConfig(const std::string& into)
    {
        return outcomeOf([&] { return DoExportConfig(&session, into.c_str(), reply, sizeof reply); });
    }

    /// Watches transfers and stops them at the first call that `stop` is true for.
    void watch(std::function<bool(const Progress&)> stop)
    {
        stopAt = std::move(stop);
        Kx_Sdk_SetTransferCallBack(
            [](long userId, std::uint64_t done, std::uint64_t total, void* user) {
                auto* self = static_cast<TransferTest*>(user);
                self->calls.push_back({userId, done, total});
                return self->stopAt(self->calls.back()) ? 7 : 0;
            },
            this);
    }

    kxsim::SimCamera camera;
    UserInfo session;
    char reply[8192] = {};
    std::string directory;
    std::vector<Progress> calls;
    std::function<bool(const Progress&)> stopAt;
};
