// The life of sessions and of the SDK, for the SDK's own use.
#pragma once

/// Ends a session: a running live view stops and its camera object goes, the player goes, the slot is freed. False when
/// there is no session with this id.
bool closeSession(long userId);

/// The stream-opening worker: idles until the SDK ends.
void* ThreadOpenRtsp(void*);
