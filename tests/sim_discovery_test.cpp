// How the simulated camera answers searches. Runs where multicast stays on loopback: scripts/private_network.sh.
#include <chrono>
#include <cstdio>
#include <future>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <KxSim/SimCamera.h>

#include "Searcher.h"

using kxsim::Description;
using kxsim::DiscoveryOptions;
using kxsim::SimCamera;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using Reply = kxsim::DiscoveryOptions::Reply;
using namespace std::chrono_literals;

namespace
{

/// The text of the first element of this name; nothing when there is none.
std::optional<std::string> textIn(const std::string& xml, const std::string& name)
{
    const std::size_t start = xml.find("<" + name + ">");
    const std::size_t end = xml.find("</" + name + ">");
    if (start == std::string::npos || end == std::string::npos)
        return std::nullopt;
    return xml.substr(start + name.size() + 2, end - start - name.size() - 2);
}

std::string endpointOf(const SimCamera& camera)
{
    char text[64];
    std::snprintf(text, sizeof text, "urn:uuid:4b584341-0000-1000-8000-00110001%04x",
                  static_cast<unsigned>(camera.port()));
    return text;
}

std::string serviceOf(const SimCamera& camera)
{
    return "http://127.0.0.1:" + std::to_string(camera.port()) + "/onvif/device_service";
}

/// What is said of the camera in a match, a Hello or a Bye.
void expectDescription(const std::string& message, const SimCamera& camera)
{
    EXPECT_EQ(textIn(message, "a:EndpointReference"), "<a:Address>" + endpointOf(camera) + "</a:Address>");
    EXPECT_EQ(textIn(message, "d:Types"), "dn:NetworkVideoTransmitter");
    EXPECT_EQ(textIn(message, "d:Scopes"),
              "onvif://www.onvif.org/name/Front%20Door onvif://www.onvif.org/model/KX-C300B"
              " onvif://www.onvif.org/hardware/KX-C300B onvif://www.onvif.org/location/Loopback"
              " onvif://www.onvif.org/type/video_encoder");
    EXPECT_EQ(textIn(message, "d:XAddrs"), serviceOf(camera));
    EXPECT_EQ(textIn(message, "d:MetadataVersion"), "1");
}

/// The action of a message, whose header is complete and whose prefixes are declared.
std::string actionOf(const std::string& message)
{
    EXPECT_THAT(
        message,
        AllOf(StartsWith("<?xml version=\"1.0\"?><s:Envelope xmlns:s=\"http://www.w3.org/2003/05/soap-"
                         "envelope\" xmlns:a=\"http://schemas.xmlsoap.org/ws/2004/08/addressing\""
                         " xmlns:d=\"http://schemas.xmlsoap.org/ws/2005/04/discovery\""
                         " xmlns:dn=\"http://www.onvif.org/ver10/network/wsdl\"><s:Header>"),
              HasSubstr("<a:MessageID>urn:uuid:"), HasSubstr("<d:AppSequence InstanceId=\""),
              testing::EndsWith("</s:Body></s:Envelope>")));
    const std::string action = textIn(message, "a:Action").value_or("");
    const std::string discovery = "http://schemas.xmlsoap.org/ws/2005/04/discovery/";
    EXPECT_THAT(action, StartsWith(discovery));
    return action.substr(std::min(discovery.size(), action.size()));
}

/// A reply to a message with this id.
void expectReply(const std::string& reply, const std::string& action, const std::string& id,
                 const SimCamera& camera)
{
    EXPECT_EQ(actionOf(reply), action);
    EXPECT_EQ(textIn(reply, "a:RelatesTo"), id);
    EXPECT_EQ(textIn(reply, "a:To"), "http://schemas.xmlsoap.org/ws/2004/08/addressing/role/anonymous");
    expectDescription(textIn(reply, "d:" + action).value_or(""), camera);
}

kxsim::CameraOptions found(const Description& self = {.name = "Front Door"})
{
    return {.model = "KX-C300B", .discovery = {.interfaceAddress = loopback, .self = self}};
}

kxsim::CameraOptions answering(DiscoveryOptions options)
{
    options.interfaceAddress = loopback;
    return {.discovery = options};
}

// As clients write them: with every prefix declared, a misspelt action and no types; and by hand.
const std::string serialisedProbe =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<SOAP-ENV:Envelope xmlns:SOAP-ENV="http://www.w3.org/2003/05/soap-envelope" )"
    R"(xmlns:SOAP-ENC="http://www.w3.org/2003/05/soap-encoding" )"
    R"(xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing" )"
    R"(xmlns:d="http://schemas.xmlsoap.org/ws/2005/04/discovery" )"
    R"(xmlns:dn="http://www.onvif.org/ver10/network/wsdl"><SOAP-ENV:Header>)"
    R"(<wsa:MessageID>uuid:cff0d69d</wsa:MessageID><wsa:To SOAP-ENV:mustUnderstand="true">)"
    R"(urn:schemas-xmlsoap-org:ws:2005:04:discovery</wsa:To><wsa:Action SOAP-ENV:mustUnderstand="true">)"
    R"(http://schemas.xmllocal_soap.org/ws/2005/04/discovery/Probe</wsa:Action></SOAP-ENV:Header>)"
    R"(<SOAP-ENV:Body><d:Probe><d:Types></d:Types><d:Scopes></d:Scopes></d:Probe></SOAP-ENV:Body>)"
    R"(</SOAP-ENV:Envelope>)";
