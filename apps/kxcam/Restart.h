// Following a camera through a restart.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "Session.h"

namespace kxcam
{

/// The version of the camera's firmware; nothing when the camera does not answer.
std::optional<std::string> askVersion(const Session& session);

/// Waits until the camera has been out of reach and is back, or tells another version than `before`, if that is known; its
/// version then.
/// A Failure when that takes too long, or when the camera takes the login no more. Ctrl-C ends the waiting (Interruption).
std::string versionAfterRestart(const Session& session, const std::optional<std::string>& before,
                                std::chrono::seconds patience);

} // namespace kxcam
