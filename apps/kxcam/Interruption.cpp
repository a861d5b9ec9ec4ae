#include "Interruption.h"

#include <csignal>

namespace kxcam
{
namespace
{

constexpr int endings[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t noted = 0;

void setHandler(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (const int signal : endings) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) // as nohup would have it
            sigaction(signal, &action, nullptr);
    }
}

} // namespace

InterruptGuard::InterruptGuard()
{
    setHandler([](int signal) { noted = signal; }, static_cast<int>(SA_RESETHAND));
}

InterruptGuard::~InterruptGuard()
{
    setHandler(SIG_DFL, 0);
}

bool InterruptGuard::interrupted()
{
    return noted != 0;
}

void Interruption::endBySignal()
{
    if (noted != 0)
        std::raise(noted);
}

} // namespace kxcam
