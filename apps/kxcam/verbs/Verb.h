// A verb as its file describes it: name, help, options, and what it does.
//
// The parser behind it is a header that takes longer to read than a verb takes to compile, so verbs do not see it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "verbs/CommandLine.h"

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace kxcam
{

/// Where a value goes. It lasts as long as the parser; what it holds before is the default.
using Destination = std::variant<std::string*, int*, double*, std::vector<std::string>*, std::vector<float>*>;

/// For a verb whose help does not end as that of the verb above.
inline constexpr char noFooter[] = "";

/// An option or an argument of a verb. What is asked of it can be said in a row.
class Parameter
{
public:
    explicit Parameter(CLI::Option& option) : option_(&option) {}

    Parameter required() const;

    /// The help tells the default.
    Parameter showDefault() const;

    Parameter within(int least, int most) const;
    Parameter within(double least, double most) const;
    Parameter notNegative() const;
    Parameter oneOf(const std::vector<std::string>& words) const;
    Parameter oneOfOrWithin(const std::vector<std::string>& words, int least, int most) const;
    Parameter existingFile() const;

    /// A list has so many values.
    Parameter count(int least, int most) const;

    /// It can be given only together with the other.
    Parameter needs(const Parameter& other) const;

private:
    CLI::Option* option_;
};

/// A verb, or at the top of all the program itself. Copies mean the same verb.
class Verb
{
public:
    /// `line` is told what the chosen verb does, and outlives the parser.
    Verb(CLI::App& app, CommandLine& line) : app_(&app), line_(&line) {}

    /// A verb below this one, which from then on has to be given one. Its help ends as this one's does.
    Verb add(const std::string& name, const std::string& help) const;
    Verb add(const std::string& name, const std::string& help, const std::string& footer) const;

    Verb does(Work work) const;

    /// The same with options, which last as long as the parser and the work.
    template <typename Options>
    Verb does(ExitCode (*work)(const Options&, const CommandLine&, Console&),
              std::shared_ptr<Options> options) const
    {
        return does([work, options = std::move(options)](const CommandLine& line, Console& console) {
            return work(*options, line, console);
        });
    }

    /// A value that is known by its place: "AREA".
    Parameter argument(const std::string& name, Destination value, const std::string& help) const;

    /// A value behind its name: "--stream NAME".
    Parameter option(const std::string& name, const std::string& type, Destination value,
                     const std::string& help) const;

    void flag(const std::string& name, bool* value, const std::string& help) const;

private:
    CLI::App* app_;
    CommandLine* line_;
};

} // namespace kxcam
