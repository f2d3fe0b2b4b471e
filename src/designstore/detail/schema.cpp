#include "designstore/detail/schema.h"

namespace Orin::DesignDb {

namespace {

std::string Without(std::string text, std::string_view part) {
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at))
        text.erase(at, part.size());
    return text;
}

}  // namespace

namespace {

// Calls use(entry) for each entry of a list that commas part.
template <class Use>
void ForEachEntry(std::string_view list, Use&& use) {
    for (;;) {
        const std::size_t comma = list.find(", ");
        use(list.substr(0, comma));
        if (comma == list.npos) return;
        list.remove_prefix(comma + 2);
    }
}

}  // namespace

std::string TableDefinition::Names(std::string_view prefix) const {
    std::string names;
    ForEachEntry(columns, [&](std::string_view column) {
        names.append(names.empty() ? "" : ", ").append(prefix).append(column.substr(0, column.find(' ')));
    });
    return names;
}

std::string TableDefinition::SameKey(std::string_view one, std::string_view other) const {
    std::string condition;
    ForEachEntry(key, [&](std::string_view column) {
        condition.append(condition.empty() ? "" : " AND ").append(one).append(".").append(column);
        condition.append(" = ").append(other).append(".").append(column);
    });
    return condition;
}

std::string TableDefinition::Where(std::size_t count, std::size_t first) const {
    std::string condition;
    std::size_t at = 0;
    ForEachEntry(key, [&](std::string_view column) {
        if (++at > count) return;
        condition.append(condition.empty() ? "" : " AND ").append(column);
        condition.append(" = ?").append(std::to_string(first + at - 1));
    });
    return condition;
}

std::string Joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

std::vector<std::string> SchemaStatements() {
    std::vector<std::string> statements;
    for (std::size_t i = 0; i < TableCount; ++i) {
        const TableDefinition& table = Tables[i];
        statements.push_back(Joined({"CREATE TABLE ", table.name, "(", table.columns}));
        statements.back() += table.HasRowId() ? std::string(") STRICT")
                                              : Joined({", PRIMARY KEY(", table.key, ")) STRICT, WITHOUT ROWID"});
        if (!HasHistory(static_cast<ETable>(i))) continue;
        // What marks a row stands behind all other columns: SQLite's quick check takes columns of such tables that are
        // not laid down in their order for one another.
        const std::string columns = Without(Without(std::string(table.columns), " PRIMARY KEY"), " NOT NULL");
        statements.push_back(
            Joined({"CREATE TABLE ", table.name, "_before(savepoint INTEGER NOT NULL, ", columns,
                    ", present INTEGER NOT NULL, PRIMARY KEY(savepoint, ", table.key, ")) STRICT, WITHOUT ROWID"}));
    }
    return statements;
}

}  // namespace Orin::DesignDb
