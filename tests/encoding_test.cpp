// The encodings that requests are made of.
#include "NetManager/Encoding.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include <gtest/gtest.h>

TEST(Base64, EncodesWithPadding)
{
    const std::pair<std::string, const char*> cases[] = {{"", ""},
                                                         {"f", "Zg=="},
                                                         {"fo", "Zm8="},
                                                         {"foo", "Zm9v"},
                                                         {"foobar", "Zm9vYmFy"},
                                                         {"admin:", "YWRtaW46"},
                                                         {"\xFF\xFE\xFD", "//79"},
                                                         {std::string("\0\0", 2), "AAA="}};
    for (const auto& [plain, encoded] : cases) {
        const std::unique_ptr<char, decltype(&std::free)> text(
            base64Encode(plain.data(), static_cast<unsigned>(plain.size())), std::free);
        EXPECT_STREQ(text.get(), encoded);
    }
    EXPECT_EQ(base64Encode(nullptr, 3), nullptr);
}

TEST(EncodeUrl, EscapesBlanksOnly)
{
    std::string out(urlBufferSize, '#');
    encodeURL(" a b&c=%20:\xC3\xA4", out.data());
    EXPECT_STREQ(out.c_str(), "%20a%20b&c=%20:\xC3\xA4");
    EXPECT_EQ(out.find('#'), std::string::npos); // the whole buffer is written
}

TEST(EncodeUrl, StaysInsideItsBuffer)
{
    const std::pair<std::string, std::size_t> cases[] = {{std::string(20479, 'a'), 20479},
                                                         {std::string(20480, 'a'), 20479},
                                                         {std::string(20481, 'a'), 0},
                                                         {std::string(20480, ' '), 20479},
                                                         {std::string(20478, 'a') + " b", 20479}};
    for (const auto& [source, length] : cases) {
        std::string out(urlBufferSize + 1, '#');
        encodeURL(source.c_str(), out.data());
        EXPECT_EQ(std::strlen(out.c_str()), length);
        EXPECT_EQ(out.back(), '#');
    }
}

TEST(EncodeUri, EncodesEvenLettersAndDigits)
{
    EXPECT_EQ(EncodeURI("a b"), "%61%20%62");
    EXPECT_EQ(EncodeURI("!#$&'()*./:;=?@"), "!#$&'()*./:;=?@");
    EXPECT_EQ(EncodeURI("0,-\n\xE9"), "%30%2C%2D% A%E9");
    EXPECT_EQ(EncodeURI(std::string(10000, 'x').c_str()).size(), 30000U);
    EXPECT_EQ(EncodeURI(""), "");
}

TEST(GetUrlEncode, EncodesAllButLettersAndDigits)
{
    char out[1024];
    get_url_encode("a b", 3, out);
    EXPECT_STREQ(out, "a%20b");
    get_url_encode("Z9\0\n.\xFF", 6, out);
    EXPECT_STREQ(out, "Z9%00%0A%2E%FF");
    get_url_encode("abc", 0, out);
    EXPECT_STREQ(out, "");
}

TEST(GetUrlEncode, CutsBetweenTwoCharacters)
{
    const std::pair<std::string, std::size_t> cases[] = {{std::string(2000, 'a'), 1023},
                                                         {std::string(2000, ' '), 1020},
                                                         {std::string(1019, 'a') + " b", 1023},
                                                         {std::string(1020, 'a') + " b", 1020}};
    for (const auto& [source, length] : cases) {
        std::string out(1025, '#');
        get_url_encode(source.data(), static_cast<unsigned>(source.size()), out.data());
        EXPECT_EQ(std::strlen(out.c_str()), length);
        EXPECT_EQ(out.back(), '#');
    }
}
