#include <KxIpcSDK/KxSearch.h>

#include <pthread.h>

#include "Core/LastError.h"
#include "Core/SdkState.h"
#include "KxSearch/Search.h"
#include "ZrThread/ZrMemory.h"
#include "ZrThread/ZrThread.h"

namespace
{

constexpr int searchPriority = 2001;

/// Keeps this search's thread and lets go of an earlier one, which has finished or will by itself.
void keepThread(pthread_t* thread)
{
    pthread_t* old = m_pThreadSearch.exchange(thread);
    if (old == nullptr)
        return;
    pthread_detach(*old);
    zr_free(old);
}

pthread_t* startThread(bool silent)
{
    if (!silent)
        return zr_thread_create(searchPriority, ThreadSearch, nullptr);
    ++g_nSilentSearches;
    pthread_t* thread = zr_thread_create(searchPriority, ThreadSilentSearch, nullptr);
    if (thread == nullptr)
        --g_nSilentSearches;
    return thread;
}

} // namespace

int Kx_Sdk_SearchIpc(fSearchCallBack callback, void* user)
{
    if (!g_bInit)
        return failWith(KX_ERROR_NOT_INITIALISED);
    fSearchCallBack none = nullptr;
    if (!m_fSearchCallBack.compare_exchange_strong(none, callback))
        return failWith(KX_ERROR_BUSY);
    m_pSearchUser = user;
    keepThread(nullptr);
    keepThread(startThread(callback == nullptr));
    return 0;
}
