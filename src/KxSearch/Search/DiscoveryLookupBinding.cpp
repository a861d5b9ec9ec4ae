#include "KxSearch/Search/DiscoveryLookupBinding.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include <sys/socket.h>

#include "KxSearch/Search/SecondProbe.h"
#include "soapH.h"

struct Namespace namespaces[] = {
    {"SOAP-ENV", "http://www.w3.org/2003/05/soap-envelope", "http://schemas.xmlsoap.org/soap/envelope/",
     nullptr},
    {"SOAP-ENC", "http://www.w3.org/2003/05/soap-encoding", "http://schemas.xmlsoap.org/soap/encoding/",
     nullptr},
    {"xsi", "http://www.w3.org/2001/XMLSchema-instance", "http://www.w3.org/*/XMLSchema-instance", nullptr},
    {"xsd", "http://www.w3.org/2001/XMLSchema", "http://www.w3.org/*/XMLSchema", nullptr},
    {"wsa", "http://schemas.xmlsoap.org/ws/2004/08/addressing", nullptr, nullptr},
    {"dndl", "http://www.onvif.org/ver10/network/wsdl/DiscoveryLookupBinding", nullptr, nullptr},
    {"dnrd", "http://www.onvif.org/ver10/network/wsdl/RemoteDiscoveryBinding", nullptr, nullptr},
    {"d", "http://schemas.xmlsoap.org/ws/2005/04/discovery", nullptr, nullptr},
    {"dn", "http://www.onvif.org/ver10/network/wsdl", nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr},
};

namespace
{

constexpr unsigned deepestXml = 64; // a reply nests 7 levels; each level costs stack

// A burst of answers must fit, 72 of them twice; the runtime sets the buffer to less when it makes the socket.
constexpr int receiveBufferSize = 1024 * 1024;

} // namespace

DiscoveryLookupBinding::DiscoveryLookupBinding(struct soap* context) : soap_(context)
{
    if (soap_ == nullptr)
        return;
    // Names that are not ASCII keep their characters; and no element stands for another: an attacker may use such
    // references, discovery does not.
    soap_set_mode(soap_, SOAP_C_UTFSTRING | SOAP_XML_TREE);
    soap_->namespaces = namespaces;
    soap_->maxlevel = deepestXml;
    soap_->user = this;
    send_ = std::exchange(soap_->fsend, sendTwice);
    receive_ = std::exchange(soap_->frecv, receiveOneDatagram);
}

DiscoveryLookupBinding::~DiscoveryLookupBinding()
{
    if (soap_ == nullptr)
        return;
    soap_destroy(soap_);
    soap_end(soap_);
    soap_free(soap_);
}

int DiscoveryLookupBinding::__dndl__Probe(d__ProbeType* probe, d__ProbeMatchesType* matches)
{
    return soap_ == nullptr ? SOAP_EOM
                            : soap_call___dndl__Probe(soap_, endpoint.c_str(), nullptr, probe, matches);
}

int DiscoveryLookupBinding::__dndl_Probe_Start(d__ProbeType* probe, d__ProbeMatchesType*)
{
    const int error = soap_send___dndl__Probe(soap_, endpoint.c_str(), nullptr, probe);
    if (error == SOAP_OK)
        setsockopt(soap_->socket, SOL_SOCKET, SO_RCVBUF, &receiveBufferSize, sizeof receiveBufferSize);
    return error;
}

int DiscoveryLookupBinding::__dndl_Probe_Receive(d__ProbeType*, d__ProbeMatchesType* matches)
{
    soap_->header = nullptr;
    soap_destroy(soap_); // the reply before: its objects,
    soap_end(soap_);     // and its texts
    datagramRead_ = false;
    soap_default_d__ProbeMatchesType(soap_, matches);
    const int error = readReply(*matches);
    soap_closesock(soap_); // of a datagram socket, this ends the message only
    return error;
}

int DiscoveryLookupBinding::readReply(d__ProbeMatchesType& matches)
{
    if (soap_begin_recv(soap_) || soap_envelope_begin_in(soap_) || soap_recv_header(soap_) ||
        soap_body_begin_in(soap_))
        return soap_->error;
    dumpReply();
    if (soap_recv_fault(soap_, 1) != SOAP_OK)
        return soap_->error;
    soap_get_d__ProbeMatchesType(soap_, &matches, "d:ProbeMatches", nullptr);
    if (soap_->error || soap_body_end_in(soap_) || soap_envelope_end_in(soap_) || soap_end_recv(soap_))
        return soap_->error;
    return SOAP_OK;
}

/// Writes the runtime's input buffer, which ends with the datagram or with its first zero byte, to a file. The name is
/// used as it stands: where backslashes are nothing special, it names a file of the working directory.
void DiscoveryLookupBinding::dumpReply()
{
    char name[256];
    std::snprintf(name, sizeof name, "D:\\onvif\\discovery_%d.txt", receiveCount_++);
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(name, "wb"), std::fclose);
    if (file)
        std::fwrite(soap_->buf, 1, strnlen(soap_->buf, soap_->buflen), file.get());
}

int DiscoveryLookupBinding::sendTwice(struct soap* soap, const char* message, std::size_t length)
{
    if ((soap->omode & SOAP_IO_UDP) != 0 && soap->peerlen != 0)
        return sendBothProbes(soap, message, length);
    return static_cast<DiscoveryLookupBinding*>(soap->user)->send_(soap, message, length);
}

/// Ends the message with the datagram: the runtime would go on reading while XML is incomplete, and a datagram that was
/// cut would swallow the next one.
std::size_t DiscoveryLookupBinding::receiveOneDatagram(struct soap* soap, char* buffer, std::size_t size)
{
    auto& proxy = *static_cast<DiscoveryLookupBinding*>(soap->user);
    return std::exchange(proxy.datagramRead_, true) ? 0 : proxy.receive_(soap, buffer, size);
}
