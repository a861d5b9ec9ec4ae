#include "Log/KxLog.h"

#include <cstdio>

void KxOutputDebugInfo(int /*level*/, const char* text, ...)
{
    // C stdio, so that the line keeps its place among the application's own prints.
    std::printf("KxOutputDebugInfo: %s \n", text != nullptr ? text : "");
}
