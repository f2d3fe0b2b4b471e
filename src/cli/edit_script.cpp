#include "cli/edit_script.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "cli/script_run.h"
#include "interchange/index_text.h"
#include "interchange/words.h"
#include "text/number.h"

namespace Quill::Cli {

namespace {

using Kind = ScriptObject::Kind;

struct KindRow {
    const char* word;
    Kind kind;
    std::size_t names;  // how many follow
};

constexpr KindRow Kinds[] = {
    {"design", Kind::Design, 0}, {"block", Kind::Block, 1},   {"sheet", Kind::Sheet, 2}, {"cluster", Kind::Cluster, 2},
    {"comp", Kind::Comp, 2},     {"pin", Kind::Pin, 3},       {"net", Kind::Net, 2},     {"bus", Kind::Bus, 2},
    {"piece", Kind::Piece, 3},   {"config", Kind::Config, 1},
};

constexpr std::string_view Blanks = " \t\r";
constexpr std::string_view Escapes = "\"\"\\\\n\nt\t";  // pairs: the letter behind a backslash, what it stands for

struct Token {
    std::string text;
    bool isQuoted = false;
};

// Takes one line apart.
class LineParser {
public:
    LineParser(const std::string& file, std::size_t line, std::string_view text)
        : m_file(file), m_line(line), m_rest(text) {
        while (Split()) {
        }
    }

    bool AtEnd() const { return m_next == m_tokens.size(); }

    ScriptStep Parse() {
        ScriptStep step;
        step.line = m_line;
        step.verb = &Verb();
        for (const char* part = step.verb->form; *part != '\0'; ++part)
            Take(*part, step);
        if (!AtEnd()) Fail("There is too much on the line, beginning with " + Peek().text);
        return step;
    }

private:
    [[noreturn]] void Fail(const std::string& reason) const { throw ScriptError(m_file, m_line, reason); }

    // Moves the next token of the line to the list; false at the end.
    bool Split() {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(Blanks), m_rest.size()));
        if (m_rest.empty() || m_rest.front() == '#') return false;
        Token& token = m_tokens.emplace_back();
        if (m_rest.front() != '"') {
            token.text = m_rest.substr(0, m_rest.find_first_of(Blanks));
            m_rest.remove_prefix(token.text.size());
            return true;
        }
        token.isQuoted = true;
        for (std::size_t at = 1; at < m_rest.size(); ++at) {
            char c = m_rest[at];
            if (c == '"') {
                const std::string_view behind = m_rest.substr(at + 1);
                if (!behind.empty() && Blanks.find(behind.front()) == std::string_view::npos)
                    Fail("A blank has to follow the closing quotation mark");
                m_rest = behind;
                return true;
            }
            if (c == '\\') {
                c = ++at < m_rest.size() ? m_rest[at] : '\0';
                std::size_t escape = 0;
                while (escape < Escapes.size() && Escapes[escape] != c)
                    escape += 2;
                if (escape >= Escapes.size()) Fail("Behind a backslash stands one of \" \\ n t");
                c = Escapes[escape + 1];
            }
            token.text += c;
        }
        Fail("The closing quotation mark is missing");
    }

    const Token& Peek() const { return m_tokens[m_next]; }
    Token& Next(const char* missing) {
        if (AtEnd()) Fail(std::string(missing) + " is missing");
        return m_tokens[m_next++];
    }

    // The longest verb that the line begins with.
    const ScriptVerb& Verb() {
        const ScriptVerb* found = nullptr;
        const std::string first = Next("The command").text;
        const std::string both = AtEnd() ? first : first + " " + Peek().text;
        for (const ScriptVerb& verb : ScriptVerbs())
            if (verb.name == both || (verb.name == first && found == nullptr)) found = &verb;
        if (found == nullptr) Fail("There is no command " + first);
        if (found->name != first) ++m_next;
        return *found;
    }

    void Take(char part, ScriptStep& step) {
        switch (part) {
            case 'O':
                if (AtEnd()) return;
                [[fallthrough]];
            case 'o':
                step.objects.push_back(Object());
                return;
            case 't':
                step.texts.push_back(Next("A text").text);
                return;
            case 'f':
                step.family = Family();
                return;
            case '=':
                step.variable = Variable();
                return;
            case '*':
                return Repeat([&] { step.objects.push_back(Object()); });
            case 'w':
                return Repeat([&] { step.texts.push_back(Next("A word").text); });
            case 'x':
                step.points.push_back(Point());
                return;
            default:
                return Repeat([&] { step.points.push_back(Point()); });
        }
    }

    template <class Parse>
    void Repeat(const Parse& parse) {
        do {
            parse();
        } while (!AtEnd());
    }

