// The discovery proxy: sends the Probes of a search and receives what comes back, a datagram at a time.
#pragma once

#include <string>

#include "soapStub.h" // generated from discovery.h

/// The binding's namespaces, ended by an empty row. The SOAP runtime asks for them under this name.
extern "C" __attribute__((visibility("default"))) struct Namespace namespaces[];

/// Owns its SOAP context, which must be there before a call. Every operation returns the runtime's error code, 0 for
/// success.
class DiscoveryLookupBinding
{
public:
    /// The proxy of `context`, which may be null: then only __dndl__Probe may be called.
    explicit DiscoveryLookupBinding(struct soap* context);
    virtual ~DiscoveryLookupBinding();
    DiscoveryLookupBinding(const DiscoveryLookupBinding&) = delete;
    DiscoveryLookupBinding& operator=(const DiscoveryLookupBinding&) = delete;

    /// A request with an answer, over the endpoint. The search does not use it.
    virtual int __dndl__Probe(d__ProbeType* probe, d__ProbeMatchesType* matches);

    /// Sends the Probe with the context's header, and the second Probe behind it, without waiting for an answer. The
    /// socket stays open for __dndl_Probe_Receive, unless this fails.
    int __dndl_Probe_Start(d__ProbeType* probe, d__ProbeMatchesType* matches);

    /// Receives one datagram into `matches`, which live until the next call. Waits as long as the context's receive
    /// time-out says. Leaves the raw reply in a file, if it can.
    int __dndl_Probe_Receive(d__ProbeType* probe, d__ProbeMatchesType* matches);

    struct soap* context() { return soap_; }

    std::string endpoint = "http://localhost:80";

private:
    int readReply(d__ProbeMatchesType& matches);
    void dumpReply();

    static int sendProbes(struct soap* soap, const char* message, std::size_t length);
    static std::size_t receiveOneDatagram(struct soap* soap, char* buffer, std::size_t size);

    struct soap* soap_;
    int receiveCount_ = 0; // numbers the dump files
    bool asking_ = false;
    bool datagramRead_ = false;
    // The runtime's own way to send and to receive:
    int (*send_)(struct soap*, const char*, std::size_t) = nullptr;
    std::size_t (*receive_)(struct soap*, char*, std::size_t) = nullptr;
};
