#include "ipcctl/ipcctl.h"

// No file can be opened yet: a player is at the end of nothing.
struct CRecordPlayer::Impl
{
};

CRecordPlayer::CRecordPlayer() = default;
CRecordPlayer::~CRecordPlayer() = default;

void CRecordPlayer::SetVideoBufCallBack(VideoBufCallBack, void*) {}
void CRecordPlayer::SetAudioBufCallBack(AudioBufCallBack, void*) {}

int CRecordPlayer::GetCurrTime()
{
    return 0;
}

int CRecordPlayer::GetDuration()
{
    return 0;
}

int CRecordPlayer::IsPlayFinish()
{
    return 1;
}

void CRecordPlayer::SetSpeedLevel(int) {}
void CRecordPlayer::Pause() {}
void CRecordPlayer::Resume() {}
void CRecordPlayer::SeekTime(int) {}
void CRecordPlayer::Stop() {}
