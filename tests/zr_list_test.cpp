// The support library's list and its iterator.
#include <cstdlib>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ZrThread/ZrList.h"
#include "ZrThread/ZrMemory.h"

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
    EXPECT_EQ(zr_list_eol(nullptr, 0), -1);
    EXPECT_EQ(zr_list_init(nullptr), -1);
    EXPECT_EQ(zr_list_remove(nullptr, 0), -1);
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
    Numbers list(0);
    ZrListIterator it;
    EXPECT_EQ(zr_list_get_first(&list, &it), nullptr);
    EXPECT_EQ(zr_list_iterator_add(&it, element(1), 0), 1);
    zr_list_get_first(&list, &it);
    EXPECT_EQ(zr_list_iterator_add(&it, element(2), -7), 2); // behind the first, where the iterator is
    EXPECT_EQ(it.position, 0);
}

TEST(ZrList, AnIteratorBearsAListThatShrinksBehindIt)
{
    Numbers list(3);
    ZrListIterator it;
    zr_list_get_first(&list, &it);
    zr_list_get_next(&it);
    zr_list_remove(&list, 0);
    EXPECT_EQ(zr_list_get_next(&it), nullptr); // position 2 of 2
    EXPECT_EQ(zr_list_iterator_remove(&it), nullptr);

    zr_list_get_first(&list, &it);
    zr_list_get_next(&it);
    zr_list_remove(&list, 0);
    EXPECT_EQ(zr_list_iterator_remove(&it), element(2)); // position 1 of 1: nothing is taken out
    EXPECT_EQ(zr_list_iterator_add(&it, element(7), -1), 2);
    EXPECT_THAT(contents(list), ElementsAre(2, 7));

    EXPECT_EQ(zr_list_get_first(nullptr, &it), nullptr);
    EXPECT_EQ(zr_list_get_next(&it), nullptr);
    EXPECT_EQ(zr_list_get_first(&list, nullptr), nullptr);
    EXPECT_EQ(zr_list_iterator_remove(nullptr), nullptr);
}

TEST(ZrList, HandsEveryElementToTheFreeFunctionAndFreesItself)
{
    auto* list = static_cast<ZrList*>(zr_malloc(sizeof(ZrList)));
    for (int i = 0; i < 3; ++i)
        zr_list_add(list, element(i), 0);
    static std::vector<int> freed; // and how many were left in the list
    static ZrList* freeing;
    freed.clear();
    freeing = list;
    const auto note = [](void* e) {
        freed.push_back(*static_cast<int*>(e));
        freed.push_back(freeing->count);
    };
    EXPECT_EQ(zr_list_special_free(list, note), 0);
    EXPECT_THAT(freed, ElementsAre(2, 2, 1, 1, 0, 0));

    list = static_cast<ZrList*>(zr_malloc(sizeof(ZrList)));
    zr_list_add(list, element(0), -1);
    EXPECT_EQ(zr_list_special_free(list, nullptr), 0);

    list = static_cast<ZrList*>(zr_malloc(sizeof(ZrList)));
    zr_list_add(list, std::malloc(5), -1);
    EXPECT_EQ(zr_list_ofchar_free(list), 0); // the address sanitizer tells of a leak
}
