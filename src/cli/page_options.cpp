#include "cli/page_options.h"

#include "cli/command.h"

namespace Quill::Cli {

namespace {

struct Order {
    const char* name;
    EAlgorithm algorithm;
};

constexpr Order Orders[] = {
    {"depth", EAlgorithm::DepthFirst},
    {"level", EAlgorithm::LevelByLevel},
    {"print", EAlgorithm::PrintOrder},
};

struct ChildOrder {
    const char* name;
    ECompAlgorithm ascending;
    ECompAlgorithm descending;
};

constexpr ChildOrder ChildOrders[] = {
    {"default", ECompAlgorithm::Default, ECompAlgorithm::DefaultDescending},
    {"custom", ECompAlgorithm::Custom, ECompAlgorithm::CustomDescending},
    {"name", ECompAlgorithm::Name, ECompAlgorithm::NameDescending},
    {"symbol", ECompAlgorithm::Symbol, ECompAlgorithm::SymbolDescending},
    {"refdes", ECompAlgorithm::RefDes, ECompAlgorithm::RefDesDescending},
};

// The row of that name; the command line lets no others through.
template <class Row, std::size_t Size>
const Row& RowOf(const Row (&rows)[Size], std::string_view name) {
    for (const Row& row : rows)
        if (row.name == name) return row;
    throw CommandError("There is no order called " + std::string(name));
}

template <class Row, std::size_t Size>
std::vector<std::string> NamesOf(const Row (&rows)[Size]) {
    std::vector<std::string> names;
    for (const Row& row : rows)
        names.emplace_back(row.name);
    return names;
}

}  // namespace

EAlgorithm PageOptions::Algorithm() const {
    return RowOf(Orders, order).algorithm;
}

ECompAlgorithm PageOptions::ChildAlgorithm() const {
    const ChildOrder& row = RowOf(ChildOrders, children);
    return descending ? row.descending : row.ascending;
}

void AddPageOptions(const Syntax& command, PageOptions& options) {
    command.Option("--order", options.order, "how pages are numbered; by default depth").OneOf(NamesOf(Orders));
    command.Option("--children", options.children, "how the blocks below a sheet follow; by default default")
        .OneOf(NamesOf(ChildOrders));
    command.Flag("--descending", options.descending, "the child order backwards");
    AddConfigOption(command, options.config);
}

}  // namespace Quill::Cli
