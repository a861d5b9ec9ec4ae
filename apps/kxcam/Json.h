// Settings as JSON, for programs.
#pragma once

#include "Area.h"
#include "Console.h"

#include <nlohmann/json_fwd.hpp>

namespace kxcam
{

/// Prints a record as one object; a value that the camera does not tell is null.
void printJson(const Area& area, const Record& record, bool showSecrets, Console& console);

/// Prints any object.
void printObject(const nlohmann::ordered_json& object, Console& console);

} // namespace kxcam
