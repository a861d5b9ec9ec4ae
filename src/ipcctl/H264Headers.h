// What the headers of H.264 say of the order of frames.
#pragma once

#include <optional>

#include "ipcctl/AnnexB.h"

/// Of a sequence parameter set.
struct SequenceHeader
{
    unsigned id = 0;
    int frameNumberBits = 0;
    bool numbersMayBeLeftOut = false;
    bool separateColours = false;
    bool framesOnly = true; // no fields
};

/// Of a slice, a part of a picture.
struct SliceHeader
{
    bool isFirst = false;     // of its picture
    unsigned frameNumber = 0; // within so many bits
    bool isField = false;
};

/// From a unit's first byte on; nothing when it makes no sense.
std::optional<SequenceHeader> readSequenceHeader(Bytes unit);
std::optional<SliceHeader> readSliceHeader(Bytes unit, const SequenceHeader& sequence);
