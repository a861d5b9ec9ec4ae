// The INI text reader: lines, lookups in a given text, the loaded file and its edits.
#include "inirw/inirw.h"

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include "Core/PrintText.h"
#include "inirw/IniFile.h"
#include "inirw/IniScanner.h"

namespace
{

using namespace std::string_literals;

/// The lines of a text as GetLine tells them: kind, meaningful part, and the rest from the comment on.
std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::vector<char> part(inirw::lineBufferSize);
    for (const char *at = text.data(), *end = at + text.size(), *comment, *lineEnd, *next; at != end;
         at = next) {
        part[0] = '\0';
        const int kind =
            GetLine(at, static_cast<std::size_t>(end - at), part.data(), &comment, &lineEnd, &next);
        lines.push_back(std::to_string(kind) + part.data() + "|" + std::string(comment, lineEnd));
    }
    return lines;
}

TEST(IniLines, AreSplitAndClassified)
{
    const std::tuple<const char*, std::string, std::vector<std::string>> rows[] = {
        {"kinds", "[S]\nk=v\nword\n", {"3[S]|", "4k=v|", "1word|"}},
        {"all line ends", "a=1\r\nb=2\nc=3\rd=4\n\re=5", {"4a=1|", "4b=2|", "4c=3|", "4d=4|", "4e=5|"}},
        {"an empty line is blank", "a=1\n\nb=2", {"4a=1|", "2|", "4b=2|"}},
        {"an empty line of CR LF", "a=1\r\n\r\nb=2", {"4a=1|", "2|", "4b=2|"}},
        {"two line ends close the text", "a=1\n\n", {"4a=1|"}},
        {"a line end takes one zero byte along", "a=1\n\0\0b=2"s, {"4a=1|", "2|", "4b=2|"}},
        {"a zero byte ends a line", "a=1\0b=2\n\0c=3\n\n\0d=4"s, {"4a=1|", "4b=2|", "4c=3|", "4d=4|"}},
        {"comment lines are blank", "; k=v\n  # k=v\n \t\n''\n", {"2|; k=v", "2|  # k=v", "2|", "2|"}},
        {"the blanks belong to the comment", "k = v \t; note\n", {"4k = v| \t; note"}},
        {"a closing blank counts twice", "k=val ;note  \n", {"4k=v| ;note  "}},
        {"more blanks than content", "k=v;note     \n", {"1|;note     "}},
        {"a comment begins but once", "k=v ;a ;b\n", {"4k=v| ;a ;b"}},
        {"a further comment character counts no blanks off", "k=val ; ;  \n", {"1k| ; ;  "}},
        {"nor does a quote", "k=\"a \"\n", {"4k=\"a |"}},
        {"nor a quoted comment character", "k=\"a ;\" ;n\n", {"4k=\"a ;|\" ;n"}},
        {"every blank counts", "k=v \t\v\f;n\n", {"4k=v| \t\v\f;n"}},
        {"quotes hide a comment", "k=\"a;b\"\nk='a#b'\n", {"4k=\"a;b\"|", "4k='a#b'|"}},
        {"a quote inside the other kind", "k=\"it's;\" ;n\n", {"4k=\"it's;\"| ;n"}},
        {"an open quote lasts one line", "k=\"a;b\nk=a;b\n", {"4k=\"a;b|", "4k=a|;b"}},
        {"a header keeps no trailing comment", " [ S ]  ; x=y\n", {"3[ S ]|  ; x=y"}},
        {"a bracket alone is no header", "[S\n[S=1\na=[1]\n", {"1[S|", "4[S=1|", "4a=[1]|"}},
        {"high bytes are text", "\xa0=\xff\n", {"4\xa0=\xff|"}},
    };
    for (const auto& [what, text, lines] : rows)
        EXPECT_EQ(linesOf(text), lines) << what;
}

TEST(IniLines, PartLongerThanTheLineBufferMakesAnOtherLine)
{
    const std::string fits = "k=" + std::string(inirw::lineBufferSize - 3, 'v');
    EXPECT_EQ(linesOf(fits), std::vector{"4" + fits + "|"});
    EXPECT_EQ(linesOf(fits + "v\n"), std::vector{"1|"s});
    EXPECT_EQ(iniGetIntFromStr((fits + "v\nk=7").c_str(), nullptr, "k", 1), 7);
}

