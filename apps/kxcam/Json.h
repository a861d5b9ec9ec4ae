// Settings as JSON, for programs.
#pragma once

#include "Area.h"
#include "Console.h"

namespace kxcam
{

/// Prints a record as one object; a value that the camera does not tell is null.
void printJson(const Area& area, const Record& record, bool showSecrets, Console& console);

} // namespace kxcam
