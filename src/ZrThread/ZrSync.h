// Mutexes, semaphores and condition variables: heap handles from an init function, given back by the matching
// destroy function. Results are the system's (0, or an error number; semaphores: 0 or -1) unless said otherwise.
#pragma once

#include <pthread.h>
#include <semaphore.h>

/// A condition object: a condition variable and a mutex of its own.
struct ZrCond
{
    pthread_cond_t* condition;
    pthread_mutex_t* mutex;
};

extern "C" {

pthread_mutex_t* zr_mutex_init(); ///< null when there is no memory
void zr_mutex_destroy(pthread_mutex_t* mutex);
int zr_mutex_lock(pthread_mutex_t* mutex);   ///< -1 for null
int zr_mutex_unlock(pthread_mutex_t* mutex); ///< -1 for null

/// Null when there is no memory. That a system lacks unnamed semaphores goes unnoticed.
sem_t* zr_sem_init(unsigned value);
int zr_sem_destroy(sem_t* semaphore); ///< 0, also for null
int zr_sem_post(sem_t* semaphore);    ///< -1 for null
/// Signals a condition variable, whatever the name says; -1 for null.
int zr_sem_signal(pthread_cond_t* condition);
/// Waits on a condition variable, whatever the name says: -1 for null, else zr_sem_timedwait_millsecs.
int zr_sem_wait(pthread_cond_t* condition, pthread_mutex_t* mutex, int ms);

pthread_cond_t* zr_pthread_cond_init(); ///< a condition variable alone; null when there is no memory
ZrCond* zr_cond_init();                 ///< a condition object; null when there is no memory
/// Destroys the condition variable, whose memory stays with whoever took its pointer, then the mutex and the object.
/// An object without a mutex is not freed, one without a condition variable left alone. Returns 0.
int zr_cond_destroy(ZrCond* object);
int zr_cond_signal(ZrCond* object); ///< -1 for null, also for a null condition variable

/// Waits until the condition is signalled, or `ms` milliseconds have passed by the wall clock, or for no reason: the
/// caller looks for itself. It holds `mutex`, which is unlocked when the thread is cancelled meanwhile. Returns 0,
/// after a time-out too.
int zr_cont_timedwait_millsecs(pthread_cond_t* condition, pthread_mutex_t* mutex, int ms);
int zr_sem_timedwait_millsecs(pthread_cond_t* condition, pthread_mutex_t* mutex, int ms); ///< the same
/// -1 for a null condition, else zr_cont_timedwait_millsecs.
int zr_cond_timewait(pthread_cond_t* condition, pthread_mutex_t* mutex, int ms);
/// Locks `mutex` (not the object's own), waits as zr_cont_timedwait_millsecs does, unlocks. Returns 0; 1 when that
/// wait gives the time-out number 60, which it never does by itself; -1 for a null, or when locking, waiting or unlocking
/// fails.
int zr_cond_timedwait1(ZrCond* object, pthread_mutex_t* mutex, int ms);
}
