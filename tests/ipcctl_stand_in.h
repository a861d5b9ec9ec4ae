// A streaming library that opens nothing and writes down what it is told. It takes the real one's place in a test
// program of its own; its frames come when a test sends them, on the test's thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ipcctl/ipcctl.h"

namespace standin
{

struct Call
{
    std::string text; ///< "SetDecodeEnable(1, 0)"
    std::chrono::steady_clock::time_point time;
};

/// How the library behaves from now on.
struct Behaviour
{
    int openResult = 0;                 ///< of streams and files
    std::function<void()> whileOpening; ///< called within the opening of a stream or a file, once
    std::string lastImage;
    StreamStatus status{};
};

/// Forgets calls and behaviour.
void reset();
Behaviour& behaviour();

/// The calls so far, in their order; they are forgotten.
std::vector<Call> takeCalls();
/// Their texts.
std::vector<std::string> takeTexts();

/// Players that are not destroyed.
int livingPlayers();

/// Where the frames of a camera or a player go.
struct Receivers;
/// Those of a user id's camera object, and of the player that was made last; null when there is none.
std::shared_ptr<Receivers> receiversOf(long userId);
std::shared_ptr<Receivers> lastPlayer();
/// What the library does with a frame: nothing and 0 when no callback is set, else the callback's result.
int sendPicture(Receivers& receivers, unsigned char* frame, int width, int height);
int sendSound(Receivers& receivers, short* samples, int count);

} // namespace standin
