#include "Core/SdkState.h"

std::atomic<bool> g_bInit{false};
CIpCameraManager* g_IpCameraManager = nullptr;

std::atomic<fSearchCallBack> m_fSearchCallBack{nullptr};
std::atomic<void*> m_pSearchUser{nullptr};
pthread_t* m_pThreadSearch = nullptr;

std::atomic<bool> g_bThreadOpenRtsp{false};
pthread_t* m_pThreadOpenRtsp = nullptr;
