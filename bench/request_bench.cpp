// Time per request, from one thread to one camera and from 64 threads to 64 cameras.
#include <atomic>

#include <benchmark/benchmark.h>

#include "Best.h"
#include "Clients.h"

namespace
{

constexpr int manyThreads = 64;

/// Each thread has a camera of its own, and each run another one than the run before: the connections of one
/// run keep their ports for a while, and the next run would search ever longer for a free one towards the
/// same camera.
const Endpoint& nextCamera()
{
    static const Cameras cameras(manyThreads);
    static std::atomic<std::size_t> next{0};
    return cameras.endpoints()[next.fetch_add(1) % manyThreads];
}

template <typename Client>
void request(benchmark::State& state)
{
    Client client(nextCamera());
    for (auto _ : state) {
        if (!client.request()) {
            state.SkipWithError("a request failed");
            break;
        }
    }
}

BENCHMARK(request<SdkClient>)->Name("request/sdk")->UseRealTime()->ComputeStatistics("best", best);
BENCHMARK(request<FloorClient>)->Name("request/floor")->UseRealTime()->ComputeStatistics("best", best);
BENCHMARK(request<CurlClient>)->Name("request/curl")->UseRealTime()->ComputeStatistics("best", best);

// Here the time is the wall clock's, over all threads' requests.
BENCHMARK(request<SdkClient>)
    ->Name("crowd/sdk")
    ->Threads(manyThreads)
    ->UseRealTime()
    ->ComputeStatistics("best", best);
BENCHMARK(request<FloorClient>)
    ->Name("crowd/floor")
    ->Threads(manyThreads)
    ->UseRealTime()
    ->ComputeStatistics("best", best);

} // namespace
