#include "Core/SdkState.h"

std::atomic<bool> g_bInit{false};
std::atomic<CIpCameraManager*> g_IpCameraManager{nullptr};
std::shared_mutex g_IpCameraManagerMutex;

std::atomic<fSearchCallBack> m_fSearchCallBack{nullptr};
std::atomic<void*> m_pSearchUser{nullptr};
std::atomic<int> g_nSilentSearches{0};
std::atomic<pthread_t*> m_pThreadSearch{nullptr};

std::atomic<bool> g_bThreadOpenRtsp{false};
std::atomic<pthread_t*> m_pThreadOpenRtsp{nullptr};
