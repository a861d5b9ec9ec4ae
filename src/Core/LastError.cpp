#include "Core/LastError.h"

std::atomic<long> g_nLastError{KX_ERROR_NONE};
