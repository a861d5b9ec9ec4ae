// User-space instructions of a client's own thread. Callgrind counts what runs between two toggles on the
// thread that toggles, so neither the start of the program nor the camera, which runs on a thread of its own,
// is in the counts.
#include "Modes.h"

#include <cstdio>

#include <valgrind/callgrind.h>

#include "Clients.h"

namespace
{

constexpr unsigned warmUp = 20; // first uses fill caches of the C library, the resolver and libcurl

template <typename Client>
bool requestTimes(Client& client, unsigned count)
{
    for (unsigned i = 0; i < count; ++i) {
        if (!client.request())
            return false;
    }
    return true;
}

template <typename Client>
bool countFor(const char* name, const Endpoint& camera, unsigned count)
{
    Client client(camera);
    if (!requestTimes(client, warmUp))
        return false;
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
    const bool done = requestTimes(client, count);
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name);
    return done;
}

} // namespace

int countInstructions(unsigned count)
{
    if (RUNNING_ON_VALGRIND == 0) {
        std::fprintf(stderr, "Instructions are counted by callgrind: see scripts/bench.sh\n");
        return 1;
    }
    const Cameras cameras(1);
    const Endpoint& byAddress = cameras.endpoints().front();
    const Endpoint byName{"localhost", byAddress.port};
    const bool done =
        countFor<SdkClient>("sdk", byAddress, count) && countFor<FloorClient>("floor", byAddress, count) &&
        countFor<CurlClient>("curl", byAddress, count) && countFor<SdkClient>("sdk-by-name", byName, count) &&
        countFor<FloorClient>("floor-by-name", byName, count);
    if (!done)
        std::fprintf(stderr, "A request failed\n");
    return done ? 0 : 1;
}