TEST(StrStrip, RemovesWhiteSpaceAtBothEnds)
{
    for (std::string text : {" \t\r\n\v\fa b\f ", "a b", "a b ", " a b"}) {
        StrStrip(text.data());
        EXPECT_STREQ(text.c_str(), "a b");
    }
    char blank[] = " \n ";
    StrStrip(blank);
    EXPECT_STREQ(blank, "");
}

TEST(PrintTextAsFormat, HalvesDoublePercentAndKeepsTheRest)
{
    char out[8] = "???????";
    EXPECT_EQ(printTextAsFormat(out, sizeof out, "a%%s%n%"), 6U);
    EXPECT_STREQ(out, "a%s%n%");
    EXPECT_EQ(printTextAsFormat(out, 3, "%%%%%%"), 2U);
    EXPECT_STREQ(out, "%%");
    EXPECT_EQ(printTextAsFormat(out, 0, "x"), 0U);
    EXPECT_STREQ(out, "%%");
    EXPECT_EQ(printTextAsFormat(out, sizeof out, nullptr), 0U);
    EXPECT_STREQ(out, "");
}

TEST(IniLookup, FindsTheValueOfTheFirstMatchingLine)
{
    struct Row
    {
        const char* text;
        const char* section;
        const char* key;
        int found;
        const char* value;
    };
    const Row rows[] = {
        {"a = 1\n[S]\na = 2\n", nullptr, "a", 1, "1"},
        {"a = 1\n[S]\na = 2\n", "S", "a", 1, "2"},
        {"a = 1\n[S]\na = 2\n", "T", "a", 0, "default"},
        {"[S]\nb=1\n[T]\na=2\n", "S", "a", 0, "default"},      // the section has ended
        {"[S]\nb=1\n[T]\n[S]\na=2\n", "S", "a", 0, "default"}, // and is not taken up again
        {"[s]\na=1\n[ S\t]\nA=2\na=3\n", "S", "a", 1, "3"},    // exact names, blanks in the brackets
        {"[S]\na=1\n", nullptr, "a", 0, "default"},
        {"[]\na=1\n", "", "a", 1, "1"},
        {"[]\na=1\n", nullptr, "a", 0, "default"}, // no name is a header's name, too
        {"b=1\ra=2\r[S]\rb=3\ra=4\r", nullptr, "a", 1, "2"},
        {"b=1\ra=2\r[S]\rb=3\ra=4\r", "S", "a", 1, "4"},
        {"xa=1\nax=2\nb=a\na;=3\n a\t=\t4 5\n", nullptr, "a", 1, "4 5"}, // the key alone, not part of another
        {"a=x=y\r\n", nullptr, "a", 1, "x=y"},
        {"a[0]=1\n[a=2\na=3\n", nullptr, "a", 1, "3"}, // brackets that make no header
        {"a=1\na=2\n", nullptr, "a", 1, "1"},
        {"a = \na = 2\n", nullptr, "a", 0, "default"}, // an empty value ends the search
        {"=v\n", nullptr, "", 1, "v"},
        {"k = v ; note\n", nullptr, "k", 1, "v"},
        {"", nullptr, "k", 0, "default"},
    };
    for (const Row& row : rows) {
        char out[16] = "?";
        EXPECT_EQ(iniGetValueFromStr(row.text, row.section, row.key, out, sizeof out, "default"), row.found)
            << row.text;
        EXPECT_STREQ(out, row.value) << row.text;
    }
}

TEST(IniLookup, CutsValueAndDefaultToTheBuffer)
{
    char out[] = "????????";
    EXPECT_EQ(iniGetValueFromStr("k=abcdef", nullptr, "k", out, 4, nullptr), 1);
    EXPECT_EQ(std::string(out, 8), "abc\0????"s);
    EXPECT_EQ(iniGetValueFromStr("k=abcdef", nullptr, "x", out, 3, "default"), 0);
    EXPECT_EQ(std::string(out, 8), "de\0\0????"s);
    char quoted[] = "\"x\"";
    EXPECT_EQ(iniGetStringFromStr("k=abcdef", nullptr, "k", quoted, 0, "default"), 1);
    EXPECT_STREQ(quoted, "\"x\"");
}

