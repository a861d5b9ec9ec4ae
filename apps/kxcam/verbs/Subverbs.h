// Verbs that stand below a verb: "upload firmware".
#pragma once

#include <memory>

#include <CLI/CLI.hpp>

#include "verbs/CommandLine.h"

namespace kxcam
{

/// A verb that asks for one of those below it. They have their options, and the help's footer, in common.
template <typename Options>
class Subverbs
{
public:
    using Work = ExitCode (*)(const Options& options, const CommandLine& line, Console& console);

    Subverbs(CLI::App& app, CommandLine& line, const char* name, const char* help, const char* footer = "")
        : options_(std::make_shared<Options>()), line_(line), verb_(*app.add_subcommand(name, help))
    {
        verb_.footer(footer);
        verb_.require_subcommand(1);
    }

    /// They last as long as the parser and the work.
    Options& options() const { return *options_; }

    CLI::App& add(const char* name, const char* help, Work work) const
    {
        CLI::App& verb = *verb_.add_subcommand(name, help);
        verb.callback([options = options_, &line = line_, work] {
            line.verb = [options, &line, work](Console& console) { return work(*options, line, console); };
        });
        return verb;
    }

    /// One that needs a text.
    CLI::App& add(const char* name, const char* help, Work work, const char* argument, std::string& value,
                  const char* argumentHelp) const
    {
        CLI::App& verb = add(name, help, work);
        verb.add_option(argument, value, argumentHelp)->type_name("")->required();
        return verb;
    }

private:
    std::shared_ptr<Options> options_;
    CommandLine& line_;
    CLI::App& verb_;
};

} // namespace kxcam
