// Settings as JSON, for programs.
#pragma once

#include <vector>

#include "Area.h"
#include "Console.h"

#include <nlohmann/json_fwd.hpp>

namespace kxcam
{

/// A record as one object; a value that the camera does not tell is null.
nlohmann::ordered_json toJson(const Area& area, const Record& record, bool showSecrets);

void printJson(const nlohmann::ordered_json& object, Console& console);
void printJson(const Area& area, const Record& record, bool showSecrets, Console& console);

/// Prints an object of such objects by stream; a stream that the camera does not have is null.
void printJson(const std::vector<StreamRecord>& streams, bool showSecrets, Console& console);

} // namespace kxcam
