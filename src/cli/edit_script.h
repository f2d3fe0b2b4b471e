// Edit scripts: edits of a design as text, one a line. docs/edit-script.md describes them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command.h"
#include "orin/orin.h"

namespace Quill::Cli {

class ScriptRun;
struct ScriptStep;

// An object as a line names it.
struct ScriptObject {
    enum class Kind { Design, Block, Sheet, Cluster, Comp, Pin, Net, Bus, Piece, Config, Index, Variable };

    Kind kind = Kind::Design;
    std::vector<std::string> names;  // from the block inwards; of a variable its name
    Orin::Index index;               // of Kind::Index

    // As a line has it, for messages.
    std::string Text() const;
};

// What a line can begin with.
struct ScriptVerb {
    // What follows, a letter each: o an object, O one that may be left out, t a text, x a point, f the family of an
    // attribute, which may be left out, = a variable for the result, which may be left out; and last, one or more of a
    // kind: * objects, w words, p points.
    const char* form;
    const char* name;
    void (*run)(ScriptRun& run, const ScriptStep& step);
};

struct ScriptStep {
    std::size_t line = 0;  // counted from 1
    const ScriptVerb* verb = nullptr;
    std::vector<ScriptObject> objects;
    std::vector<std::string> texts;
    std::vector<Orin::Point> points;
    Orin::EAttributeType family = Orin::EAttributeType::User;
    std::string variable;
};

// An error of a line: "FILE:LINE: reason".
class ScriptError : public CommandError {
public:
    ScriptError(const std::string& file, std::size_t line, const std::string& reason);
};

// Reads the text of the script `file`. Throws a ScriptError for the first line that is wrong, and for a transaction
// that is not ended.
std::vector<ScriptStep> ParseEditScript(const std::string& file, std::string_view text);

}  // namespace Quill::Cli
