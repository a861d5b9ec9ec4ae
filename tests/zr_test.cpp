// The support library: texts, lists, condition variables, pipes, the print.
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ZrThread/ZrList.h"
#include "ZrThread/ZrMemory.h"
#include "ZrThread/ZrPipe.h"
#include "ZrThread/ZrPrint.h"
#include "ZrThread/ZrSync.h"
#include "ZrThread/ZrThread.h"

using testing::ElementsAre;

namespace
{

int numbers[] = {0, 1, 2, 3, 4, 5, 6, 7};

int* element(int number)
{
    return &numbers[number];
}

std::vector<int> contents(const ZrList& list)
{
    std::vector<int> found;
    for (int i = 0; zr_list_eol(&list, i) == 0; ++i)
        found.push_back(*static_cast<int*>(zr_list_get(&list, i)));
    return found;
}

/// A list of 0, 1, ... count - 1, emptied after the test.
struct Numbers : ZrList
{
    explicit Numbers(int size)
    {
        zr_list_init(this);
        for (int i = 0; i < size; ++i)
            zr_list_add(this, element(i), -1);
    }
    ~Numbers()
    {
        while (zr_list_remove(this, 0) >= 0) {
        }
    }
};

} // namespace

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

TEST(ZrList, AddsWhereItIsTold)
{
    struct
    {
        int size, position;
        std::vector<int> expected;
    } rows[] = {
        {2, 5, {0, 1, 7}},    {2, 2, {0, 1, 7}}, {2, -1, {0, 1, 7}}, {2, 0, {7, 0, 1}},
        {3, 1, {0, 7, 1, 2}}, {0, 0, {7}},       {2, -2, {0, 7, 1}}, {0, -9, {7}},
    };
    for (const auto& row : rows) {
        Numbers list(row.size);
        EXPECT_EQ(zr_list_add(&list, element(7), row.position), row.size + 1);
        EXPECT_EQ(contents(list), row.expected) << row.size << " at " << row.position;
    }
}

TEST(ZrList, KnowsItsBounds)
{
    Numbers list(3);
    EXPECT_EQ(zr_list_get(&list, -1), nullptr);
    EXPECT_EQ(zr_list_get(&list, 3), nullptr);
    EXPECT_EQ(zr_list_remove(&list, -1), -1);
    EXPECT_EQ(zr_list_remove(&list, 3), -1);
    EXPECT_EQ(zr_list_remove(&list, 1), 2);
    EXPECT_THAT(contents(list), ElementsAre(0, 2));
    EXPECT_EQ(zr_list_size(&list), 2);
    EXPECT_EQ(zr_list_size(nullptr), -1);
    EXPECT_EQ(zr_list_add(nullptr, element(0), 0), -1);
    EXPECT_EQ(zr_list_get(nullptr, 0), nullptr);
    EXPECT_EQ(zr_list_special_free(nullptr, nullptr), -1);
}

