// Fields out of raw replies, and what a model's name tells.
#include "NetManager/ReplyFields.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

TEST(KxSscanf, ReadsUpToTerminatorWidthOrEnd)
{
    const char* reply = "HTTP/1.1 200 OK\r\nContent-Type: x\r\n\r\nOK a=1\nOK ab=2\r\nOK c=\nOK d=123456\nOK "
                        "a=again\nOK e=end";
    const struct
    {
        const char* key;
        const char* terminator;
        int width;
        int result;
        const char* value;
    } cases[] = {
        {"OK a=", "\n", 8, 1, "1"},         {"OK ab=", "\n", 8, 2, "2\r"}, // a carriage return stays
        {"OK ab=", "\r\n", 8, 1, "2"}, // only the terminator's first character counts
        {"OK c=", "\n", 8, 0, ""},          {"OK d=", "\n", 4, 4, "1234"},
        {"OK d=", "\n", 0, 0, ""},          {"OK e=", "\n", 8, 3, "end"},
        {"OK e=", "", 8, 3, "end"},         {"Content-Type:", "\n", 8, 3, " x\r"},
        {"OK b=", "\n", 8, -1, "########"}, {"ok a=", "\n", 8, -1, "########"},
    };
    for (const auto& row : cases) {
        char value[10];
        std::strcpy(value, "########");
        EXPECT_EQ(KxSscanf(reply, row.key, row.terminator, value, row.width), row.result) << row.key;
        EXPECT_STREQ(value, row.value) << row.key;
    }
}

TEST(KxSscanf, DoesNotPad)
{
    char value[8] = "#######";
    EXPECT_EQ(KxSscanf("k=ab\n", "k=", "\n", value, 7), 2);
    EXPECT_EQ(std::string(value, 8), std::string("ab\0####\0", 8));
}

TEST(KxRStrstr, FindsTheLastOccurrence)
{
    char text[] = {'a', 'b', '\0', 'a', 'b', 'c', 'a'}; // not terminated
    char ab[] = "ab";
    char abc[] = "abcabcabc";
    char empty[] = "";
    EXPECT_EQ(Kx_rStrstr(text, 7, ab, 2), text + 3);
    EXPECT_EQ(Kx_rStrstr(text, 4, ab, 0), text);
    EXPECT_EQ(Kx_rStrstr(text, 7, ab, 1), text + 6);
    EXPECT_EQ(Kx_rStrstr(text, 7, abc, 0), nullptr);
    EXPECT_EQ(Kx_rStrstr(text, 7, empty, 0), nullptr);
    EXPECT_EQ(Kx_rStrstr(text, 0, ab, 2), nullptr);
    EXPECT_EQ(Kx_rStrstr(nullptr, 7, ab, 2), nullptr);
    EXPECT_EQ(Kx_rStrstr(text, 7, nullptr, 2), nullptr);
}

TEST(ChipFamily, FollowsTheModelsLastCharacters)
{
    const std::tuple<const char*, int, int> cases[] = {
        {"KX-C200T", 1, 0}, {"XA", 0, 0},   {"XB", 0, 1},  {"XC", 0, 1},   {"X-SP", 0, 1},
        {"-SP", 0, 1},      {"SP", 1, 0},   {"xSP", 1, 0}, {"A", 0, 0},    {"", 1, 0},
        {"XA\r", 1, 0},     {"XC\r", 1, 0}, {"Xa", 1, 0},  {"X-sp", 1, 0}, {"X-SPA", 0, 0}};
    for (const auto& [text, ti, hisi] : cases) {
        std::string model = text;
        EXPECT_EQ(IsTiIPC(model.data()), ti) << model;
        EXPECT_EQ(IsHisiIPC(model.data()), hisi) << model;
    }
    EXPECT_EQ(IsTiIPC(nullptr), 1);
    EXPECT_EQ(IsHisiIPC(nullptr), 0);
}