    ScriptObject Object() {
        const Token token = Next("An object");
        ScriptObject object;
        if (!token.isQuoted && token.text.starts_with('@')) {
            const std::optional<Orin::Index> index = Interchange::ParseIndex(std::string_view(token.text).substr(1));
            if (!index) Fail(token.text + " is no index");
            object.kind = Kind::Index;
            object.index = *index;
        } else if (!token.isQuoted && token.text.starts_with('$')) {
            object.kind = Kind::Variable;
            object.names = {token.text.substr(1)};
        } else {
            const auto row = std::find_if(std::begin(Kinds), std::end(Kinds),
                                          [&token](const KindRow& known) { return token.text == known.word; });
            if (row == std::end(Kinds) || token.isQuoted) Fail("There is no kind of object " + token.text);
            object.kind = row->kind;
            for (std::size_t i = 0; i < row->names; ++i)
                object.names.push_back(Next("A name of the object").text);
        }
        return object;
    }

    Orin::EAttributeType Family() {
        if (AtEnd()) return Orin::EAttributeType::User;
        const std::string& word = Next("").text;
        const auto family = Interchange::ValueOf<Orin::EAttributeType>(word);
        if (!family) Fail("There is no family of attributes " + word);
        return *family;
    }

    std::string Variable() {
        if (AtEnd()) return {};
        const Token as = Next("");
        if (as.text != "as") Fail("There is too much on the line, beginning with " + as.text);
        const Token& name = Next("The variable");
        if (name.text.size() < 2 || name.text.front() != '$') Fail("A variable begins with $, unlike " + name.text);
        return name.text.substr(1);
    }

    Orin::Point Point() {
        const std::string& text = Next("A point").text;
        const std::size_t comma = text.find(',');
        const auto x = Text::ParseInt64(text);
        const auto y = Text::ParseInt64(std::string_view(text).substr(std::min(comma + 1, text.size())));
        if (comma == std::string::npos || !x.Ok() || !y.Ok() || x.length != comma ||
            comma + 1 + y.length != text.size())
            Fail(text + " is no point; one looks like 25400000,-1270000");
        return {x.value, y.value};
    }

    const std::string& m_file;
    const std::size_t m_line;
    std::string_view m_rest;
    std::vector<Token> m_tokens;
    std::size_t m_next = 0;
};

// Sees to it that transactions are begun and ended in turn, and that variables are given before they are used.
class OrderCheck {
public:
    explicit OrderCheck(const std::string& file) : m_file(file) {}

    void Add(const ScriptStep& step) {
        const std::string_view verb = step.verb->name;
        if (verb.starts_with("begin")) {
            if (m_begun != 0) throw ScriptError(m_file, step.line, "There is a transaction already");
            m_begun = step.line;
        } else if (verb == "commit" || verb == "rollback") {
            if (m_begun == 0) throw ScriptError(m_file, step.line, "There is no transaction");
            m_begun = 0;
        }
        for (const ScriptObject& object : step.objects)
            if (object.kind == Kind::Variable && !Knows(object.names[0]))
                throw ScriptError(m_file, step.line, "No line before gives " + object.Text());
        if (!step.variable.empty()) m_variables.push_back(step.variable);
    }
    void End() const {
        if (m_begun != 0) throw ScriptError(m_file, m_begun, "The transaction is not ended");
    }

private:
    bool Knows(const std::string& variable) const {
        return std::find(m_variables.begin(), m_variables.end(), variable) != m_variables.end();
    }

    const std::string& m_file;
    std::size_t m_begun = 0;  // the line, while there is a transaction
    std::vector<std::string> m_variables;
};

}  // namespace

std::string ScriptObject::Text() const {
    if (kind == Kind::Index) return "@" + Interchange::IndexText(index);
    if (kind == Kind::Variable) return "$" + names[0];
    std::string text;
    for (const KindRow& row : Kinds)
        if (row.kind == kind) text = row.word;
    for (const std::string& name : names)
        text += " " + (name.empty() ? "\"\"" : name);
    return text;
}

ScriptError::ScriptError(const std::string& file, std::size_t line, const std::string& reason)
    : CommandError(fmt::format("{}:{}: {}", file, line, reason)) {}

std::vector<ScriptStep> ParseEditScript(const std::string& file, std::string_view text) {
    std::vector<ScriptStep> steps;
    OrderCheck order(file);
    for (std::size_t line = 1; !text.empty(); ++line) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        LineParser parser(file, line, text.substr(0, end));
        if (!parser.AtEnd()) {
            steps.push_back(parser.Parse());
            order.Add(steps.back());
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    order.End();
    return steps;
}

}  // namespace Quill::Cli