const std::string handWrittenProbe =
    R"(<?xml version="1.0" encoding="utf-8"?><Envelope xmlns:dn="http://www.onvif.org/ver10/network/wsdl" )"
    R"(xmlns="http://www.w3.org/2003/05/soap-envelope"><Header><wsa:MessageID )"
    R"(xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing">uuid:f3274dcb</wsa:MessageID></Header>)"
    R"(<Body><Probe xmlns="http://schemas.xmlsoap.org/ws/2005/04/discovery">)"
    R"(<Types>dn:NetworkVideoTransmitter</Types><Scopes /></Probe></Body></Envelope>)";

} // namespace

TEST(SimDiscovery, AnswersWithWhatTheCameraIs)
{
    const SimCamera camera(found());
    expectReply(replyTo(serialisedProbe), "ProbeMatches", "uuid:cff0d69d", camera);
    expectReply(replyTo(handWrittenProbe), "ProbeMatches", "uuid:f3274dcb", camera);
}

TEST(SimDiscovery, AnswersWhoAsksForItAndNobodyElse)
{
    const std::string network = "\"http://www.onvif.org/ver10/network/wsdl\"";
    const std::string rfc3986 = "\"http://schemas.xmlsoap.org/ws/2005/04/discovery/rfc3986\"";
    const std::pair<std::string, bool> rows[] = {
        {probe(), true},
        {probe("<d:Types/><d:Scopes/>"), true},
        {probe("<d:Types> \n </d:Types><d:Scopes> \t </d:Scopes>"), true},
        {probe("<d:Types>\n dn:NetworkVideoTransmitter\n </d:Types>"), true},
        {probe("<d:Types>dn:NetworkVideo<!-- - -->Transm<![CDATA[itter]]></d:Types>"), true},
        {probe("<d:Types xmlns:x=" + network + ">x:NetworkVideoTransmitter</d:Types>"), true},
        {probe("<d:Types xmlns=" + network + ">NetworkVideoTransmitter</d:Types>"), true},
        {probe("<d:Types xmlns:dn=\"urn:other\">dn:NetworkVideoTransmitter</d:Types>"), false},
        {probe("<d:Types>unknown:NetworkVideoTransmitter</d:Types>"), false},
        {probe("<d:Types>NetworkVideoTransmitter</d:Types>"), false},
        {probe("<d:Types>dn:Device</d:Types>"), false},
        {probe("<d:Types>dn:NetworkVideoTransmitter dn:Device</d:Types>"), false},

        {probe("<d:Scopes>onvif://www.onvif.org/name/Front%20Door</d:Scopes>"), true},
        {probe("<d:Scopes>onvif://www.onvif.org onvif://www.onvif.org/model/</d:Scopes>"), true},
        {probe("<d:Scopes MatchBy=" + rfc3986 + ">onvif://www.onvif.org/type</d:Scopes>"), true},
        {probe("<d:Scopes MatchBy=\"urn:other\">onvif://www.onvif.org/type</d:Scopes>"), false},
        {probe("<d:Scopes MatchBy=\"urn:other\"/>"), true},
        {probe("<d:Scopes>onvif://www.onvif.org/name/Front</d:Scopes>"), false},
        {probe("<d:Scopes>onvif://www.onvif.org/name/Front%20Door/Left</d:Scopes>"), false},
        {probe("<d:Scopes>onvif://www.onvif.org/type onvif://www.onvif.org/Profile</d:Scopes>"), false},

        {message("<d:Probe/>", "uuid:asked", "http://schemas.xmlsoap.org/soap/envelope/"), true},
        {message("<d:Probe/>", "uuid:asked", "urn:other"), false},
        {message("<d:Probe/>", ""), false},
        {message("<d:Probe/>", "two words"), false},
        {message("<dn:Probe/>"), false},
        {message("<d:Bye/>"), false},
        {message(""), false},
    };
    const SimCamera camera(found());
    for (const auto& [datagram, answered] : rows)
        EXPECT_THAT(repliesTo(datagram), SizeIs(answered ? 1 : 0)) << datagram;
}

