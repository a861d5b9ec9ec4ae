// The support library: texts, threads, condition variables, pipes, the print. Lists have a file of their own.
#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ZrThread/ZrMemory.h"
#include "ZrThread/ZrPipe.h"
#include "ZrThread/ZrPrint.h"
#include "ZrThread/ZrSync.h"
#include "ZrThread/ZrThread.h"

TEST(ZrMemory, CopiesAtMostTheLengthAndAlwaysEndsTheText)
{
    for (const auto& [length, expected] : std::vector<std::pair<int, std::string>>{
             {-1, "xxxxxxxx"},
             {0, "xxxxxxxx"},
             {1, {"\0xxxxxxx", 8}},
             {4, {"abc\0xxxx", 8}},
             {6, {"abcde\0xx", 8}},
             {8, {"abcdef\0\0", 8}},
         }) {
        std::array<char, 8> target;
        target.fill('x');
        EXPECT_EQ(zr_strncpy(target.data(), "abcdef", length), target.data());
        EXPECT_EQ(std::string(target.data(), target.size()), expected) << length;
    }
    char target[] = "same";
    EXPECT_STREQ(zr_strncpy(target, nullptr, 3), "same");
    EXPECT_EQ(zr_strncpy(nullptr, "text", 3), nullptr);
}

TEST(ZrMemory, TrimsBothEnds)
{
    struct
    {
        const char *text, *trimmed;
        int result;
    } rows[] = {
        {"  a b  ", "a b", 0}, {"\t\v\f\r\na\n", "a", 0}, {"ab", "ab", 0}, {"   ", "", -1}, {"", "", -1}};
    for (const auto& row : rows) {
        std::string text = row.text;
        EXPECT_EQ(zr_char_trim(text.data()), row.result) << row.text;
        EXPECT_STREQ(text.c_str(), row.trimmed);
    }
}

namespace
{

using Wait = int (*)(pthread_cond_t*, pthread_mutex_t*, int);
constexpr Wait waits[] = {zr_cont_timedwait_millsecs, zr_sem_timedwait_millsecs, zr_sem_wait,
                          zr_cond_timewait};

/// A condition object, and a mutex that knows its owner.
struct Condition
{
    Condition()
    {
        pthread_mutexattr_t strict;
        pthread_mutexattr_init(&strict);
        pthread_mutexattr_settype(&strict, PTHREAD_MUTEX_ERRORCHECK);
        pthread_mutex_init(&mutex, &strict);
    }
    ~Condition()
    {
        pthread_cond_t* left = object->condition; // not freed with the object
        EXPECT_EQ(zr_cond_destroy(object), 0);
        zr_free(left);
        pthread_mutex_destroy(&mutex);
    }
    ZrCond* object = zr_cond_init();
    pthread_mutex_t mutex;
};

std::chrono::milliseconds spent(const std::function<void()>& work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
}

} // namespace

