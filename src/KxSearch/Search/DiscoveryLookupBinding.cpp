#include "KxSearch/Search/DiscoveryLookupBinding.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>
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

// The runtime makes its socket with 64 KiB, which two dozen answers fill. The system may allow less than this; what it
// usually does is room for all that a search counts.
constexpr int receiveBufferSize = 1024 * 1024;

constexpr int mostDumps = 256; // of a search, so that a flood of answers does not fill the disk

bool sendsDatagrams(const struct soap& soap)
{
    return (soap.omode & SOAP_IO_UDP) != 0;
}

/// Whether XML begins here, or nothing but blanks is there.
bool mayBeXml(std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first == std::string_view::npos || text[first] == '<';
}

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
    send_ = std::exchange(soap_->fsend, sendProbes);
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
    asking_ = true;
    const int error = soap_send___dndl__Probe(soap_, endpoint.c_str(), nullptr, probe);
    asking_ = false;
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
    const int number = receiveCount_++;
    if (number >= mostDumps)
        return;
    char name[256];
    std::snprintf(name, sizeof name, "D:\\onvif\\discovery_%d.txt", number);
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(name, "wb"), std::fclose);
    if (file)
        std::fwrite(soap_->buf, 1, strnlen(soap_->buf, soap_->buflen), file.get());
}

/// Nothing is sent but the Probes: the runtime would answer some datagrams, and could be made to answer anybody.
int DiscoveryLookupBinding::sendProbes(struct soap* soap, const char* message, std::size_t length)
{
    const auto& proxy = *static_cast<const DiscoveryLookupBinding*>(soap->user);
    if (sendsDatagrams(*soap) && !proxy.asking_)
        return SOAP_EOF;
    if (!sendsDatagrams(*soap) || soap->peerlen == 0)
        return proxy.send_(soap, message, length);
    setsockopt(soap->socket, SOL_SOCKET, SO_RCVBUF, &receiveBufferSize, sizeof receiveBufferSize);
    return sendBothProbes(soap, message, length);
}

/// Ends the message with the datagram: the runtime would go on reading while XML is incomplete, and a datagram that was
/// cut would swallow the next one. Lets XML through only: the runtime would also read HTTP and MIME in a datagram.
std::size_t DiscoveryLookupBinding::receiveOneDatagram(struct soap* soap, char* buffer, std::size_t size)
{
    auto& proxy = *static_cast<DiscoveryLookupBinding*>(soap->user);
    if (!sendsDatagrams(*soap))
        return proxy.receive_(soap, buffer, size);
    if (std::exchange(proxy.datagramRead_, true))
        return 0;
    const std::size_t length = proxy.receive_(soap, buffer, size);
    return mayBeXml({buffer, length}) ? length : 0;
}
