// What the streaming library calls with decoded frames, on its own threads. The user pointer is the record of the
// session, which passes the frame on to its callback under its id. -1 without a session, else 0.
#pragma once

int HandleVideoBuffCB(void* camera, void* user, unsigned char* frame, int width, int height, int frameType,
                      float frameRate);
int HandlerRealAudioBufCB(void* camera, void* user, short* samples, int count, int channels);

// The same for players of recordings.
int HandleVideoBuffCB_Play(void* player, void* user, unsigned char* frame, int width, int height,
                           int frameType, float frameRate);
int HandlerRealAudioBufCB_Play(void* player, void* user, short* samples, int count, int channels);
