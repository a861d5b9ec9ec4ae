// The search for cameras, against a listener that answers as each test says. Runs in a private network only.
#include <atomic>
#include <future>
#include <sys/resource.h>

#include "SearchTest.h"

extern std::atomic<int> g_nIndex;

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

using Clock = std::chrono::steady_clock;

std::string secondProbe(int lastDigit)
{
    return R"(<?xml version="1.0" encoding="utf-8"?><Envelope xmlns:dn="http://www.onvif.org/ver10/network/wsdl" xmlns="http://www.w3.org/2003/05/soap-envelope"><Header><wsa:MessageID xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing">uuid:f3274dcb-e1c0-497d-a07b-a645364fcc2)" +
           std::to_string(lastDigit) +
           R"(</wsa:MessageID><wsa:To xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing">urn:schemas-xmlsoap-org:ws:2005:04:discovery</wsa:To><wsa:Action xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing">http://schemas.xmlsoap.org/ws/2005/04/discovery/Probe</wsa:Action></Header><Body><Probe xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema" xmlns="http://schemas.xmlsoap.org/ws/2005/04/discovery"><Types>dn:NetworkVideoTransmitter</Types><Scopes /></Probe></Body></Envelope>)";
}

} // namespace

TEST_F(SearchTest, SendsTwoProbesFromOnePort)
{
    const Responder responder;
    g_timing.searchSecond = 20ms;
    g_nIndex = 8;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(LoadDevice(1, 1), -1);
    const auto sent = responder.datagrams();
    ASSERT_THAT(sent, SizeIs(6));
    for (std::size_t i = 0; i < 6; i += 2) {
        EXPECT_THAT(
            sent[i].bytes,
            AllOf(HasSubstr("<wsa:MessageID>uuid:cff0d69d-5934-4723-888e-3a969ff06ed3</wsa:MessageID>"),
                  HasSubstr(">urn:schemas-xmlsoap-org:ws:2005:04:discovery</wsa:To>"),
                  HasSubstr(">http://schemas.xmllocal_soap.org/ws/2005/04/discovery/Probe</wsa:Action>"),
                  HasSubstr("<d:Probe><d:Types/><d:Scopes/></d:Probe>"),
                  testing::EndsWith("</SOAP-ENV:Envelope>\r\n")));
        EXPECT_EQ(sent[i + 1].bytes, secondProbe((8 + static_cast<int>(i) / 2) % 10));
        EXPECT_EQ(sent[i].sourcePort, sent[i + 1].sourcePort);
    }
}

