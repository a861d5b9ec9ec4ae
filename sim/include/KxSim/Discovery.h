// How a simulated camera is found: what it tells searches on the network (WS-Discovery), and how it goes wrong there.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kxsim
{

/// What a search is told about one camera. An empty text leaves out what it stands for; an optional without a value
/// stands for what is true of the camera.
struct Description
{
    std::string name = "Simulated camera"; ///< percent-encoded in its scope, as are model and location
    std::string location = "Loopback";
    std::optional<std::string> model{};
    std::optional<std::string>
        xaddrs{}; ///< service addresses, e.g. "http://192.168.1.20/onvif/device_service"
    std::optional<std::string>
        scopes{}; ///< all of them, as they are sent; then name, location and model do not count
};

/// Whether and how a camera answers searches.
struct DiscoveryOptions
{
    enum class Reply
    {
        Matches,
        SoapFault,
        Garbage, ///< random bytes, the same ones every time
        Raw      ///< `raw`
    };

    /// IPv4 address of the network interface on which the camera hears searches and announces itself. Empty: it does
    /// neither.
    std::string interfaceAddress{};
    Description self{};
    std::vector<Description> others{}; ///< told of in the same reply, after the camera itself

    Reply reply = Reply::Matches;
    std::string raw{};
    bool soap11 = false;                                ///< what is sent is SOAP 1.1 instead of 1.2
    std::size_t longest = static_cast<std::size_t>(-1); ///< a longer reply is cut to so many bytes
    unsigned times = 1;                                 ///< how often each reply is sent; 0: never
    std::chrono::milliseconds delay{0};                 ///< before each sending
};

/// A datagram that came to the discovery port, Hello and Bye of other devices excepted.
struct Probe
{
    std::string text{};    ///< as it came, whether it is a Probe or not
    std::string address{}; ///< where it came from, and where the replies go
    unsigned short port = 0;
    bool answered = false; ///< false: it was not understood, or is not meant for this camera
};

} // namespace kxsim
