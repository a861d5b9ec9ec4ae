// The search for cameras, against a listener that answers as each test says. Runs in a private network only.
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <future>
#include <sys/resource.h>
#include <sys/time.h>

#include "KxSearch/Search/DiscoveryLookupBinding.h"
#include "SearchTest.h"
#include "soapH.h"

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
    const std::tuple<const char*, Texts, Texts> rows[] = {
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
         {reply(match("http://10.0.0.1/", "onvif://www.onvif.org/model/KX-B1") +
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
        {"a name over two lines",
         {reply(match("http://10.0.0.1/",
                      "onvif://www.onvif.org/name/a\n\tb onvif://www.onvif.org/model/KX-C1"))},
         {"10.0.0.1:80 a\n\tb KX-C1"}},
        {"references between elements",
         {reply("<d:ProbeMatch><d:Scopes href='#s'/><d:XAddrs>http://10.0.0.1/</d:XAddrs></d:ProbeMatch>"
                "<d:ProbeMatch><d:Scopes id='s'>" +
                ownScopes + "</d:Scopes></d:ProbeMatch>")},
         {}},
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
    for (const auto& [what, answers, found] : rows)
        EXPECT_EQ(search(answers), found) << what;
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
    g_timing.searchSecond = 30ms;
    struct
    {
        int seconds, rounds, expected;
    } rows[] = {{1, 1, 1}, {3, 2, 6},  {10, 1, 10}, {1, 10, 10},
                {0, 2, 4}, {11, 1, 2}, {1, 11, 3},  {-1, 0, 6}};
    for (const auto& row : rows) {
        const auto begin = Clock::now();
        EXPECT_EQ(LoadDevice(row.seconds, row.rounds), -1);
        const auto units = (Clock::now() - begin) / std::chrono::duration<double>(g_timing.searchSecond);
        EXPECT_GE(units, row.expected - 0.1) << row.seconds << "s " << row.rounds;
        EXPECT_LT(units, row.expected + 3) << row.seconds << "s " << row.rounds;
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

TEST_F(SearchTest, OnlyMatchesWithScopesCount)
{
    std::string scopeless;
    for (int i = 0; i < 80; ++i)
        scopeless += "<d:ProbeMatch><d:XAddrs>http://10.0.0.9/</d:XAddrs></d:ProbeMatch>";
    testing::internal::CaptureStdout();
    EXPECT_THAT(search({reply(scopeless), reply(match("http://10.0.0.1/"))}), SizeIs(1));
    testing::internal::GetCapturedStdout();
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
            send(reply(
                "<d:ProbeMatch><d:XAddrs>http://10.0.0.9/</d:XAddrs></d:ProbeMatch>")); // without scopes
            std::this_thread::sleep_for(1ms);
        }
    });
    g_timing.searchWasted = 500ms;
    testing::internal::CaptureStdout();
    const auto begin = Clock::now();
    EXPECT_EQ(LoadDevice(10, 10), 0);
    over = true;
    EXPECT_LT(Clock::now() - begin, 50s);
    testing::internal::GetCapturedStdout();
}

// Whoever knows the search's port could make it send to anybody.
TEST_F(SearchTest, NothingMakesItSendMoreThanTheProbes)
{
    const Responder responder([](std::size_t n, const Responder::Send& send) {
        if (n > 0)
            return;
        send("POST / HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 5\r\n\r\n");
        send(" \t\r\nGET / HTTP/1.1\r\nExpect: 100-continue\r\n\r\n");
        send(lastReply());
    });
    EXPECT_EQ(LoadDevice(1, 3), 0);
    std::this_thread::sleep_for(50ms); // what it had sent would be there by now
    EXPECT_THAT(responder.datagrams(), SizeIs(2));
}

// After one more try of the first message.
TEST_F(SearchTest, EndsAtOnceWhenTheProbesCannotBeSent)
{
    ASSERT_EQ(std::system("ip route del 239.0.0.0/8"), 0);
    const int before = g_nIndex;
    const auto begin = Clock::now();
    EXPECT_EQ(LoadDevice(10, 10), -1);
    EXPECT_GE(Clock::now() - begin, 50ms);
    EXPECT_LT(Clock::now() - begin, 9s);
    EXPECT_EQ(g_nIndex, before + 1);
    ASSERT_EQ(std::system("ip route add 239.0.0.0/8 dev lo src 127.0.0.1"), 0);
}

// Also beside signals, each of which cuts a wait short.
TEST_F(SearchTest, TakesThreeRoundsOfTwoSeconds)
{
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    std::signal(SIGALRM, [](int) {});
    const itimerval often{.it_interval = {.tv_sec = 0, .tv_usec = 2000},
                          .it_value = {.tv_sec = 0, .tv_usec = 2000}};
    setitimer(ITIMER_REAL, &often, nullptr);
    g_timing.searchSecond = 100ms;
    const auto begin = Clock::now();
    ASSERT_EQ(Kx_Sdk_SearchIpc(Found::add, nullptr), 0);
    untilOver();
    const auto time = Clock::now() - begin;
    setitimer(ITIMER_REAL, nullptr, nullptr);
    EXPECT_GE(time, 590ms);
    EXPECT_LT(time, 900ms + 600ms);
}

TEST_F(SearchTest, LeavesEachAnswerInAFile)
{
    const std::string first = reply(match("http://10.0.0.1/"));
    const std::string fault = envelope("<s:Fault/>");
    search({first, "no envelope, no file", fault});
    EXPECT_EQ(dump(0), first);
    EXPECT_EQ(dump(1), fault);
    EXPECT_EQ(dump(2), lastReply());

    std::string withZero = reply(match("http://10.0.0.1/", "Do@or"));
    withZero[withZero.find('@')] = '\0';
    search({withZero}); // each search counts from 0
    EXPECT_EQ(dump(0), withZero.substr(0, withZero.find('\0')));
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

TEST_F(SearchTest, WithoutACallbackItRefusesNobodyAndReportsNothing)
{
    g_timing.searchSecond = 50ms;
    const Responder responder(
        [](std::size_t, const Responder::Send& send) { send(reply(match("http://10.0.0.1/"))); });
    Found found;
    ASSERT_EQ(Kx_Sdk_SearchIpc(nullptr, nullptr), 0);
    ASSERT_EQ(Kx_Sdk_SearchIpc(nullptr, nullptr), 0);
    ASSERT_EQ(Kx_Sdk_SearchIpc(Found::add, &found), 0);
    Kx_Sdk_Destroy(); // waits for all of them
    EXPECT_THAT(responder.datagrams(), SizeIs(6));
    EXPECT_THAT(found.texts, SizeIs(2));
}

TEST_F(SearchTest, InitAndDestroyForgetTheCallback)
{
    for (int (*call)() : {Kx_Sdk_Init, Kx_Sdk_Destroy}) {
        m_fSearchCallBack = Found::add;
        m_pSearchUser = this;
        call();
        EXPECT_EQ(m_fSearchCallBack, nullptr);
        EXPECT_EQ(m_pSearchUser, nullptr);
    }
}

TEST_F(SearchTest, AProxyWithoutAContextHasNoMemory)
{
    EXPECT_EQ(DiscoveryLookupBinding(nullptr).__dndl__Probe(nullptr, nullptr), 20);
}

// A plain request over TCP, whose answer comes in pieces.
TEST_F(SearchTest, TheProxyAlsoAsksByHttp)
{
    const std::string body = reply(match("http://10.0.0.1/"));
    kxsim::SimCamera camera;
    camera.replaceReply("", "HTTP/1.1 200 OK\r\nContent-Type: application/soap+xml\r\n\r\n" + body);
    camera.setFault({.kind = kxsim::Fault::Kind::Slow, .bytes = 200, .pause = 5ms});
    DiscoveryLookupBinding proxy(soap_new());
    proxy.endpoint = "http://127.0.0.1:" + std::to_string(camera.port());
    d__ProbeType probe{};
    d__ProbeMatchesType matches{};
    EXPECT_EQ(proxy.__dndl__Probe(&probe, &matches), 0);
    ASSERT_EQ(matches.__sizeProbeMatch, 1);
    EXPECT_STREQ(matches.ProbeMatch->XAddrs, "http://10.0.0.1/");
}
