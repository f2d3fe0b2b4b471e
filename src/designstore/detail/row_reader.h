// Reading of rows that may hold anything.
#pragma once

#include <limits>
#include <optional>
#include <string>
#include <unordered_map>

#include "designdb/detail/path_table.h"
#include "designstore/detail/rows.h"
#include "designstore/detail/sqlite.h"
#include "designstore/detail/writer.h"

namespace Orin::DesignDb {

// Thrown for a value that its column cannot hold; `Rows` says where it stands.
struct BadValue {
    const char* reason;
};

[[noreturn]] inline void Refuse(const char* reason) {
    throw BadValue{reason};
}
inline void Expect(bool condition, const char* reason) {
    if (!condition) Refuse(reason);
}

// Takes the columns of a row from one on.
class ColumnReader {
public:
    ColumnReader(const Statement& row, int column) noexcept : m_row(row), m_column(column) {}

    template <class... Values>
    void operator()(Values&... values) {
        (Take(values), ...);
    }

    template <class T>
    T Number() {
        const std::int64_t value = m_row.Integer(m_column++);
        if (value < static_cast<std::int64_t>(std::numeric_limits<T>::min()) ||
            value > static_cast<std::int64_t>(std::numeric_limits<T>::max()))
            Refuse("a number that is out of range");
        return static_cast<T>(value);
    }
    Index AsIndex() { return Index(static_cast<std::uint64_t>(Number<std::int64_t>())); }
    String Text() {
        const std::string_view text = m_row.Text(m_column++);
        Expect(text.find('\0') == text.npos, "a text with a NUL");
        return String(text);
    }

private:
    void Take(Slot& slot) { slot = Number<Slot>(); }
    void Take(Index& index) { index = AsIndex(); }
    void Take(String& text) { text = Text(); }
    void Take(EGroupType& type) { type = static_cast<EGroupType>(Number<std::int32_t>()); }
    template <class E>
    void Take(BitContainerT<E, 1>& set) {
        set = BitContainerT<E, 1>::FromBits(Number<std::uint32_t>());
    }
    void Take(std::optional<std::int32_t>& value) {
        if (m_row.IsNull(m_column)) {
            ++m_column;
        } else {
            value = Number<std::int32_t>();
        }
    }
    void Take(Drawings& drawings) {
        const std::string_view bytes = m_row.Bytes(m_column++);
        if (!bytes.empty()) ReadBlob(bytes, drawings);
    }
    template <class Data>
    requires requires(Data& data) { data.objectId; }
    void Take(Data& data) { ReadBlob(m_row.Bytes(m_column++), data); }

    const Statement& m_row;
    int m_column;
};

// Calls use; what it refuses is told with the row's key.
template <class Use>
void Guarded(std::string_view table, std::int64_t row, Use&& use) {
    const char* reason = "";
    try {
        return use();
    } catch (const BadValue& bad) {
        reason = bad.reason;
    } catch (const BadBlob&) {
        reason = "bytes that are no drawing";
    }
    throw StoreFault{"the file is damaged: table " + std::string(table) + ", row " + std::to_string(row) + ": " +
                     reason};
}

// What stands for a table in a query: the table itself, or its rows as they were when a save point was made. Those are
// the rows of the oldest second table from the save point on, and where there is none the row of the table.
inline std::string SourceOf(const TableDefinition& table, std::int64_t savePoint) {
    std::string name(table.name);
    if (savePoint == 0) return name;
    const std::string from = std::to_string(savePoint);
    return "(SELECT " + table.Names("t.") + " FROM " + name +
           " t WHERE NOT EXISTS (SELECT 1 FROM savepoint p CROSS JOIN " + name + "_before b WHERE p.id >= " + from +
           " AND b.savepoint = p.id AND " + table.SameKey("b", "t") + ") UNION ALL SELECT " + table.Names("b.") +
           " FROM " + name + "_before b WHERE b.present = 1 AND b.savepoint >= " + from +
           " AND NOT EXISTS (SELECT 1 FROM savepoint p CROSS JOIN " + name + "_before c WHERE p.id >= " + from +
           " AND p.id < b.savepoint AND c.savepoint = p.id AND " + table.SameKey("c", "b") + "))";
}

// Calls use(columns) for each row of the table, as it was when the save point was made if there is one.
template <class Use>
void RowsOf(SqliteFile& file, ETable table, std::int64_t savePoint, const std::string& rest, Use&& use) {
    const TableDefinition& definition = Definition(table);
    Statement rows(file, "SELECT * FROM " + SourceOf(definition, savePoint) + " " + rest);
    while (rows.Step())
        Guarded(definition.name, rows.Integer(table == ETable::Item ? 1 : 0), [&] { use(ColumnReader(rows, 0)); });
}

// A reference that may lead to something deleted, but not to something to come.
inline void ExpectGiven(const FileState& state, EObjectType kind, Slot slot) {
    Expect(slot == 0 || slot < state.nextSlots.find(kind)->second, "a reference to an object that never was");
}

using PlacesByNumber = std::unordered_map<std::int64_t, const PathNode*>;

}  // namespace Orin::DesignDb
