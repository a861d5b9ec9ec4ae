// Threads. A handle is a heap cell with the POSIX thread id; its owner gives it back with zr_free.
#pragma once

#include <pthread.h>

extern "C" {

/// Starts a joinable thread with default attributes; the priority is ignored. Null when that fails.
pthread_t* zr_thread_create(int priority, void* (*start)(void*), void* argument);
/// Does nothing; 0.
int zr_thread_set_priority(pthread_t* thread, int priority);
/// Waits for the thread to end. The handle stays allocated. Returns the system's result, -1 for null.
int zr_thread_join(pthread_t* thread);
/// Ends the calling thread.
[[noreturn]] void zr_thread_exit();
}
