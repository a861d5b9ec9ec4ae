// Options of the verbs that show or save pictures.
#pragma once

#include <limits>
#include <string>

namespace CLI
{
class App;
}

namespace kxcam
{

inline constexpr double forEver = std::numeric_limits<double>::infinity();

/// Which stream: "main" or "sub".
void addStreamOption(CLI::App& verb, std::string& stream);

/// For how long; Ctrl-C ends it before.
void addSecondsOption(CLI::App& verb, double& seconds);

} // namespace kxcam
