#include "cli/syntax.h"

#include <optional>

#include <CLI/CLI.hpp>

namespace Quill::Cli {

const Parameter& Parameter::Required() const {
    m_option->required();
    return *this;
}

const Parameter& Parameter::OneOf(const std::vector<std::string>& words) const {
    m_option->check(CLI::IsMember(words));
    return *this;
}

template <class T>
const Parameter& Parameter::Between(T least, T most) const {
    m_option->check(CLI::Range(least, most));
    return *this;
}

template const Parameter& Parameter::Between(unsigned, unsigned) const;
template const Parameter& Parameter::Between(double, double) const;

const Parameter& Parameter::Needs(const Parameter& other) const {
    m_option->needs(other.m_option);
    return *this;
}

const Parameter& Parameter::Excludes(const Parameter& other) const {
    m_option->excludes(other.m_option);
    return *this;
}

template <class T>
Parameter Syntax::Option(const char* names, T& value, const char* meaning) const {
    return Parameter(*m_command->add_option(names, value, meaning));
}

template Parameter Syntax::Option(const char*, std::string&, const char*) const;
template Parameter Syntax::Option(const char*, std::optional<std::string>&, const char*) const;
template Parameter Syntax::Option(const char*, std::vector<std::string>&, const char*) const;
template Parameter Syntax::Option(const char*, int&, const char*) const;
template Parameter Syntax::Option(const char*, std::optional<unsigned>&, const char*) const;
template Parameter Syntax::Option(const char*, std::optional<double>&, const char*) const;

Parameter Syntax::Flag(const char* names, bool& value, const char* meaning) const {
    return Parameter(*m_command->add_flag(names, value, meaning));
}

Syntax Syntax::OneOfGroup(const char* name) const {
    CLI::Option_group& group = *m_command->add_option_group(name);
    group.require_option(1);
    return Syntax(group);
}

}  // namespace Quill::Cli
