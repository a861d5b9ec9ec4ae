#include "ipcctl/ipcctl.h"

#include <map>
#include <mutex>
#include <new>

struct CIpCameraManager::Impl
{
    std::mutex mutex; // guards cameras
    std::map<int, CIpCamera> cameras;
};

namespace
{

std::mutex instanceMutex; // guards instance
CIpCameraManager* instance = nullptr;

} // namespace

CIpCameraManager::CIpCameraManager() : impl_(std::make_unique<Impl>()) {}
CIpCameraManager::~CIpCameraManager() = default;

CIpCameraManager* CIpCameraManager::GetInstance()
try {
    const std::lock_guard lock(instanceMutex);
    if (instance == nullptr)
        instance = new CIpCameraManager;
    return instance;
} catch (const std::bad_alloc&) {
    return nullptr;
}

void CIpCameraManager::DeleteInstance()
{
    const std::lock_guard lock(instanceMutex);
    delete instance;
    instance = nullptr;
}

CIpCamera* CIpCameraManager::AddIpCamera(int userId)
try {
    const std::lock_guard lock(impl_->mutex);
    return &impl_->cameras[userId];
} catch (const std::bad_alloc&) {
    return nullptr;
}

CIpCamera* CIpCameraManager::GetIpCamera(int userId)
{
    const std::lock_guard lock(impl_->mutex);
    const auto found = impl_->cameras.find(userId);
    return found != impl_->cameras.end() ? &found->second : nullptr;
}

void CIpCameraManager::DelIpCamera(int userId)
{
    const std::lock_guard lock(impl_->mutex);
    impl_->cameras.erase(userId);
}