TEST(SimDiscovery, ResolvesItsOwnEndpoint)
{
    const auto resolve = [](const std::string& endpoint) {
        return message("<d:Resolve><w:EndpointReference><w:Address> " + endpoint +
                       "</w:Address></w:EndpointReference></d:Resolve>");
    };
    const SimCamera camera(found());
    expectReply(replyTo(resolve(endpointOf(camera))), "ResolveMatches", "uuid:asked", camera);
    EXPECT_THAT(repliesTo(resolve(endpointOf(camera) + "0")), IsEmpty());
    EXPECT_THAT(repliesTo(message("<d:Resolve/>")), IsEmpty());
}

TEST(SimDiscovery, SaysHelloAndBye)
{
    UdpSocket listener(group);
    listener.join();
    std::optional<SimCamera> camera(found());
    const std::string endpoint = endpointOf(*camera);
    const std::string hello = listener.receive();
    EXPECT_EQ(actionOf(hello), "Hello");
    expectDescription(textIn(hello, "d:Hello").value_or(""), *camera);
    camera.reset();
    const std::string bye = listener.receive();
    EXPECT_EQ(actionOf(bye), "Bye");
    EXPECT_THAT(textIn(bye, "d:Bye"), testing::Optional(HasSubstr(endpoint)));
    for (const std::string& message : {hello, bye})
        EXPECT_EQ(textIn(message, "a:To"), "urn:schemas-xmlsoap-org:ws:2005:04:discovery");
}

TEST(SimDiscovery, CamerasShareThePortAndOnesWithoutItStaySilent)
{
    const SimCamera first(found());
    const SimCamera second(found());
    const SimCamera silent;
    UdpSocket searcher;
    searcher.send(probe());
    const std::vector<std::string> replies{searcher.receive(), searcher.receive()};
    EXPECT_THAT(replies,
                testing::UnorderedElementsAre(HasSubstr(endpointOf(first)), HasSubstr(endpointOf(second))));
    EXPECT_THAT(silent.probes(), IsEmpty());
}

TEST(SimDiscovery, NeedsAnInterfaceOfThisMachine)
{
    for (const char* address : {"192.0.2.1", "loopback"}) {
        const DiscoveryOptions elsewhere{.interfaceAddress = address};
        EXPECT_THROW(SimCamera({.discovery = elsewhere}), std::runtime_error) << address;
    }
}

