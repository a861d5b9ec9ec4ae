// Feeds the search whatever comes: scripts/fuzz.sh builds and runs it.
#include <cstdint>
#include <cstdlib>

#include <sys/socket.h>
#include <unistd.h>

#include "Core/SdkState.h"
#include "KxSearch/Search.h"
#include "KxSearch/Search/DiscoveryLookupBinding.h"
#include "soapH.h"

namespace
{

/// The search's receiving half over a socket pair. It serves all inputs, as one search takes many datagrams.
class Receiver
{
public:
    Receiver()
    {
        char directory[] = "/tmp/search_reply_fuzz.XXXXXX"; // gone before the search can leave files in it
        const bool away = mkdtemp(directory) != nullptr && chdir(directory) == 0 && rmdir(directory) == 0;
        if (!away || socketpair(AF_UNIX, SOCK_DGRAM, 0, ends_) != 0)
            std::abort();
        m_fSearchCallBack = [](SearchDeviceInfo*, void*) {};
        proxy_.context()->socket = ends_[1];
        soap_set_mode(proxy_.context(), SOAP_IO_UDP);
    }

    void take(const std::uint8_t* bytes, std::size_t size)
    {
        if (send(ends_[0], bytes, size, 0) < 0)
            return; // longer than a datagram
        d__ProbeMatchesType matches{};
        if (proxy_.__dndl_Probe_Receive(nullptr, &matches) == SOAP_OK)
            Reporter(m_fSearchCallBack, nullptr).report(matches);
        if (recv(ends_[0], &matches, 1, MSG_DONTWAIT) >= 0)
            std::abort(); // nothing makes a search send anything
    }

private:
    int ends_[2] = {};
    DiscoveryLookupBinding proxy_{soap_new()};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static Receiver receiver;
    receiver.take(bytes, size);
    return 0;
}
