#include "ZrThread/ZrSync.h"

#include <cerrno>
#include <ctime>

#include "ZrThread/ZrMemory.h"

namespace
{

constexpr int timedOutNumber = 60; // the time-out's error number on the systems this interface comes from

constexpr long nanosecondsPerSecond = 1'000'000'000;
constexpr long nanosecondsPerMillisecond = 1'000'000;

/// A zeroed handle that `init` accepts (0), or null.
template <typename Handle, typename Init>
Handle* makeHandle(Init init)
{
    auto* handle = static_cast<Handle*>(zr_malloc(sizeof(Handle)));
    if (handle != nullptr && init(handle) == 0)
        return handle;
    zr_free(handle);
    return nullptr;
}

timespec deadlineIn(int ms)
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const long nanoseconds = ms % 1000 * nanosecondsPerMillisecond + now.tv_nsec;
    return {.tv_sec = now.tv_sec + ms / 1000 + nanoseconds / nanosecondsPerSecond,
            .tv_nsec = nanoseconds % nanosecondsPerSecond};
}

void unlockOnCancel(void* mutex)
{
    pthread_mutex_unlock(static_cast<pthread_mutex_t*>(mutex));
}

} // namespace

pthread_mutex_t* zr_mutex_init()
{
    return makeHandle<pthread_mutex_t>(
        [](pthread_mutex_t* mutex) { return pthread_mutex_init(mutex, nullptr); });
}

void zr_mutex_destroy(pthread_mutex_t* mutex)
{
    if (mutex == nullptr)
        return;
    pthread_mutex_destroy(mutex);
    zr_free(mutex);
}

int zr_mutex_lock(pthread_mutex_t* mutex)
{
    return mutex == nullptr ? -1 : pthread_mutex_lock(mutex);
}

int zr_mutex_unlock(pthread_mutex_t* mutex)
{
    return mutex == nullptr ? -1 : pthread_mutex_unlock(mutex);
}

sem_t* zr_sem_init(unsigned value)
{
    // A system without unnamed semaphores still hands out the handle.
    return makeHandle<sem_t>([value](sem_t* semaphore) {
        sem_init(semaphore, 0, value);
        return 0;
    });
}

int zr_sem_destroy(sem_t* semaphore)
{
    if (semaphore == nullptr)
        return 0;
    sem_destroy(semaphore);
    zr_free(semaphore);
    return 0;
}

int zr_sem_post(sem_t* semaphore)
{
    return semaphore == nullptr ? -1 : sem_post(semaphore);
}

int zr_sem_signal(pthread_cond_t* condition)
{
    return condition == nullptr ? -1 : pthread_cond_signal(condition);
}

int zr_sem_wait(pthread_cond_t* condition, pthread_mutex_t* mutex, int ms)
{
    return condition == nullptr ? -1 : zr_sem_timedwait_millsecs(condition, mutex, ms);
}

pthread_cond_t* zr_pthread_cond_init()
{
    return makeHandle<pthread_cond_t>(
        [](pthread_cond_t* condition) { return pthread_cond_init(condition, nullptr); });
}

ZrCond* zr_cond_init()
{
    return makeHandle<ZrCond>([](ZrCond* object) {
        object->mutex = zr_mutex_init();
        if (object->mutex == nullptr)
            return -1;
        object->condition = zr_pthread_cond_init();
        if (object->condition != nullptr)
            return 0;
        zr_mutex_destroy(object->mutex);
        return -1;
    });
}

int zr_cond_destroy(ZrCond* object)
{
    if (object == nullptr || object->condition == nullptr)
        return 0;
    pthread_cond_destroy(object->condition);
    if (object->mutex == nullptr)
        return 0;
    zr_mutex_destroy(object->mutex);
    zr_free(object);
    return 0;
}

int zr_cond_signal(ZrCond* object)
{
    return object == nullptr ? -1 : zr_sem_signal(object->condition);
}

int zr_cont_timedwait_millsecs(pthread_cond_t* condition, pthread_mutex_t* mutex, int ms)
{
    const timespec deadline = deadlineIn(ms);
    int result = 0;
    pthread_cleanup_push(unlockOnCancel, mutex);
    result = pthread_cond_timedwait(condition, mutex, &deadline);
    pthread_cleanup_pop(0);
    return result == -1 ? errno : 0; // a time-out is no failure
}

int zr_sem_timedwait_millsecs(pthread_cond_t* condition, pthread_mutex_t* mutex, int ms)
{
    return zr_cont_timedwait_millsecs(condition, mutex, ms);
}

int zr_cond_timewait(pthread_cond_t* condition, pthread_mutex_t* mutex, int ms)
{
    return zr_sem_wait(condition, mutex, ms);
}

int zr_cond_timedwait1(ZrCond* object, pthread_mutex_t* mutex, int ms)
{
    if (object == nullptr || object->condition == nullptr || zr_mutex_lock(mutex) != 0)
        return -1;
    const int waited = zr_cont_timedwait_millsecs(object->condition, mutex, ms);
    if (zr_mutex_unlock(mutex) != 0)
        return -1;
    if (waited == timedOutNumber)
        return 1;
    return waited == 0 ? 0 : -1;
}