TEST(SimDiscovery, ListsWhatCameBeforeItsReplyLeaves)
{
    SimCamera camera(found());
    camera.setValue("heard", "");
    camera.onProbe([&camera](const kxsim::Probe& seen) {
        camera.setValue("heard", *camera.value("heard") + (seen.answered ? "answered;" : "ignored;"));
    });
    const std::string unreadable("<\0not>", 6);
    UdpSocket searcher;
    for (const std::string& datagram : {unreadable, message("<d:Hello/>"), probe()})
        searcher.send(datagram);
    EXPECT_THAT(searcher.receive(), HasSubstr("ProbeMatches"));
    EXPECT_EQ(camera.value("heard"), "ignored;answered;");

    const std::vector<kxsim::Probe> probes = camera.probes();
    ASSERT_EQ(probes.size(), 2U);
    EXPECT_EQ(probes[0].text, unreadable);
    EXPECT_FALSE(probes[0].answered);
    EXPECT_EQ(probes[1].text, probe());
    EXPECT_EQ(probes[1].address, loopback);
    EXPECT_EQ(probes[1].port, searcher.port());
    EXPECT_TRUE(probes[1].answered);
    camera.forgetProbes();
    EXPECT_THAT(camera.probes(), IsEmpty());
}

TEST(SimDiscovery, TellsOfTheCameraWhatItIsTold)
{
    const std::string scope = "onvif://www.onvif.org/";
    const std::string scopesWithoutNames =
        scope + "model/KX-C300B " + scope + "hardware/KX-C300B " + scope + "type/video_encoder";
    const std::string other = "http://192.168.1.20/onvif/device_service http://10.0.0.1:81/?a=1&amp;b=2";
    const struct
    {
        Description told;
        std::optional<std::string> scopes; // as the XML says it
        std::optional<std::string> xaddrs = "own";
    } rows[] = {
        {{.name = "", .location = ""}, scopesWithoutNames},
        {{.name = "T\u00FCr/1 <&>", .location = "a", .model = "XY 1"},
         scope + "name/T%C3%BCr%2F1%20%3C%26%3E " + scope + "model/XY%201 " + scope + "hardware/XY%201 " +
             scope + "location/a " + scope + "type/video_encoder"},
        {{.name = "n", .location = "", .model = ""}, scope + "name/n " + scope + "type/video_encoder"},
        {{.scopes = "a <b>  c"}, "a &lt;b&gt;  c"},
        {{.scopes = ""}, std::nullopt},
        {{.xaddrs = "", .scopes = "a"}, "a", std::nullopt},
        {{.xaddrs = "http://192.168.1.20/onvif/device_service http://10.0.0.1:81/?a=1&b=2", .scopes = "a"},
         "a",
         other},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.scopes.value_or("no scopes") + ", " + row.xaddrs.value_or("no addresses"));
        const SimCamera camera(found(row.told));
        const std::string reply = replyTo(probe());
        EXPECT_EQ(textIn(reply, "d:Scopes"), row.scopes);
        EXPECT_EQ(textIn(reply, "d:XAddrs"), row.xaddrs == "own" ? serviceOf(camera) : row.xaddrs);
    }
}

TEST(SimDiscovery, TellsOfOthersInTheSameReply)
{
    const SimCamera camera(answering(
        {.self = {.scopes = "first"}, .others = {{.model = "Foreign"}, {.xaddrs = "third", .scopes = ""}}}));
    std::vector<std::string> matches;
    for (std::string rest = replyTo(probe()); const auto match = textIn(rest, "d:ProbeMatch");
         rest = rest.substr(rest.find("</d:ProbeMatch>") + 1))
        matches.push_back(*match);
    EXPECT_THAT(matches, ElementsAre(AllOf(HasSubstr(endpointOf(camera)), HasSubstr(">first<")),
                                     AllOf(HasSubstr("4b584341-0001-"), HasSubstr("/model/Foreign "),
                                           HasSubstr(serviceOf(camera))),
                                     AllOf(HasSubstr("4b584341-0002-"), HasSubstr(">third<"),
                                           Not(HasSubstr("Scopes")))));
}

