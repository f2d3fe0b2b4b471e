// What a command takes on the command line. The library that reads command lines is large: only what needs all of it
// includes it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace Quill::Cli {

// An option or argument of a command, for what there is to say of it. Copies are the same one.
class Parameter {
public:
    explicit Parameter(CLI::Option& option) : m_option(&option) {}

    const Parameter& Required() const;
    const Parameter& OneOf(const std::vector<std::string>& words) const;
    template <class T>
    const Parameter& Between(T least, T most) const;
    const Parameter& Needs(const Parameter& other) const;
    const Parameter& Excludes(const Parameter& other) const;

private:
    CLI::Option* m_option;
};

// The parameters of a command. Those that are not required keep the values that they have; all have to stay until the
// command line is parsed.
class Syntax {
public:
    explicit Syntax(CLI::App& command) : m_command(&command) {}

    // An option when `names` begins with a hyphen, as "-o,--output", else an argument. `value` is a text, an optional
    // one, several of them, or a number.
    template <class T>
    Parameter Option(const char* names, T& value, const char* meaning) const;
    Parameter Flag(const char* names, bool& value, const char* meaning) const;

    // One of the parameters that are added to it has to be given, and no more than one.
    Syntax OneOfGroup(const char* name) const;

private:
    CLI::App* m_command;
};

}  // namespace Quill::Cli
