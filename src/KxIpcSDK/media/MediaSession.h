// Ending a session's live view and playback.
#pragma once

#include "Core/UserInfo.h"

/// Clears the session's live fields, then switches its streams off: the decoders, and after a pause in which the last
/// frame passes, the sub stream before the main stream, the display and the callbacks.
void stopLiveView(UserInfo& session, long userId);

/// Stops and frees the session's player.
void stopPlayback(UserInfo& session);
