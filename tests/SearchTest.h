// Fixture and messages for tests of the search.
#pragma once

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "Core/SdkState.h"
#include "KxSearch/Search.h"
#include "KxSearch/Search/SecondProbe.h"
#include "Responder.h"
#include "SdkTest.h"

using Texts = std::vector<std::string>;

inline const std::string ownScopes = "onvif://www.onvif.org/name/Door onvif://www.onvif.org/model/KX-C200T";

inline std::string match(const std::string& xAddrs, const std::string& scopes = ownScopes)
{
    return "<d:ProbeMatch><wsa:EndpointReference><wsa:Address>urn:uuid:1</wsa:Address></"
           "wsa:EndpointReference>"
           "<d:Types>dn:NetworkVideoTransmitter</d:Types><d:Scopes>" +
           scopes + "</d:Scopes><d:XAddrs>" + xAddrs +
           "</d:XAddrs><d:MetadataVersion>1</d:MetadataVersion></d:ProbeMatch>";
}

inline std::string envelope(const std::string& body, const std::string& header = "",
                            const std::string& soap = "http://www.w3.org/2003/05/soap-envelope")
{
    return R"(<?xml version="1.0" encoding="utf-8"?><s:Envelope xmlns:s=")" + soap +
           R"(" xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing")"
           R"( xmlns:d="http://schemas.xmlsoap.org/ws/2005/04/discovery")"
           R"( xmlns:dn="http://www.onvif.org/ver10/network/wsdl"><s:Header>)" +
           header + "</s:Header><s:Body>" + body + "</s:Body></s:Envelope>";
}

inline std::string reply(const std::string& matches)
{
    return envelope("<d:ProbeMatches>" + matches + "</d:ProbeMatches>");
}

/// Ends a search at once: as many matches as it counts, none to be reported.
inline std::string lastReply()
{
    std::string matches;
    for (int i = 0; i < 72; ++i)
        matches += match("http://10.0.0.99/", "onvif://www.onvif.org/model/other");
    return reply(matches);
}

inline Responder::Answers toTheFirst(const Texts& answers)
{
    return [answers](std::size_t n, const Responder::Send& send) {
        if (n == 0)
            std::for_each(answers.begin(), answers.end(), send);
    };
}

/// "ip:port name model", one a call of the callback.
struct Found
{
    static void add(SearchDeviceInfo* device, void* user)
    {
        static_cast<Found*>(user)->texts.push_back(std::string(device->ip) + ":" +
                                                   std::to_string(device->port) + " " + device->name + " " +
                                                   device->model);
    }
    Texts texts;
};

/// A directory of its own, since a search leaves files where it runs.
class SearchTest : public SdkTest
{
protected:
    void SetUp() override
    {
        if (!isPrivateNetwork())
            GTEST_SKIP() << "multicast leaves a private network; run this through scripts/private_network.sh";
        SdkTest::SetUp();
        home_ = std::filesystem::current_path();
        directory_ = home_ / ("search_test." + std::to_string(getpid()));
        std::filesystem::create_directory(directory_);
        std::filesystem::current_path(directory_);
    }

    void TearDown() override
    {
        SdkTest::TearDown();
        if (home_.empty())
            return;
        std::filesystem::current_path(home_);
        std::filesystem::remove_all(directory_);
    }

    /// What a search reports whose first Probe is answered so.
    static Texts search(Texts answers)
    {
        answers.push_back(lastReply());
        const Responder responder(toTheFirst(answers));
        Found found;
        m_pSearchUser = &found;
        m_fSearchCallBack = Found::add;
        LoadDevice(2, 3);
        m_fSearchCallBack = nullptr;
        return found.texts;
    }

    static std::string dump(int number)
    {
        std::ifstream file("D:\\onvif\\discovery_" + std::to_string(number) + ".txt", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static void untilOver()
    {
        while (m_fSearchCallBack != nullptr)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

private:
    std::filesystem::path home_;
    std::filesystem::path directory_;
};
