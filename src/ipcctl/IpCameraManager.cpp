#include "ipcctl/ipcctl.h"

#include <map>
#include <mutex>
#include <new>
#include <utility>

#include "ipcctl/StreamTiming.h"

struct CIpCameraManager::Impl
{
    std::mutex mutex; // guards cameras
    std::map<int, std::shared_ptr<CIpCamera>> cameras;
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
    CIpCameraManager* ended = nullptr;
    {
        const std::lock_guard lock(instanceMutex);
        std::swap(ended, instance);
    }
    if (ended == nullptr)
        return;
    for (const auto& [id, camera] : ended->impl_->cameras)
        camera->stopStreams(); // all of them, before any is waited for
    const auto until = closingTime();
    for (const auto& [id, camera] : ended->impl_->cameras)
        camera->closeStreams(until);
    delete ended;
}

std::shared_ptr<CIpCamera> CIpCameraManager::AddIpCamera(int userId)
try {
    const std::lock_guard lock(impl_->mutex);
    std::shared_ptr<CIpCamera>& camera = impl_->cameras[userId];
    if (camera == nullptr)
        camera = std::make_shared<CIpCamera>();
    return camera;
} catch (const std::bad_alloc&) {
    return nullptr;
}

std::shared_ptr<CIpCamera> CIpCameraManager::GetIpCamera(int userId)
{
    const std::lock_guard lock(impl_->mutex);
    const auto found = impl_->cameras.find(userId);
    return found != impl_->cameras.end() ? found->second : nullptr;
}

void CIpCameraManager::DelIpCamera(int userId)
{
    std::shared_ptr<CIpCamera> camera; // let go of without the mutex: callbacks that end may ask for it
    {
        const std::lock_guard lock(impl_->mutex);
        const auto found = impl_->cameras.find(userId);
        if (found == impl_->cameras.end())
            return;
        camera.swap(found->second);
        impl_->cameras.erase(found);
    }
    camera->stopStreams(); // others may hold the camera still
    camera->closeStreams(closingTime());
}
