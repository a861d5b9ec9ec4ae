// Many threads, many cameras: nobody gets another's session or answer.
#include "SdkTest.h"

#include <atomic>
#include <barrier>
#include <cstring>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include "Core/UserInfo.h"

namespace
{

constexpr int cameraCount = 64;

/// Runs the same work on as many threads at once.
template <typename Work>
void runTogether(int count, Work work)
{
    std::barrier start(count);
    std::vector<std::jthread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([i, &start, &work] {
            start.arrive_and_wait();
            work(i);
        });
    }
}

class Concurrency : public SdkTest
{
protected:
    void SetUp() override
    {
        SdkTest::SetUp();
        for (int i = 0; i < cameraCount; ++i) {
            cameras.push_back(std::make_unique<kxsim::SimCamera>());
            cameras.back()->setValue("ftpuser", name(i));
        }
    }

    static std::string name(int index) { return "camera " + std::to_string(index); }

    /// The user name that the camera of this session tells.
    static std::string ask(long id)
    {
        FtpInfo info{};
        return Kx_Ipc_GetFTP(id, &info) == 0 ? info.ftpuser : "failed";
    }

    std::vector<std::unique_ptr<kxsim::SimCamera>> cameras;
};

} // namespace

TEST_F(Concurrency, LoginsAtOnceGetTheirOwnSessions)
{
    std::mutex mutex;
    std::set<long> ids;
    runTogether(cameraCount, [&](int i) {
        const long id = login(*cameras[static_cast<std::size_t>(i)]);
        EXPECT_EQ(ask(id), name(i));
        FtpInfo info{};
        std::strcpy(info.ftpip, name(i).c_str());
        EXPECT_EQ(Kx_Ipc_SetFTP(id, &info), 0);
        const std::lock_guard lock(mutex);
        ids.insert(id);
    });
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(cameraCount));
    EXPECT_GE(*ids.begin(), 1000);
    for (int i = 0; i < cameraCount; ++i)
        EXPECT_EQ(cameras[static_cast<std::size_t>(i)]->value("ftpip"), name(i));
}

TEST_F(Concurrency, SessionsComeAndGoBesideOneAnother)
{
    runTogether(16, [&](int i) {
        const kxsim::SimCamera& camera = *cameras[static_cast<std::size_t>(i)];
        for (int round = 0; round < 20; ++round) {
            const long id = login(camera, i % 4 == 3 ? "wrong" : "admin");
            if (i % 4 == 3) {
                EXPECT_EQ(id, -1);
                continue;
            }
            EXPECT_EQ(ask(id), name(i));
            EXPECT_EQ(ask(999), "failed");
            EXPECT_EQ(ask(0), "failed"); // looks into slots that others are just filling and clearing
            EXPECT_EQ(Kx_Ipc_Logout(id), 0);
        }
    });
}

TEST_F(Concurrency, LoginsToTheSameCameraDoNotDisturbItsCalls)
{
    const long id = login(*cameras[0]);
    std::atomic<bool> stop{false};
    std::jthread caller([&] {
        while (!stop)
            EXPECT_EQ(ask(id), name(0));
    });
    for (int round = 0; round < 50; ++round)
        EXPECT_EQ(login(*cameras[0]), id);
    stop = true;
}

TEST_F(Concurrency, CopiesOfASessionAreNeverMixed)
{
    const std::string letters[] = {std::string(30, 'a'), std::string(30, 'b')};
    std::atomic<bool> stop{false};
    std::jthread logins([&] {
        UserInfo copy;
        for (int i = 0; i < 20000; ++i) {
            const char* text = letters[i % 2].c_str();
            takeSession("", "10.0.0.1", 80, text, text, copy);
            if (i % 3 == 0)
                endClosing(*beginClosing(copy.nUserId));
        }
        stop = true;
    });
    const auto expectWhole = [](const UserInfo& copy) {
        EXPECT_STREQ(copy.user, copy.password);
        EXPECT_EQ(std::string(copy.user).find_first_not_of(copy.user[0]), std::string::npos);
    };
    while (!stop) {
        UserInfo copy;
        if (copySession(g_nUserId - 1, copy))
            expectWhole(copy);
        if (copySession(0, copy)) {
            EXPECT_STREQ(copy.host, "");
        }
    }
}
