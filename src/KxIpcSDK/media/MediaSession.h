// Ending a session's live view and playback.
#pragma once

#include "Core/UserInfo.h"

/// Clears the session's live fields, then switches its streams off. Nothing can reach the cleared callback: decoders go
/// off first, and their streams close after a pause, the sub stream before the main stream.
void stopLiveView(UserInfo& session);

/// Stops and frees the session's player.
void stopPlayback(UserInfo& session);
