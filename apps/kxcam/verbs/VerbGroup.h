// A verb that is made of verbs, which share their options: `kxcam users add`.
#pragma once

#include <memory>

#include <CLI/CLI.hpp>

#include "verbs/CommandLine.h"

namespace kxcam
{

template <typename Options>
struct VerbGroup
{
    using Work = ExitCode (*)(const Options& options, const CommandLine& line, Console& console);

    VerbGroup(CLI::App& parent, const char* name, const char* help, CommandLine& commandLine)
        : app(parent.add_subcommand(name, help)), options(std::make_shared<Options>()), line(commandLine)
    {
        app->require_subcommand(1);
    }

    CLI::App* add(const char* name, const char* help, Work work) const
    {
        CLI::App* verb = app->add_subcommand(name, help);
        verb->callback([options = options, &line = line, work] {
            line.verb = [options, &line, work](Console& console) { return work(*options, line, console); };
        });
        return verb;
    }

    CLI::App* app;
    std::shared_ptr<Options> options;
    CommandLine& line;
};

} // namespace kxcam
