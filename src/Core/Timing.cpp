#include "Core/Timing.h"

Timing g_timing;
