// What opening and closing live views leaves behind.
#include "Client.h"

#include <atomic>
#include <cstdio>
#include <fstream>

#include <malloc.h>
#include <unistd.h>

#include "LiveView.h"

namespace
{

constexpr unsigned warmUp = 100; // until the heap has what it keeps anyway

struct Memory
{
    long heap;
    long resident;
};

Memory memoryNow()
{
    long size = 0;
    long pages = 0;
    std::ifstream("/proc/self/statm") >> size >> pages;
    return {static_cast<long>(mallinfo2().uordblks), pages * ::sysconf(_SC_PAGESIZE)};
}

/// One session all the time: its stream object stays, its streams do not.
class Cycles
{
public:
    explicit Cycles(const Endpoint& camera)
        : view_(camera, [this](const Picture&) {
              shown_ = true;
              shown_.notify_all();
          })
    {
    }

    void run(unsigned count)
    {
        for (unsigned i = 0; i < count; ++i) {
            shown_ = false;
            view_.open();
            shown_.wait(false);
            view_.stop();
        }
    }

private:
    std::atomic<bool> shown_{false};
    LiveView view_;
};

} // namespace

void measureCycles(unsigned count, const Endpoint& camera)
{
    Cycles cycles(camera);
    cycles.run(warmUp);
    const Memory before = memoryNow();
    cycles.run(count - warmUp);
    const Memory after = memoryNow();
    std::fprintf(stderr, "bytes/cycles_heap %ld\nbytes/cycles_resident %ld\n", after.heap - before.heap,
                 after.resident - before.resident);
}