TEST(ZrSync, AWaitIsEndedByASignalAndLeavesTheMutexLocked)
{
    for (const Wait wait : waits)
        for (const bool byObject : {false, true}) {
            Condition its;
            bool signalled = false;
            zr_mutex_lock(&its.mutex);
            std::thread other([&] {
                zr_mutex_lock(&its.mutex); // once the wait has begun
                signalled = true;
                EXPECT_EQ(byObject ? zr_cond_signal(its.object) : zr_sem_signal(its.object->condition), 0);
                zr_mutex_unlock(&its.mutex);
            });
            const auto time = spent([&] { EXPECT_EQ(wait(its.object->condition, &its.mutex, 60'000), 0); });
            EXPECT_TRUE(signalled);
            EXPECT_LT(time, std::chrono::seconds(30));
            EXPECT_EQ(zr_mutex_unlock(&its.mutex), 0);
            other.join();
        }
}

TEST(ZrSync, AWaitEndsByItsTimeAndTellsNoDifference)
{
    Condition its;
    for (const int ms :
         {990, 15, 1010}) { // two of them begin in one second and end in the next, nearly always
        zr_mutex_lock(its.object->mutex); // not the one to be locked
        const auto time = spent([&] { EXPECT_EQ(zr_cond_timedwait1(its.object, &its.mutex, ms), 0); });
        zr_mutex_unlock(its.object->mutex);
        EXPECT_GE(time.count(), ms - 5);
        EXPECT_LT(time.count(), ms + 900);
    }
    EXPECT_EQ(pthread_mutex_trylock(&its.mutex), 0); // it has been left unlocked
    EXPECT_EQ(zr_mutex_unlock(&its.mutex), 0);
}

TEST(ZrSync, RefusesWhatIsNotThere)
{
    Condition its;
    ZrCond noCondition{.condition = nullptr, .mutex = its.object->mutex};
    EXPECT_EQ(zr_cond_timedwait1(its.object, nullptr, 10'000), -1);
    EXPECT_EQ(zr_cond_timedwait1(nullptr, &its.mutex, 10'000), -1);
    EXPECT_EQ(zr_cond_timedwait1(&noCondition, &its.mutex, 10'000), -1);
    EXPECT_EQ(zr_sem_wait(nullptr, &its.mutex, 10'000), -1);
    EXPECT_EQ(zr_cond_timewait(nullptr, &its.mutex, 10'000), -1);
    EXPECT_EQ(zr_cond_signal(nullptr), -1);
    EXPECT_EQ(zr_sem_signal(nullptr), -1);
    EXPECT_EQ(zr_sem_post(nullptr), -1);
    EXPECT_EQ(zr_sem_destroy(nullptr), 0);
    EXPECT_EQ(zr_mutex_lock(nullptr), -1);
    EXPECT_EQ(zr_mutex_unlock(nullptr), -1);
    zr_mutex_destroy(nullptr);
    EXPECT_EQ(zr_cond_destroy(nullptr), 0);
    EXPECT_EQ(zr_cond_destroy(&noCondition), 0);
    ZrCond noMutex{.condition = zr_pthread_cond_init(), .mutex = nullptr};
    EXPECT_EQ(zr_cond_destroy(&noMutex), 0);
    zr_free(noMutex.condition);
}

TEST(ZrSync, ASemaphoreCounts)
{
    sem_t* semaphore = zr_sem_init(3);
    zr_sem_post(semaphore);
    int value = 0;
    sem_getvalue(semaphore, &value);
    EXPECT_EQ(value, 4);
    zr_sem_destroy(semaphore);
}

TEST(ZrThread, EndsWhereItSaysSo)
{
    int ended = 0;
    pthread_t* thread = zr_thread_create(
        2001,
        [](void* argument) -> void* {
            *static_cast<int*>(argument) = 1;
            zr_thread_exit();
        },
        &ended);
    EXPECT_EQ(zr_thread_set_priority(thread, 5), 0);
    EXPECT_EQ(zr_thread_join(thread), 0);
    EXPECT_EQ(ended, 1);
    zr_free(thread);
    EXPECT_EQ(zr_thread_join(nullptr), -1);
}

TEST(ZrSync, AWaitThatIsCancelledLeavesTheMutexFree)
{
    struct Both
    {
        pthread_mutex_t* mutex = zr_mutex_init();
        pthread_cond_t* condition = zr_pthread_cond_init();
        sem_t* waiting = zr_sem_init(0);
    } both;
    pthread_t* thread = zr_thread_create(
        0,
        [](void* argument) -> void* {
            auto& its = *static_cast<Both*>(argument);
            zr_mutex_lock(its.mutex);
            zr_sem_post(its.waiting);
            zr_cont_timedwait_millsecs(its.condition, its.mutex, 60'000);
            return nullptr;
        },
        &both);
    sem_wait(both.waiting);
    pthread_cancel(*thread);
    EXPECT_EQ(zr_thread_join(thread), 0);
    EXPECT_EQ(pthread_mutex_trylock(both.mutex), 0);

    zr_free(thread);
    zr_mutex_unlock(both.mutex);
    zr_mutex_destroy(both.mutex);
    pthread_cond_destroy(both.condition);
    zr_free(both.condition);
    zr_sem_destroy(both.waiting);
}

TEST(ZrPipe, CarriesBytes)
{
    ZrPipe* pipe = zr_pipe_init();
    EXPECT_EQ(zr_pipe_write(pipe, "bytes", 5), 5);
    char got[9] = {};
    EXPECT_EQ(zr_pipe_read(pipe, got, sizeof got), 5);
    EXPECT_STREQ(got, "bytes");
    EXPECT_EQ(zr_pipe_get_read_descr(pipe), pipe->readEnd);
    const ZrPipe ends = *pipe;
    EXPECT_EQ(zr_pipe_destroy(pipe), 0);
    EXPECT_EQ(fcntl(ends.readEnd, F_GETFD), -1);
    EXPECT_EQ(fcntl(ends.writeEnd, F_GETFD), -1);
    EXPECT_EQ(zr_pipe_destroy(nullptr), -1);
    EXPECT_EQ(zr_pipe_write(nullptr, "", 0), -1);
    EXPECT_EQ(zr_pipe_read(nullptr, got, 1), -1);
    EXPECT_EQ(zr_pipe_get_read_descr(nullptr), -1);
}

TEST(ZrPrint, StampsTheMessageAndLacksTheLastDigitOfTheTime)
{
    setenv("TZ", "XXX-5:37", 1); // of nobody
    const auto stamp = [] {
        char text[20];
        const std::time_t now = std::time(nullptr);
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::localtime(&now));
        return std::string(text, 18);
    };
    const std::string before = stamp();
    testing::internal::CaptureStdout();
    EXPECT_EQ(zr_print("%d and %s", 7, "more"), 0);
    const std::string line = testing::internal::GetCapturedStdout();
    EXPECT_THAT(line.substr(10, 18), testing::AnyOf(before, stamp()));
    unsetenv("TZ");
    EXPECT_THAT(line, testing::MatchesRegex(
                          "QZM PRINT [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]  7 and more={33}\n"));

    testing::internal::CaptureStdout();
    zr_print("%s", std::string(5000, 'x').c_str());
    const std::string longest = testing::internal::GetCapturedStdout();
    EXPECT_EQ(longest.size(), 1599u);
    EXPECT_EQ(longest.back(), 'x');
}
