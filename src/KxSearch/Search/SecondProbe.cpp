#include "KxSearch/Search/SecondProbe.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

#include <sys/socket.h>

#include "soapStub.h"

std::atomic<int> g_nIndex{0};

namespace
{

constexpr char secondProbe[] =
    R"(<?xml version="1.0" encoding="utf-8"?><Envelope xmlns:dn="http://www.onvif.org/ver10/network/wsdl" )"
    R"(xmlns="http://www.w3.org/2003/05/soap-envelope"><Header>)"
    R"(<wsa:MessageID xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing">)"
    R"(uuid:f3274dcb-e1c0-497d-a07b-a645364fcc2%d</wsa:MessageID>)"
    R"(<wsa:To xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing">)"
    R"(urn:schemas-xmlsoap-org:ws:2005:04:discovery</wsa:To>)"
    R"(<wsa:Action xmlns:wsa="http://schemas.xmlsoap.org/ws/2004/08/addressing">)"
    R"(http://schemas.xmlsoap.org/ws/2005/04/discovery/Probe</wsa:Action></Header><Body>)"
    R"(<Probe xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" )"
    R"(xmlns:xsd="http://www.w3.org/2001/XMLSchema" xmlns="http://schemas.xmlsoap.org/ws/2005/04/discovery">)"
    R"(<Types>dn:NetworkVideoTransmitter</Types><Scopes /></Probe></Body></Envelope>)";

constexpr std::chrono::milliseconds longestDelay{500};

bool sendDatagram(struct soap& soap, const char* message, std::size_t length)
{
    return sendto(soap.socket, message, length, soap.socket_flags, &soap.peer.addr,
                  static_cast<socklen_t>(soap.peerlen)) >= 0;
}

bool sendSecondProbe(struct soap& soap)
{
    char message[1024] = {};
    const int length = std::snprintf(message, sizeof message, secondProbe, g_nIndex++ % 10);
    return sendDatagram(soap, message, std::min(static_cast<std::size_t>(length), sizeof message - 1));
}

/// Sends the message alone again, after pauses that double, as often as it suits one receiver or many.
bool sendAgain(struct soap& soap, const char* message, std::size_t length)
{
    std::minstd_rand random(
        static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count()));
    std::chrono::milliseconds delay(std::uniform_int_distribution(50, 250)(random));
    for (int tries = soap.connect_flags & SO_BROADCAST ? 2 : 1; tries > 0; --tries) {
        std::this_thread::sleep_for(delay);
        if (sendDatagram(soap, message, length))
            return true;
        delay = std::min(delay * 2, longestDelay);
    }
    return false;
}

} // namespace

int sendBothProbes(struct soap* soap, const char* message, std::size_t length)
{
    sendDatagram(*soap, message, length); // the second one decides
    if (sendSecondProbe(*soap) || sendAgain(*soap, message, length))
        return SOAP_OK;
    soap->errnum = errno;
    return SOAP_EOF;
}