TEST(ZrList, IteratesAndEmptiesWhileIterating)
{
    Numbers list(4);
    ZrListIterator it;
    std::vector<int> seen;
    for (void* e = zr_list_get_first(&list, &it); e != nullptr; e = zr_list_get_next(&it))
        seen.push_back(*static_cast<int*>(e));
    EXPECT_THAT(seen, ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(zr_list_get_next(&it), nullptr);
    EXPECT_EQ(zr_list_iterator_remove(&it), nullptr);

    zr_list_get_first(&list, &it);
    EXPECT_EQ(zr_list_get_next(&it), element(1));
    EXPECT_EQ(zr_list_iterator_remove(&it), element(2));
    EXPECT_THAT(contents(list), ElementsAre(0, 2, 3));
    for (void* e = zr_list_get_first(&list, &it); e != nullptr;)
        e = zr_list_iterator_remove(&it);
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(list.head, nullptr);
}

TEST(ZrList, AnIteratorStaysAtItsElementWhenOthersAreAdded)
{
    for (const int where : {0, 1, 2, 3, -1, -7}) {
        Numbers list(3);
        ZrListIterator it;
        zr_list_get_first(&list, &it);
        zr_list_get_next(&it);
        EXPECT_EQ(zr_list_iterator_add(&it, element(7), where), 4);
        EXPECT_EQ(zr_list_get(&list, it.position), element(1)) << where;
        zr_list_iterator_remove(&it); // takes out that one and loses no other
        EXPECT_THAT(contents(list), testing::UnorderedElementsAre(0, 2, 7)) << where;
    }
    Numbers empty(0);
    ZrListIterator it;
    EXPECT_EQ(zr_list_get_first(&empty, &it), nullptr);
    EXPECT_EQ(zr_list_iterator_add(&it, element(1), 0), 1);
}

TEST(ZrList, HandsEveryElementToTheFreeFunctionAndFreesItself)
{
    auto* list = static_cast<ZrList*>(zr_malloc(sizeof(ZrList)));
    for (int i = 0; i < 3; ++i)
        zr_list_add(list, element(i), 0);
    static std::vector<int> freed;
    freed.clear();
    EXPECT_EQ(zr_list_special_free(list, [](void* e) { freed.push_back(*static_cast<int*>(e)); }), 0);
    EXPECT_THAT(freed, ElementsAre(2, 1, 0));

    list = static_cast<ZrList*>(zr_malloc(sizeof(ZrList)));
    zr_list_add(list, std::malloc(5), -1);
    EXPECT_EQ(zr_list_ofchar_free(list), 0); // the address sanitizer tells of a leak
}

TEST(ZrSync, AWaitEndsByASignalOrByItsTimeAndTellsNoDifference)
{
    ZrCond* object = zr_cond_init();
    pthread_cond_t* condition = object->condition; // stays with us
    pthread_mutex_t* mutex = zr_mutex_init();

    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(zr_cond_timedwait1(object, mutex, 1020), 0); // also carries into the next second, mostly
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1015));
    EXPECT_EQ(zr_cond_timedwait1(object, nullptr, 10'000), -1);
    EXPECT_EQ(zr_cond_timedwait1(nullptr, mutex, 10'000), -1);
    EXPECT_EQ(zr_sem_wait(nullptr, mutex, 10'000), -1);
    EXPECT_EQ(zr_cond_timewait(nullptr, mutex, 10'000), -1);

    zr_mutex_lock(mutex);
    std::thread other([&] {
        zr_mutex_lock(mutex); // once the wait has begun
        zr_cond_signal(object);
        zr_mutex_unlock(mutex);
    });
    EXPECT_EQ(zr_cond_timewait(condition, mutex, 60'000), 0);
    zr_mutex_unlock(mutex);
    other.join();

    zr_mutex_destroy(mutex);
    EXPECT_EQ(zr_cond_destroy(object), 0);
    EXPECT_EQ(zr_cond_destroy(nullptr), 0);
    zr_free(condition);
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
    EXPECT_EQ(zr_thread_join(nullptr), -1);
    zr_mutex_unlock(both.mutex);
    zr_mutex_destroy(both.mutex);
    pthread_cond_destroy(both.condition);
    zr_free(both.condition);
    zr_sem_destroy(both.waiting);
    EXPECT_EQ(zr_mutex_lock(nullptr), -1);
    EXPECT_EQ(zr_mutex_unlock(nullptr), -1);
    EXPECT_EQ(zr_sem_post(nullptr), -1);
    EXPECT_EQ(zr_sem_signal(nullptr), -1);
}

TEST(ZrPipe, CarriesBytes)
{
    ZrPipe* pipe = zr_pipe_init();
    EXPECT_EQ(zr_pipe_write(pipe, "bytes", 5), 5);
    char got[9] = {};
    EXPECT_EQ(zr_pipe_read(pipe, got, sizeof got), 5);
    EXPECT_STREQ(got, "bytes");
    EXPECT_EQ(zr_pipe_get_read_descr(pipe), pipe->readEnd);
    EXPECT_EQ(zr_pipe_destroy(pipe), 0);
    EXPECT_EQ(zr_pipe_destroy(nullptr), -1);
    EXPECT_EQ(zr_pipe_write(nullptr, "", 0), -1);
    EXPECT_EQ(zr_pipe_read(nullptr, got, 1), -1);
    EXPECT_EQ(zr_pipe_get_read_descr(nullptr), -1);
}

TEST(ZrPrint, StampsTheMessageAndLacksTheLastDigitOfTheTime)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(zr_print("%d and %s", 7, "more"), 0);
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::MatchesRegex(
                    "QZM PRINT [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]  7 and more={33}\n"));

    testing::internal::CaptureStdout();
    zr_print("%s", std::string(5000, 'x').c_str());
    const std::string longest = testing::internal::GetCapturedStdout();
    EXPECT_EQ(longest.size(), 1599u);
    EXPECT_EQ(longest.back(), 'x');
}
