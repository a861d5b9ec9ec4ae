#include "ipcctl/ipcctl.h"

// No stream can be opened yet, so there is none that the operations could act on: what they switch off is off.
struct CIpCamera::Impl
{
};

CIpCamera::CIpCamera() = default;
CIpCamera::~CIpCamera() = default;

void CIpCamera::SetVideoBufCallBack(VideoBufCallBack, void*) {}
void CIpCamera::SetAudioBufCallBack(AudioBufCallBack, void*) {}
void CIpCamera::SetDecodeEnable(bool, bool) {}
void CIpCamera::StopDisplay() {}
void CIpCamera::CloseMainStreamVideo() {}
void CIpCamera::CloseSubStreamVideo() {}

void CIpCamera::SetSaveDir(const char*) {}

int CIpCamera::StartSaveAvi(int, const char*)
{
    return -1;
}

int CIpCamera::StopSaveAvi(int)
{
    return -1;
}

int CIpCamera::SaveImage(int, int)
{
    return -1;
}

const char* CIpCamera::GetLastImage() const
{
    return "";
}

void CIpCamera::SetMotionDetectMap(unsigned char*) {}
void CIpCamera::SetMotionDetectLevel(int) {}
void CIpCamera::SetMotionSpaceTime(int) {}
void CIpCamera::SetMotionSaveType(int, int, int) {}
void CIpCamera::AddMotionSaveTime(_record_time_t*) {}
void CIpCamera::AddAutoSaveTime(_record_time_t*) {}
