// The families of cameras that speak different dialects. This is the one place that tells them apart.
#pragma once

#include "KxIpcSDK/Reply.h"

enum class ChipFamily
{
    Ti,   // plain keys
    Hisi, // page dialect; models that end in "B", "C" or "-SP"
    A     // page dialect; models that end in "A"
};

/// The family of a model; an empty one counts as the TI family's.
ChipFamily chipFamilyOf(char* model);

/// The family of the camera whose model a reply tells. A reply without a model counts as the TI family's.
ChipFamily chipFamilyOf(const OkReply& reply);
