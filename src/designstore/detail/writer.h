// Writes designs and changes of designs into the tables of a file.
#pragma once

#include <array>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "designdb/detail/store.h"
#include "designstore/detail/schema.h"
#include "designstore/detail/sqlite.h"

namespace Orin::DesignDb {

// The numbers that places of the hierarchy have in the file. In memory they have others, which last as long as the
// project.
class PlaceNumbers {
public:
    std::int64_t Find(Slot place) const noexcept {
        const auto found = m_numbers.find(place);
        return found != m_numbers.end() ? found->second : 0;
    }
    void Enter(Slot place, std::int64_t number) {
        m_numbers.emplace(place, number);
        if (number >= m_next) m_next = number + 1;
    }
    std::int64_t Next() const noexcept { return m_next; }
    void Remove(Slot place) noexcept { m_numbers.erase(place); }

private:
    std::unordered_map<Slot, std::int64_t> m_numbers;
    std::int64_t m_next = 1;
};

// What the file holds besides rows of objects, as the writer has to know it.
struct FileState {
    PlaceNumbers places;
    std::map<EObjectType, Slot> nextSlots;
    std::vector<std::pair<std::int64_t, String>> savePoints;  // oldest first
};

// Works inside a transaction of its caller, who then says whether it became part of the file. Fails as sqlite.h says.
// Borrows the file and the places.
class DesignWriter {
public:
    DesignWriter(SqliteFile& file, const PathTable& places, FileState state)
        : m_file(file), m_places(places), m_state(std::move(state)) {}

    // Into empty tables.
    void WriteAll(const ProjectContent& content, const String& design);
    // Of the working design, or of the attributes of a save point.
    void WriteChanges(const ChangeSet& changes);
    void AddSavePoint(const SavedState& savePoint, const Graph& working);
    void RemoveSavePoint(const String& name);

    // What the file holds then, for a writer of the same file elsewhere; this one is not used any more.
    FileState Release() noexcept { return std::move(m_state); }

    void Committed() noexcept;
    void RolledBack() noexcept;

private:
    // The statements of one table, made when they are needed first.
    struct TableStatements {
        Statement put;
        std::array<Statement, 5> erase;     // by the number of key columns that name the rows, from 1
        std::array<Statement, 5> remember;  // for the newest save point: the rows that are there
        Statement rememberNone;             // or that there is none
    };

    // Keeps the rows that the parts of a key name as they are for the newest save point, if there is one.
    template <class... Key>
    void Remember(ETable table, const Key&... key);
    // Writes a row; `values` are its key and then the others, of which `keyed` says how many are the key.
    Statement& Put(ETable table);
    template <class... Key>
    void Erase(ETable table, const Key&... key);

    template <class Record>
    void PutRecord(Slot slot, const Record& record);
    void PutAttribute(EObjectType kind, Slot slot, std::int64_t place, const Attribute& attribute);
    template <class Record>
    void PutAttributes(Slot slot, const Record& record);
    void WriteDesignAttributes(const Graph& graph);
    void WriteSavePointAttributes(std::int64_t savePoint, const ListAttribute& attributes);
    void WriteState(const Graph& graph);
    std::int64_t SavePointOf(const String& name) const;
    void WriteWorking(const Graph& graph, Touches touches);
    // The newest save point, or 0.
    std::int64_t Newest() const noexcept { return m_state.savePoints.empty() ? 0 : m_state.savePoints.back().first; }
    void PutMember(const Graph& graph, Slot group, std::uint64_t member, std::int64_t rank);
    void PutAllMembers(const Graph& graph, Slot group, const GroupRecord& record);
    void WriteNextSlots(const Graph& graph);

    template <class Record>
    void WriteTouched(const Graph& graph, Slot slot, Touches::Extent extent);
    void WriteAttributes(const Graph& graph, Touches& touches);
    void WriteOccurrences(const Graph& graph, Touches& touches);
    void WriteConnections(const Graph& graph, Touches& touches);
    void WriteMembers(const Graph& graph, Touches& touches);
    void WriteMembersOf(const Graph& graph, Slot group, const std::pair<Slot, std::uint64_t>* begin,
                        const std::pair<Slot, std::uint64_t>* end);
    void WriteMembershipOrder(const Graph& graph, Location object);
    std::int64_t RankOf(Slot group, std::uint64_t member);

    bool IsWhole(EObjectType kind, Slot slot) const noexcept;
    std::int64_t NumberOf(Slot place);

    SqliteFile& m_file;
    const PathTable& m_places;
    FileState m_state;
    std::vector<Slot> m_newPlaces;                                    // since the last commit
    std::map<EObjectType, Slot> m_formerNextSlots;                    // those that were changed since
    std::vector<std::pair<std::int64_t, String>> m_formerSavePoints;  // before the change
    bool m_savePointsChanged = false;
    std::vector<Touches::Record> m_touched;  // of the change set: sorted, each once
    std::array<TableStatements, TableCount> m_statements;
    Statement m_rank, m_order;
    std::string m_blob;
};

}  // namespace Orin::DesignDb
