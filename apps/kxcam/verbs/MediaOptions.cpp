#include "verbs/MediaOptions.h"

#include "verbs/Verb.h"

namespace kxcam
{

void addStreamOption(const Verb& verb, std::string* stream)
{
    verb.option("--stream", "STREAM", stream, "main or sub").oneOf({"main", "sub"}).showDefault();
}

void addSecondsOption(const Verb& verb, double* seconds)
{
    verb.option("--seconds", "SECONDS", seconds, "For so long; without it, until Ctrl-C").within(0.1, 1e6);
}

} // namespace kxcam