TEST_F(SearchTest, ReportsWhatTheAnswersTell)
{
    const std::string longName(300, 'n');
    struct
    {
        const char* what;
        Texts answers;
        Texts found;
    } rows[] = {
        {"a camera", {reply(match("http://192.168.1.20:8080/onvif"))}, {"192.168.1.20:8080 Door KX-C200T"}},
        {"one without a port, then after one with it",
         {reply(match("http://192.168.1.20/onvif")),
          reply(match("http://10.0.0.1:81/") + match("http://10.0.0.2/"))},
         {"192.168.1.20:80 Door KX-C200T", "10.0.0.1:81 Door KX-C200T", "10.0.0.2:81 Door KX-C200T"}},
        {"several addresses",
         {reply(match("http://10.0.0.1:81/a http://10.0.0.2:82/b"))},
         {"10.0.0.1:81 Door KX-C200T"}},
        {"addresses that are none keep those before",
         {reply(match("http://10.0.0.1:81/") + match("http://[fe80::1]:82/") +
                match("https://10.0.0.3:83/"))},
         Texts(3, "10.0.0.1:81 Door KX-C200T")},
        {"a part of an address",
         {reply(match("http://10.0.0.1:81/") + match("http://20.x"))},
         {"10.0.0.1:81 Door KX-C200T", "20.0.0.1:81 Door KX-C200T"}},
        {"an impossible address",
         {reply(match("http://300.-1.70000.4:-5/"))},
         {"300.-1.70000.4:80 Door KX-C200T"}},
        {"no address", {reply("<d:ProbeMatch><d:Scopes>" + ownScopes + "</d:Scopes></d:ProbeMatch>")}, {}},
        {"no scopes, but an address that the next one inherits",
         {reply("<d:ProbeMatch><d:XAddrs>http://10.0.0.9:89/</d:XAddrs></d:ProbeMatch>" + match("nothing"))},
         {"10.0.0.9:89 Door KX-C200T"}},
        {"other makers",
         {reply(match("http://10.0.0.1/", "onvif://www.onvif.org/model/XK-C1") +
                match("http://10.0.0.1/", "onvif://www.onvif.org/name/KX-C200T"))},
         {}},
        {"an escaped name",
         {reply(match("http://10.0.0.1/", "onvif://www.onvif.org/model/KX-C1 "
                                          "onvif://www.onvif.org/name/Front%20Door"))},
         {"10.0.0.1:80 Front%20Door KX-C1"}},
        {"a name that is not ASCII",
         {reply(match("http://10.0.0.1/", "onvif://www.onvif.org/model/KX-C1 "
                                          "onvif://www.onvif.org/name/Einf\u00fchr\u6d4b"))},
         {"10.0.0.1:80 Einf\u00fchr\u6d4b KX-C1"}},
        {"texts that are too long",
         {reply(match("http://10.0.0.1/", "onvif://www.onvif.org/name/" + longName +
                                              " onvif://www.onvif.org/model/KX-C" + longName))},
         {"10.0.0.1:80 " + longName.substr(0, 127) + " KX-C" + longName.substr(0, 27)}},
        {"SOAP 1.1 with headers that must be understood",
         {envelope(
             "<d:ProbeMatches>" + match("http://10.0.0.1/") + "</d:ProbeMatches>",
             R"(<wsa:RelatesTo s:mustUnderstand="1">uuid:1</wsa:RelatesTo>)"
             R"(<wsa:To s:mustUnderstand="1">x</wsa:To><wsa:Action s:mustUnderstand="1">y</wsa:Action>)",
             "http://schemas.xmlsoap.org/soap/envelope/")},
         {"10.0.0.1:80 Door KX-C200T"}},
        {"namespaces declared where they are used",
         {R"(<Envelope xmlns="http://www.w3.org/2003/05/soap-envelope"><Body>)"
          R"(<ProbeMatches xmlns="http://schemas.xmlsoap.org/ws/2005/04/discovery"><ProbeMatch><Scopes>)" +
          ownScopes +
          "</Scopes><XAddrs>http://10.0.0.1/</XAddrs></ProbeMatch></ProbeMatches></Body></Envelope>"},
         {"10.0.0.1:80 Door KX-C200T"}},
        {"one reported twice",
         {reply(match("http://10.0.0.1/")), reply(match("http://10.0.0.1/"))},
         Texts(2, "10.0.0.1:80 Door KX-C200T")},
    };
    for (const auto& row : rows)
        EXPECT_EQ(search(row.answers), row.found) << row.what;
}

TEST_F(SearchTest, TellsOfAMatchWithoutScopesOnStandardOutput)
{
    testing::internal::CaptureStdout();
    search({reply("<d:ProbeMatch><d:XAddrs>http://10.0.0.9/</d:XAddrs></d:ProbeMatch>")});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "LoadDevice get (*probeMatch)->Scopes == NULL!!");
}

TEST_F(SearchTest, ListensUntilSoManyRoundsBroughtNothing)
{
    const Responder responder;
    g_timing.searchSecond = 25ms;
    struct
    {
        int seconds, rounds, expected;
    } rows[] = {{1, 1, 1}, {3, 2, 6}, {0, 2, 4}, {11, 1, 2}, {1, 0, 3}, {1, 11, 3}, {-1, -1, 6}};
    for (const auto& row : rows) {
        const auto begin = Clock::now();
        EXPECT_EQ(LoadDevice(row.seconds, row.rounds), -1);
        const auto units = (Clock::now() - begin) / std::chrono::duration<double>(g_timing.searchSecond);
        EXPECT_GE(units, row.expected - 0.1) << row.seconds << "s " << row.rounds;
        EXPECT_LT(units, row.expected + 1) << row.seconds << "s " << row.rounds;
    }
}

// A bad datagram costs a round, and nothing of the datagram behind it.
TEST_F(SearchTest, BadDatagramsCountAsRounds)
{
    const std::string good = reply(match("http://10.0.0.1/"));
    const Texts bad = {"",
                       std::string(3, '\0'),
                       "garbage",
                       good.substr(0, good.size() / 2),
                       good.substr(0, good.size() - 4),
                       envelope("<s:Fault><s:Code><s:Value>s:Sender</s:Value></s:Code></s:Fault>"),
                       envelope("<d:Hello><d:XAddrs>http://10.0.0.2/</d:XAddrs></d:Hello>"),
                       envelope("<d:ProbeMatches/>", R"(<x:y xmlns:x="z" s:mustUnderstand="1"/>)")};
    for (const std::string& datagram : bad) {
        EXPECT_THAT(search({datagram, datagram, good}), SizeIs(1)) << datagram;
        EXPECT_THAT(search({datagram, datagram, datagram, good}), IsEmpty()) << datagram;
    }
}

