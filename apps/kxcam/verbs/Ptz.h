// The verbs of `kxcam ptz`.
#pragma once

#include <KxIpcSDK/KxPtz.h>

#include "verbs/Verb.h"

namespace kxcam
{

/// A command with its arguments, as the SDK takes them.
struct PtzOrder
{
    KxPtzCommand code = KX_PTZ_STOP;
    int preset = 0;
    std::string name{};
    int view = -1;  // of a fisheye camera; negative: none
    int speed = -1; // negative: the camera's own
};

/// Whether the camera has answered.
bool sendOrder(const Session& session, const PtzOrder& order);

/// Adds --view.
void addView(const Verb& verb, PtzOrder& order);

/// Adds a word that is on or off.
void addSwitch(const Verb& verb, std::string* word);

/// Says what was done: "light on", or for programs {"done": "light on"}.
void reportDone(const std::string& what, bool json, Console& console);

// Each adds verbs to `kxcam ptz`.
void addPtzMoves(const Verb& ptz);
void addPtzStatus(const Verb& ptz);
void addPtzTracking(const Verb& ptz);

} // namespace kxcam
