// The tables of a design file: docs/design-file.md.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace Orin::DesignDb {

inline constexpr std::uint32_t ApplicationId = 0x51444246;
inline constexpr std::uint32_t SchemaVersion = 1;

enum class ETable : std::size_t {
    Block,
    Comp,
    Pin,
    Net,
    Bus,
    Group,
    Config,
    View,
    Piece,
    Item,
    BusNet,
    Member,
    Attribute,
    // What has no second table for save points:
    Place,
    Design,
    NextSlot,
    SavePoint,
    SavePointAttribute,
};
inline constexpr std::size_t TableCount = 18;

// The parts as one text.
std::string Joined(std::initializer_list<std::string_view> parts);

struct TableDefinition {
    std::string_view name;
    std::string_view key;  // its columns, which come first
    std::string_view columns;

    // How many columns there are; of the text of `key` how many begin it.
    static constexpr std::size_t Count(std::string_view list) noexcept {
        std::size_t count = 1;
        for (const char c : list)
            count += c == ',' ? 1 : 0;
        return count;
    }
    // Other tables keep their rows in the tree of their key.
    constexpr bool HasRowId() const noexcept { return columns.find("INTEGER PRIMARY KEY") != columns.npos; }
    // The names of the columns, each with `prefix` in front.
    std::string Names(std::string_view prefix = "") const;
    // The condition that two of its rows have one key.
    std::string SameKey(std::string_view one, std::string_view other) const;
    // The first `count` columns of the key as a condition, its parameters from number `first` on.
    std::string Where(std::size_t count, std::size_t first = 1) const;
};

// By ETable.
inline constexpr std::array<TableDefinition, TableCount> Tables{{
    {"block", "id",
     "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, types INTEGER NOT NULL, name TEXT NOT NULL, library TEXT NOT NULL, "
     "drawn BLOB NOT NULL"},
    {"comp", "id",
     "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, block INTEGER NOT NULL, label TEXT NOT NULL, name TEXT NOT NULL, "
     "types INTEGER NOT NULL, partition TEXT NOT NULL, definition INTEGER NOT NULL, child INTEGER NOT NULL, bus "
     "INTEGER NOT NULL, instance INTEGER NOT NULL, drawn BLOB NOT NULL"},
    {"pin", "id",
     "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, comp INTEGER NOT NULL, net INTEGER NOT NULL, label TEXT NOT NULL, "
     "drawn BLOB NOT NULL"},
    {"net", "id",
     "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, block INTEGER NOT NULL, label TEXT NOT NULL, drawn BLOB NOT NULL"},
    {"bus", "id",
     "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, block INTEGER NOT NULL, label TEXT NOT NULL, drawn BLOB NOT NULL"},
    {"grp", "id",
     "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, block INTEGER NOT NULL, owner INTEGER NOT NULL, type INTEGER NOT "
     "NULL, name TEXT NOT NULL, drawn BLOB NOT NULL"},
    {"config", "id", "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, root INTEGER NOT NULL, name TEXT NOT NULL"},
    {"view", "id",
     "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, grp INTEGER NOT NULL, comp INTEGER NOT NULL, time INTEGER"},
    {"piece", "id",
     "id INTEGER PRIMARY KEY, idx INTEGER NOT NULL, net INTEGER NOT NULL, view INTEGER NOT NULL, data BLOB NOT NULL"},
    {"item", "kind, id",
     "kind INTEGER NOT NULL, id INTEGER NOT NULL, idx INTEGER NOT NULL, view INTEGER NOT NULL, data BLOB NOT NULL"},
    {"bus_net", "bus, net", "bus INTEGER NOT NULL, net INTEGER NOT NULL"},
    {"member", "grp, object",
     "grp INTEGER NOT NULL, object INTEGER NOT NULL, rank INTEGER NOT NULL, nth INTEGER NOT NULL"},
    {"attribute", "kind, object, place, family, name",
     "kind INTEGER NOT NULL, object INTEGER NOT NULL, place INTEGER NOT NULL, family INTEGER NOT NULL, name TEXT NOT "
     "NULL, value TEXT NOT NULL"},
    {"place", "id", "id INTEGER PRIMARY KEY, parent INTEGER NOT NULL, comp INTEGER NOT NULL, config INTEGER NOT NULL"},
    {"design", "id", "id INTEGER PRIMARY KEY, name TEXT NOT NULL"},
    {"next_slot", "kind", "kind INTEGER PRIMARY KEY, slot INTEGER NOT NULL"},
    {"savepoint", "id", "id INTEGER PRIMARY KEY, name TEXT NOT NULL"},
    {"savepoint_attribute", "savepoint, name", "savepoint INTEGER NOT NULL, name TEXT NOT NULL, value TEXT NOT NULL"},
}};

constexpr const TableDefinition& Definition(ETable table) noexcept {
    return Tables[static_cast<std::size_t>(table)];
}
// Whether save points keep earlier rows of the table.
constexpr bool HasHistory(ETable table) noexcept {
    return table < ETable::Place;
}

// What makes the tables of an empty file.
std::vector<std::string> SchemaStatements();

}  // namespace Orin::DesignDb
