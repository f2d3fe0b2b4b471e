// What reaches the terminal.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace Quill::Cli {

// The text without anything that a terminal would take as a command: control characters (also those above U+007F, and
// the ones that change the direction of writing) and bytes that are not UTF-8 become \x1B, \u202E and the like.
std::string Printable(std::string_view text);

// A message to standard error, made printable: "quill: MESSAGE".
void Say(std::string_view message);

// An answer to standard output. Control characters as above are escaped, so that they are data for a reader of JSON and
// nothing for a terminal; bytes that are not UTF-8, which JSON cannot hold, become U+FFFD.
void PrintJson(const nlohmann::ordered_json& answer);

// The same on a line of its own, as one of many.
void PrintJsonLine(const nlohmann::ordered_json& answer);

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
