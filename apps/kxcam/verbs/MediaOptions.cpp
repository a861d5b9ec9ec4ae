#include "verbs/MediaOptions.h"

#include <CLI/CLI.hpp>

namespace kxcam
{

void addStreamOption(CLI::App& verb, std::string& stream)
{
    verb.add_option("--stream", stream, "main or sub")
        ->type_name("STREAM")
        ->check(CLI::IsMember({"main", "sub"}).description(""))
        ->capture_default_str();
}

void addSecondsOption(CLI::App& verb, double& seconds)
{
    verb.add_option("--seconds", seconds, "For so long; without it, until Ctrl-C")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.1, 1e6).description(""));
}

} // namespace kxcam
