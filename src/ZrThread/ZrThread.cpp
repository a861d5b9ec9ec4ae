#include "ZrThread/ZrThread.h"

#include "ZrThread/ZrMemory.h"

pthread_t* zr_thread_create(int, void* (*start)(void*), void* argument)
{
    auto* thread = static_cast<pthread_t*>(zr_malloc(sizeof(pthread_t)));
    if (thread != nullptr && pthread_create(thread, nullptr, start, argument) == 0)
        return thread;
    zr_free(thread);
    return nullptr;
}

int zr_thread_set_priority(pthread_t*, int)
{
    return 0;
}

int zr_thread_join(pthread_t* thread)
{
    return thread == nullptr ? -1 : pthread_join(*thread, nullptr);
}

void zr_thread_exit()
{
    pthread_exit(nullptr);
}
