// What the values of a decoded picture mean as colours.
#pragma once

#include "ipcctl/Av.h"

/// The formats whose names say that brightness fills its byte are the ordinary ones else.
AVPixelFormat ordinaryFormat(AVPixelFormat format);

bool isFullRange(const AVFrame& frame);

/// The colour matrix, for sws_getCoefficients.
int matrixOf(const AVFrame& frame);
