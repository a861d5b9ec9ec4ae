// Options of the verbs that show or save pictures.
#pragma once

#include <limits>
#include <string>

namespace kxcam
{

class Verb;

inline constexpr double forEver = std::numeric_limits<double>::infinity();

/// Which stream: "main" or "sub".
void addStreamOption(const Verb& verb, std::string* stream);

/// For how long; Ctrl-C ends it before.
void addSecondsOption(const Verb& verb, double* seconds);

} // namespace kxcam