TEST(IniLookup, NullArgumentsDoNoHarm)
{
    char out[8] = "old";
    EXPECT_EQ(iniGetValueFromStr("k=v", nullptr, "x", out, sizeof out, out), 0);
    EXPECT_STREQ(out, "old");
    EXPECT_EQ(iniGetValueFromStr("k=v", nullptr, nullptr, out, sizeof out, "default"), 0);
    EXPECT_STREQ(out, "");
    out[0] = 'o';
    EXPECT_EQ(iniGetStringFromStr(nullptr, nullptr, "k", out, sizeof out, "default"), 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(iniGetStringFromStr("k=v", nullptr, "k", nullptr, 8, nullptr), 1);
    EXPECT_EQ(iniGetIntFromStr(nullptr, nullptr, nullptr, 5), 5);
    EXPECT_EQ(GetLine(nullptr, 9, nullptr, nullptr, nullptr, nullptr), 2);
    StrStrip(nullptr);
    EXPECT_EQ(iniFileLoad(nullptr), 0);
    EXPECT_EQ(iniStrLoad(nullptr), 0);
}

TEST(IniStrings, LoseTheQuotesAroundThem)
{
    const std::tuple<const char*, int, const char*> rows[] = {
        {"k=\"x y\"", 16, "x y"}, {"k='x y'", 16, "x y"},    {"k=\"x'", 16, "\"x'"}, {"k=\"\"", 16, ""},
        {"k=\"", 16, "\""},       {"k=\"abc\"", 5, "\"abc"}, // the cut takes the closing quote first
    };
    for (const auto& [text, size, value] : rows) {
        char out[16];
        EXPECT_EQ(iniGetStringFromStr(text, nullptr, "k", out, size, nullptr), 1) << text;
        EXPECT_STREQ(out, value) << text;
    }
    char raw[16];
    iniGetValueFromStr("k=\"x y\"", nullptr, "k", raw, sizeof raw, nullptr);
    EXPECT_STREQ(raw, "\"x y\"");
    iniGetStringFromStr("", nullptr, "k", raw, sizeof raw, "'d'");
    EXPECT_STREQ(raw, "'d'");
}

TEST(IniNumbers, AreReadInTheirBase)
{
    const char* text =
        "hex=0x1F\noct=010\nneg=-2\nwide=0x1FFFFFFFF\nword=on\nquoted=\"5\"\nempty=\n"
        "big=9223372036854775807\nhuge=99999999999999999999\nlow=-99999999999999999999\nreal=-1.5e3\n";
    EXPECT_EQ(iniGetIntFromStr(text, nullptr, "hex", 0), 31);
    EXPECT_EQ(iniGetIntFromStr(text, nullptr, "oct", 0), 8);
    EXPECT_EQ(iniGetIntFromStr(text, nullptr, "wide", 0), -1);
    EXPECT_EQ(iniGetIntFromStr(text, nullptr, "low", 9), 0); // the least long, cut
    EXPECT_EQ(iniGetIntFromStr(text, nullptr, "word", 9), 0);
    EXPECT_EQ(iniGetIntFromStr(text, nullptr, "quoted", 9), 0);
    EXPECT_EQ(iniGetIntFromStr(text, nullptr, "empty", 9), 9);
    EXPECT_EQ(iniGetUlongFromStr(text, nullptr, "wide", 0), 0x1FFFFFFFFUL);
    EXPECT_EQ(iniGetUlongFromStr(text, nullptr, "none", 9), 9U);
    EXPECT_EQ(iniGetLonglongFromStr(text, nullptr, "big", 0), 9223372036854775807LL);
    EXPECT_EQ(iniGetLonglongFromStr(text, nullptr, "huge", 0), 9223372036854775807LL);
    EXPECT_EQ(iniGetLonglongFromStr(text, nullptr, "hex", 9), 0);    // decimal only
    const std::string tooLong = "k=" + std::string(61, '0') + "178"; // only 63 characters are read
    EXPECT_EQ(iniGetLonglongFromStr(tooLong.c_str(), nullptr, "k", 0), 17);
    EXPECT_EQ(iniGetUlonglongFromStr(text, nullptr, "neg", 0), ~1ULL);
    EXPECT_EQ(iniGetUlonglongFromStr(text, nullptr, "none", ~0ULL), ~0ULL);
    EXPECT_EQ(iniGetDoubleFromStr(text, nullptr, "real", 0), -1500.0);
    EXPECT_EQ(iniGetDoubleFromStr(text, nullptr, "none", 2.5), 2.5);
}

class IniFile : public testing::Test
{
protected:
    IniFile()
    {
        static std::atomic<int> count = 0;
        path_ = testing::TempDir() + "inirw." + std::to_string(getpid()) + "." + std::to_string(++count);
    }
    ~IniFile() override
    {
        iniFileFree();
        std::filesystem::remove(path_);
    }

    int load(const std::string& text)
    {
        std::ofstream(path_, std::ios::binary) << text;
        return iniFileLoad(path_.c_str());
    }
    std::string content() const
    {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string path_;
};

TEST_F(IniFile, AnswersTheGettersUntilItIsFreed)
{
    ASSERT_EQ(load("a=1\0n = 0x10\0[S]\0a=1\0s = 'x y'\nd = 0.5"s), 1); // zero bytes end lines, too
    char out[16];
    EXPECT_EQ(iniGetInt(nullptr, "n", 0), 16);
    EXPECT_EQ(iniGetUlong(nullptr, "n", 0), 16U);
    EXPECT_EQ(iniGetDouble("S", "d", 0), 0.5);
    EXPECT_EQ(iniGetString("S", "s", out, sizeof out, nullptr), 1);
    EXPECT_STREQ(out, "x y");
    iniFileFree();
    EXPECT_EQ(iniGetValue("S", "s", out, sizeof out, "default"), 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(iniSetString("S", "s", "v"), 0);
}

TEST_F(IniFile, NullKeyIsNeitherFoundNorSet)
{
    ASSERT_EQ(load("=1\n"), 1);
    EXPECT_EQ(iniGetInt(nullptr, nullptr, 9), 9);
    EXPECT_EQ(iniSetString(nullptr, nullptr, "2"), 0);
    EXPECT_EQ(iniSetString("S", nullptr, "2"), 0);
    EXPECT_EQ(content(), "=1\n");
}

TEST_F(IniFile, PathOfMoreThan255CharactersIsNotTaken)
{
    ASSERT_EQ(load("n=1"), 1);
    std::string path = path_;
    path.insert(path.rfind('/'), 255 - path.size(), '/'); // the same file
    EXPECT_EQ(iniFileLoad(path.c_str()), 1);
    EXPECT_EQ(iniGetInt(nullptr, "n", 9), 1);
    EXPECT_EQ(iniFileLoad(("/" + path).c_str()), 0);
    EXPECT_EQ(iniGetInt(nullptr, "n", 9), 9); // the old one is forgotten
    // Its path is not: it is the one a text loaded later is written to.
    ASSERT_EQ(iniStrLoad("n=2\n;"), 1);
    EXPECT_EQ(iniSetString(nullptr, "n", "3"), 1);
    EXPECT_EQ(content(), "n = 3\n"s + '\0');
}

TEST_F(IniFile, LoadFailsWithoutAFileAndForgetsTheOldOne)
{
    ASSERT_EQ(load("n=1"), 1);
    EXPECT_EQ(iniFileLoad((path_ + ".none").c_str()), 0);
    EXPECT_EQ(iniGetInt(nullptr, "n", 9), 9);
    ASSERT_EQ(load(""), 1);
    EXPECT_EQ(iniSetString("S", "k", "v"), 1); // an empty file counts as loaded
}

TEST_F(IniFile, LoadedTextLosesItsLastCharacterAndDoubledPercents)
{
    EXPECT_EQ(iniStrLoad("p=5%%d\nn=123"), 1);
    char out[16];
    iniGetValue(nullptr, "p", out, sizeof out, nullptr);
    EXPECT_STREQ(out, "5%d");
    EXPECT_EQ(iniGetInt(nullptr, "n", 0), 123); // the percent sign saved made room for it
    EXPECT_EQ(iniStrLoad("n=123"), 1);
    EXPECT_EQ(iniGetInt(nullptr, "n", 0), 12);
    EXPECT_EQ(iniStrLoad(""), 1);
    // Every byte left over is zero, also where another text stood before.
    ASSERT_EQ(iniStrLoad(std::string(64, 'x').c_str()), 1);
    ASSERT_EQ(iniStrLoad(("n=1" + std::string(60, '%') + ";").c_str()), 1);
    EXPECT_EQ(std::string(gBuffer.get(), static_cast<std::size_t>(gBuflen)),
              "n=1" + std::string(30, '%') + ";" + std::string(30, '\0'));
}

TEST_F(IniFile, IsEditedInPlace)
{
    struct Row
    {
        const char* what;
        std::string before;
        const char* section;
        const char* value; // of the key "k"
        int done;
        std::string after;
    };
    const Row rows[] = {
        {"replaced, comment and line end kept", "[S]\r\nk=1 ; n\r\nx=2", "S", "3", 1,
         "[S]\r\nk = 3 ; n\r\nx=2"},
        {"the first of two is replaced", "k=1\nk=2\n", nullptr, "3", 1, "k = 3\nk=2\n"},
        {"deleted", "a=1\nk=2 ;n\nb=3\n", nullptr, nullptr, 1, "a=1\nb=3\n"},
        {"an empty value is replaced", "k=\n", nullptr, "3", 1, "k = 3\n"},
        {"added after the last key", "[S]\na=1\n;c\n\n[T]\n", "S", "3", 1, "[S]\na=1\nk = 3\n;c\n\n[T]\n"},
        {"added to an empty section", "[S]\n[T]\nk=1\n", "S", "3", 1, "[S]\nk = 3\n[T]\nk=1\n"},
        {"added where the last line is open", "[S]\na=1", "S", "3", 1, "[S]\na=1\nk = 3\n"},
        {"added behind CR", "[S]\ra=1\r", "S", "3", 1, "[S]\ra=1\rk = 3\n"},
        {"added behind a zero byte", "[S]\na=1\0"s, "S", "3", 1, "[S]\na=1\0k = 3\n"s},
        {"added before the first header", ";c\na=1\n[T]\nk=1\n", nullptr, "3", 1,
         ";c\na=1\nk = 3\n[T]\nk=1\n"},
        {"new section", "a=1\n", "S", "3", 1, "a=1\n\n[S]\nk = 3\n"},
        {"nothing to delete", "[S]\na=1\n", "S", nullptr, 0, "[S]\na=1\n"},
        {"no section to delete from", "a=1\n", "S", nullptr, 0, "a=1\n"},
        {"no key line for the null section", "[S]\nk=1\n", nullptr, "3", 0, "[S]\nk=1\n"},
    };
    for (const Row& row : rows) {
        ASSERT_EQ(load(row.before), 1);
        EXPECT_EQ(iniSetString(row.section, "k", row.value), row.done) << row.what;
        EXPECT_EQ(content(), row.after) << row.what;
        char reread[8];
        iniGetValue(row.section, "k", reread, sizeof reread, "");
        if (row.done) {
            EXPECT_STREQ(reread, row.value ? row.value : "") << row.what;
        }
    }
}

TEST_F(IniFile, NumbersAreWrittenInTheirBase)
{
    ASSERT_EQ(load("[S]\n"), 1);
    iniSetInt("S", "h", 31, 16);
    iniSetInt("S", "o", 8, 8);
    iniSetInt("S", "d", -5, 10);
    EXPECT_EQ(content(), "[S]\nh = 0x1f\no = 010\nd = -5\n");
    EXPECT_EQ(iniGetInt("S", "h", 0), 31);
    EXPECT_EQ(iniGetInt("S", "o", 0), 8);
    EXPECT_EQ(iniGetInt("S", "d", 0), -5);
}

TEST_F(IniFile, IsNotEditedWhereItCannotBeWritten)
{
    ASSERT_EQ(load("k=1\n"), 1);
    std::filesystem::remove(path_);
    std::filesystem::create_directory(path_);
    EXPECT_EQ(iniSetString(nullptr, "k", "2"), 0);
    EXPECT_EQ(iniSetString("S", "k", "2"), 0);
    EXPECT_EQ(iniGetInt(nullptr, "k", 0), 1); // what was loaded is still there
    ASSERT_EQ(iniFileLoad("/dev/full"), 1);
    EXPECT_EQ(iniSetString("S", "k", "2"), 0); // opened, but the disk is full
}

} // namespace
