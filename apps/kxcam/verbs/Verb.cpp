#include "verbs/Verb.h"

#include <utility>

#include <CLI/CLI.hpp>

namespace kxcam
{
namespace
{

/// What a person may give is told by the option's help.
void check(CLI::Option& option, CLI::Validator validator)
{
    option.check(validator.description(""));
}

} // namespace

Parameter Parameter::required() const
{
    option_->required();
    return *this;
}

Parameter Parameter::showDefault() const
{
    option_->capture_default_str();
    return *this;
}

Parameter Parameter::within(int least, int most) const
{
    check(*option_, CLI::Range(least, most));
    return *this;
}

Parameter Parameter::within(double least, double most) const
{
    check(*option_, CLI::Range(least, most));
    return *this;
}

Parameter Parameter::notNegative() const
{
    check(*option_, CLI::NonNegativeNumber);
    return *this;
}

Parameter Parameter::oneOf(const std::vector<std::string>& words) const
{
    check(*option_, CLI::IsMember(words));
    return *this;
}

Parameter Parameter::oneOfOrWithin(const std::vector<std::string>& words, int least, int most) const
{
    check(*option_, CLI::IsMember(words) | CLI::Range(least, most));
    return *this;
}

Parameter Parameter::existingFile() const
{
    check(*option_, CLI::ExistingFile);
    return *this;
}

Parameter Parameter::count(int least, int most) const
{
    option_->expected(least, most);
    return *this;
}

Parameter Parameter::needs(const Parameter& other) const
{
    option_->needs(other.option_);
    return *this;
}

Verb Verb::add(const std::string& name, const std::string& help) const
{
    app_->require_subcommand(1);
    return {*app_->add_subcommand(name, help), *line_};
}

Verb Verb::add(const std::string& name, const std::string& help, const std::string& footer) const
{
    const Verb verb = add(name, help);
    verb.app_->footer(footer);
    return verb;
}

Verb Verb::does(Work work) const
{
    app_->callback([line = line_, work = std::move(work)] { line->work = work; });
    return *this;
}

Parameter Verb::argument(const std::string& name, Destination value, const std::string& help) const
{
    return option(name, "", value, help);
}

Parameter Verb::option(const std::string& name, const std::string& type, Destination value,
                       const std::string& help) const
{
    CLI::Option* option =
        std::visit([&](auto* destination) { return app_->add_option(name, *destination, help); }, value);
    return Parameter(*option->type_name(type));
}

void Verb::flag(const std::string& name, bool* value, const std::string& help) const
{
    app_->add_flag(name, *value, help);
}

} // namespace kxcam
