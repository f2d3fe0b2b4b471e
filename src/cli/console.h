// What reaches the terminal.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "cli/json.h"

namespace Quill::Cli {

// The text without anything that a terminal would take as a command: control characters (also those above U+007F, and
// the ones that change the direction of writing) and bytes that are not UTF-8 become \x1B, \u202E and the like.
std::string Printable(std::string_view text);

// A message to standard error, made printable: "quill: MESSAGE".
void Say(std::string_view message);

// An answer to standard output. Control characters as above are escaped, so that they are data for a reader of JSON and
// nothing for a terminal; bytes that are not UTF-8, which JSON cannot hold, become U+FFFD. On one line, or indented by
// as many blanks.
void PrintJson(const Json& answer, int indent = 2);

// An answer for people to standard output: printable, and with its line ends.
void PrintText(std::string_view text);

// Each text on a line of its own, made printable.
void PrintLines(const std::vector<std::string>& lines);

// An answer in the form that was asked for.
template <class T>
void Print(bool json, const T& answer, Json (*asJson)(const std::type_identity_t<T>&),
           std::string (*asText)(const std::type_identity_t<T>&)) {
    if (json) {
        PrintJson(asJson(answer));
    } else {
        PrintText(asText(answer));
    }
}

// Whether standard output takes colours: it is a terminal that has them, and NO_COLOR is not set.
bool HasColours();

// A table for people: a heading over each column, columns as wide as their widest cell. Cells are made printable.
class Table {
public:
    enum class Align { Left, Right };
    struct Column {
        std::string heading;
        Align align = Align::Left;
    };

    explicit Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

    // One cell a column.
    void AddRow(const std::vector<std::string>& cells);

    // Each line ends with a newline and not with blanks; `colours` makes the headings bold.
    std::string Render(bool colours) const;

private:
    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace Quill::Cli
