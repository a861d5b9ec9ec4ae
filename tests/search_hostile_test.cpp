// Answers to a search that mean harm, or mean nothing. None costs more than its round.
#include "SearchTest.h"

using testing::ElementsAre;

namespace
{

constexpr std::size_t longestDatagram = 65507;

std::string repeated(const std::string& text, std::size_t length)
{
    std::string all;
    while (all.size() + text.size() <= length)
        all += text;
    return all;
}

std::string fileText(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

/// Each datagram is answered to a search, and a good one after it, which must be reported.
class HostileAnswers : public SearchTest
{
protected:
    static void expectHarmless(const std::string& datagram, const std::string& what)
    {
        const int before = g_nIndex;
        const Texts found = search({datagram, datagram, reply(match("http://10.9.8.7:65/"))});
        ASSERT_FALSE(found.empty()) << what;
        EXPECT_EQ(found.back(), "10.9.8.7:65 Door KX-C200T") << what;
        EXPECT_EQ(g_nIndex, before + 1) << what << " made it send something";
    }
};

TEST_F(HostileAnswers, OfAllKinds)
{
    int count = 0;
    for (const auto& file : std::filesystem::directory_iterator(KX_SEARCH_REPLIES)) {
        expectHarmless(fileText(file.path()), file.path().filename());
        ++count;
    }
    EXPECT_GT(count, 20);
}

TEST_F(HostileAnswers, AsLongAsADatagramCanBe)
{
    const std::string good = reply(match("http://10.0.0.1/", ownScopes + " @"));
    const auto filledWith = [&good](const std::string& text) {
        std::string whole = good;
        return whole.replace(whole.find('@'), 1, repeated(text, longestDatagram - good.size() + 1));
    };
    for (const auto& [what, datagram] : {
             std::pair{"a long scope", filledWith("x")},
             std::pair{"many scopes", filledWith("onvif://www.onvif.org/name/ ")},
             std::pair{"many elements", filledWith("<x/>")},
             std::pair{"deep elements", filledWith("<x>")},
             std::pair{"many characters by number", filledWith("&#120;")},
             std::pair{"zeros", std::string(longestDatagram, '\0')},
             std::pair{"nothing but depth", repeated("<d:ProbeMatches>", longestDatagram)},
             std::pair{"no end of a tag", "<" + std::string(longestDatagram - 1, 'a')},
             std::pair{"attributes", "<a " + repeated("b='c' ", longestDatagram - 3)},
             std::pair{"namespaces", "<a " + repeated("xmlns:b='c' ", longestDatagram - 3)},
             std::pair{"deep namespaces", repeated("<a xmlns:b='c' xmlns='d'>", longestDatagram)},
         })
        expectHarmless(datagram, what);
}

TEST_F(HostileAnswers, WithMoreMatchesThanASearchCounts)
{
    std::string matches = repeated("<d:ProbeMatch/>", 60'000);
    EXPECT_THAT(search({reply(matches), reply(match("http://10.9.8.7:65/"))}),
                ElementsAre("10.9.8.7:65 Door KX-C200T"));
    matches = repeated("<d:ProbeMatch><d:Scopes/><d:XAddrs/></d:ProbeMatch>", 60'000);
    EXPECT_THAT(search({reply(matches), reply(match("http://10.9.8.7:65/"))}), testing::IsEmpty());
}
