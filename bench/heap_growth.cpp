// What a long run of requests leaves behind on the heap.
#include "Modes.h"

#include <cstdio>
#include <list>

#include <malloc.h>

#include "Clients.h"

namespace
{

constexpr std::size_t cameraCount = 16;
constexpr unsigned warmUp = 1000; // until the heap has what it keeps anyway

bool requestAround(std::list<SdkClient>& clients, unsigned count)
{
    for (unsigned sent = 0; sent < count;) {
        for (auto client = clients.begin(); client != clients.end() && sent < count; ++client, ++sent) {
            if (!client->request())
                return false;
        }
    }
    return true;
}

} // namespace

int measureHeapGrowth(unsigned count)
{
    const CameraProcess cameras(cameraCount);
    std::list<SdkClient> clients;
    for (const Endpoint& camera : cameras.endpoints())
        clients.emplace_back(camera);

    bool done = requestAround(clients, warmUp);
    const std::size_t before = mallinfo2().uordblks;
    done = done && requestAround(clients, count);
    const std::size_t after = mallinfo2().uordblks;
    if (!done) {
        std::fprintf(stderr, "A request failed\n");
        return 1;
    }
    std::printf("bytes/heap_growth %td\n", static_cast<std::ptrdiff_t>(after - before));
    return 0;
}