TEST(SimDiscovery, MisleadsAsTold)
{
    const auto soap11 = HasSubstr("\"http://schemas.xmlsoap.org/soap/envelope/\"");
    const auto soap12 = HasSubstr("\"http://www.w3.org/2003/05/soap-envelope\"");
    const auto expectReply = [](const DiscoveryOptions& options, const testing::Matcher<std::string>& each) {
        const SimCamera camera(answering(options));
        UdpSocket searcher;
        searcher.send(probe());
        EXPECT_THAT(searcher.receive(), each);
    };
    expectReply({.soap11 = true}, AllOf(soap11, HasSubstr("ProbeMatch"), Not(soap12)));
    expectReply({.reply = Reply::SoapFault},
                AllOf(soap12, HasSubstr("<s:Fault><s:Code><s:Value>s:Sender</s:Value></s:Code>"),
                      HasSubstr(">uuid:asked</a:RelatesTo>")));
    expectReply({.reply = Reply::SoapFault, .soap11 = true},
                AllOf(soap11, HasSubstr("<s:Fault><faultcode>s:Client</faultcode><faultstring>")));
    expectReply({.reply = Reply::Garbage}, AllOf(SizeIs(500), Not(HasSubstr("Envelope"))));
    expectReply({.reply = Reply::Raw, .raw = "any text"}, "any text");
    expectReply({.reply = Reply::Raw, .raw = "any text", .longest = 3}, "any");
    expectReply({.longest = 100}, AllOf(SizeIs(100), StartsWith("<?xml")));
}

TEST(SimDiscovery, RepliesAsOftenAsTold)
{
    const SimCamera twice(answering({.times = 2}));
    UdpSocket searcher;
    for (const char* id : {"uuid:first", "uuid:second"})
        searcher.send(probe("", id));
    for (const char* id : {"uuid:first", "uuid:first", "uuid:second", "uuid:second"})
        EXPECT_EQ(textIn(searcher.receive(), "a:RelatesTo"), id);

    SimCamera never(answering({.times = 0}));
    std::promise<bool> answered;
    never.onProbe([&](const kxsim::Probe& seen) { answered.set_value(seen.answered); });
    searcher.send(probe());
    EXPECT_FALSE(answered.get_future().get());
}

TEST(SimDiscovery, RepliesLateWithoutHoldingUpOthers)
{
    constexpr auto delay = 50ms;
    const SimCamera camera(answering({.times = 2, .delay = delay}));
    const auto start = std::chrono::steady_clock::now();
    UdpSocket searcher;
    searcher.send(probe("", "uuid:first"));
    searcher.send(probe("", "uuid:second"));
    EXPECT_EQ(textIn(searcher.receive(), "a:RelatesTo"), "uuid:first");
    EXPECT_GE(std::chrono::steady_clock::now() - start, delay);
    EXPECT_EQ(textIn(searcher.receive(), "a:RelatesTo"), "uuid:second");
    EXPECT_EQ(textIn(searcher.receive(), "a:RelatesTo"), "uuid:first");
    EXPECT_GE(std::chrono::steady_clock::now() - start, 2 * delay);
}

TEST(SimDiscovery, SurvivesAnyDatagram)
{
    std::string nested;
    std::string attributes = "<Envelope ";
    for (int i = 0; nested.size() < 60'000; ++i) {
        nested += "<a>";
        attributes += "a" + std::to_string(i) + "='' ";
    }
    attributes.resize(60'000);
    std::vector<std::string> datagrams{
        "",
        std::string(1000, '\0'),
        "\xFF\xFE<",
        nested,
        attributes,
        message(nested),
        probe("<d:Types>" + std::string(60'000, ':') + "</d:Types>"),
        probe("<d:Scopes>" + std::string(60'000, '/') + "</d:Scopes>"),
        "<!DOCTYPE a [<!ENTITY b \"&b;&b;\">]><a>&b;</a>",
    };
    std::minstd_rand random;
    for (std::size_t size = 0; size < handWrittenProbe.size(); ++size) {
        datagrams.push_back(handWrittenProbe.substr(0, size));
        std::string damaged = handWrittenProbe;
        for (int i = 0; i < 3; ++i)
            damaged[random() % damaged.size()] = "<>&\"/:\0x"[random() % 8];
        datagrams.push_back(damaged);
    }
    const SimCamera camera(found());
    for (const std::string& datagram : datagrams)
        EXPECT_THAT(repliesTo(datagram), SizeIs(testing::Le(1)));
}
