// clang-format off
// WS-Discovery as the search speaks it: the interface that soapcpp2 makes the binding from at build time.
// No line pins the SOAP envelope's namespace: replies in SOAP 1.1 and 1.2 are both read.

//gsoap wsa  schema namespace: http://schemas.xmlsoap.org/ws/2004/08/addressing
//gsoap wsa  schema form: qualified
//gsoap d    schema namespace: http://schemas.xmlsoap.org/ws/2005/04/discovery
//gsoap d    schema form: qualified
//gsoap dn   schema namespace: http://www.onvif.org/ver10/network/wsdl
//gsoap dndl schema namespace: http://www.onvif.org/ver10/network/wsdl/DiscoveryLookupBinding
//gsoap dnrd schema namespace: http://www.onvif.org/ver10/network/wsdl/RemoteDiscoveryBinding

// Lists of addresses and names are kept as their text: what a foreign device writes there must not fail a reply.
typedef char* xsd__anyURI;
typedef char* wsa__AttributedURI;
typedef char* d__UriListType;
typedef char* d__QNameListType;

struct wsa__Relationship
{
    char* __item;
    @char* RelationshipType;
};

struct wsa__EndpointReferenceType
{
    wsa__AttributedURI Address;
};

// A reply with a header that is marked mustUnderstand is refused unless that header stands here.
struct SOAP_ENV__Header
{
    wsa__AttributedURI wsa__MessageID;
    struct wsa__Relationship* wsa__RelatesTo;
    struct wsa__EndpointReferenceType* wsa__From;
    struct wsa__EndpointReferenceType* wsa__ReplyTo;
    struct wsa__EndpointReferenceType* wsa__FaultTo;
    wsa__AttributedURI wsa__To;
    wsa__AttributedURI wsa__Action;
};

struct d__ScopesType
{
    char* __item;
    @xsd__anyURI MatchBy;
};

struct d__ProbeType
{
    d__QNameListType Types;
    struct d__ScopesType* Scopes;
};

struct d__ProbeMatchType
{
    struct wsa__EndpointReferenceType* wsa__EndpointReference;
    d__QNameListType Types;
    struct d__ScopesType* Scopes;
    d__UriListType XAddrs;
    unsigned int* MetadataVersion;
};

struct d__ProbeMatchesType
{
    int __sizeProbeMatch;
    struct d__ProbeMatchType* ProbeMatch;
};

struct d__HelloType
{
    struct wsa__EndpointReferenceType* wsa__EndpointReference;
    d__QNameListType Types;
    struct d__ScopesType* Scopes;
    d__UriListType XAddrs;
    unsigned int MetadataVersion;
};

struct d__ByeType
{
    struct wsa__EndpointReferenceType* wsa__EndpointReference;
    d__QNameListType Types;
    struct d__ScopesType* Scopes;
    d__UriListType XAddrs;
    unsigned int* MetadataVersion;
};

struct d__ResolveType
{
    struct wsa__EndpointReferenceType* wsa__EndpointReference;
};

//gsoap dndl service name: DiscoveryLookupBinding
//gsoap dndl service method-action: Probe http://www.onvif.org/ver10/network/wsdl/Probe
int __dndl__Probe(struct d__ProbeType* d__Probe, struct d__ProbeMatchesType* d__ProbeMatches);

//gsoap dnrd service name: RemoteDiscoveryBinding
//gsoap dnrd service method-action: Hello http://www.onvif.org/ver10/network/wsdl/Hello
int __dnrd__Hello(struct d__HelloType d__Hello, struct d__ResolveType* d__HelloResponse);
//gsoap dnrd service method-action: Bye http://www.onvif.org/ver10/network/wsdl/Bye
int __dnrd__Bye(struct d__ByeType d__Bye, struct d__ResolveType* d__ByeResponse);