TEST_F(SearchTest, EndsAfterTheDatagramThatBringsTheSeventySecondMatch)
{
    std::string forty;
    for (int i = 0; i < 40; ++i)
        forty += match("http://10.0.0.1/", i % 2 ? ownScopes : "others count, too");
    EXPECT_THAT(search({reply(forty), reply(forty), reply(forty)}), SizeIs(40));
}

TEST_F(SearchTest, ABurstOfAnswersSurvives)
{
    Texts answers;
    for (int i = 1; i <= 72; ++i)
        answers.push_back(
            reply(match("http://10.0.0." + std::to_string(i) + "/", ownScopes + std::string(1200, ' '))));
    EXPECT_THAT(search(answers), SizeIs(72));
}

TEST_F(SearchTest, AnswersThatCountForNothingDoNotKeepItForEver)
{
    std::atomic<bool> over{false};
    const Responder responder([&over](std::size_t n, const Responder::Send& send) {
        while (n == 0 && !over) {
            send(reply(""));
            std::this_thread::sleep_for(1ms);
        }
    });
    g_timing.searchInAll = 100ms;
    const auto begin = Clock::now();
    EXPECT_EQ(LoadDevice(10, 10), 0);
    over = true;
    EXPECT_LT(Clock::now() - begin, 1s);
}

TEST_F(SearchTest, LeavesEachAnswerInAFile)
{
    const std::string first = reply(match("http://10.0.0.1/"));
    const std::string fault = envelope("<s:Fault/>");
    search({first, "no envelope, no file", fault});
    EXPECT_EQ(dump(0), first);
    EXPECT_EQ(dump(1), fault);
    EXPECT_EQ(dump(2), lastReply());

    search({reply("")}); // each search counts from 0
    EXPECT_EQ(dump(0), reply(""));
}

TEST_F(SearchTest, TheNumbersOfTheFilesGoOnWhenOneCannotBeWritten)
{
    std::filesystem::create_directory("D:\\onvif\\discovery_0.txt");
    search({reply(""), reply(match("http://10.0.0.1/"))});
    EXPECT_EQ(dump(1), reply(match("http://10.0.0.1/")));
}

TEST_F(SearchTest, WithoutASocketThereIsNoSearch)
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none{.rlim_cur = 0, .rlim_max = limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(LoadDevice(10, 10), -1);
    setrlimit(RLIMIT_NOFILE, &limit);
}

TEST_F(SearchTest, OneSearchAtATime)
{
    const Responder responder(toTheFirst({reply(match("http://10.0.0.1/"))}));
    g_timing.searchSecond = 50ms;
    std::promise<int> second;
    const auto callback = [](SearchDeviceInfo*, void* user) {
        static_cast<std::promise<int>*>(user)->set_value(Kx_Sdk_SearchIpc(Found::add, nullptr));
    };
    ASSERT_EQ(Kx_Sdk_SearchIpc(callback, &second), 0);
    EXPECT_EQ(second.get_future().get(), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_BUSY);
    untilOver();
    EXPECT_EQ(m_pSearchUser, nullptr);

    Found found;
    EXPECT_EQ(Kx_Sdk_SearchIpc(Found::add, &found), 0);
    Kx_Sdk_Destroy();
    EXPECT_EQ(Kx_Sdk_SearchIpc(Found::add, &found), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_NOT_INITIALISED);
}

TEST_F(SearchTest, DestroyWaitsForASearchAndInitBeginsAnew)
{
    for (int i = 0; i < 2; ++i) {
        const Responder responder(toTheFirst({reply(match("http://10.0.0.1/")), lastReply()}));
        Found found;
        ASSERT_EQ(Kx_Sdk_SearchIpc(Found::add, &found), 0);
        Kx_Sdk_Destroy();
        EXPECT_THAT(found.texts, ElementsAre("10.0.0.1:80 Door KX-C200T"));
        EXPECT_EQ(m_fSearchCallBack, nullptr);
        EXPECT_EQ(m_pThreadSearch, nullptr);
        ASSERT_EQ(Kx_Sdk_Init(), 0);
    }
}

TEST_F(SearchTest, WithoutACallbackItRefusesNobody)
{
    g_timing.searchSecond = 50ms;
    const Responder responder(
        [](std::size_t, const Responder::Send& send) { send(reply(match("http://10.0.0.1/"))); });
    ASSERT_EQ(Kx_Sdk_SearchIpc(nullptr, nullptr), 0);
    ASSERT_EQ(Kx_Sdk_SearchIpc(nullptr, nullptr), 0);
    while (responder.datagrams().size() < 4)
        std::this_thread::sleep_for(1ms);
    Kx_Sdk_Destroy();
}
