#include "designstore/detail/loader.h"

#include <limits>

#include "designstore/detail/design_loader.h"
#include "designstore/detail/row_reader.h"

namespace Orin::DesignDb {

namespace {

String LoadName(SqliteFile& file) {
    String design;
    unsigned count = 0;
    RowsOf(file, ETable::Design, 0, "", [&](ColumnReader row) {
        Expect(++count == 1 && row.Number<int>() == 1, "a second design");
        design = row.Text();
    });
    if (count == 0) throw StoreFault{"the file is damaged: the design has no name"};
    return design;
}

void LoadNextSlots(SqliteFile& file, FileState& state) {
    RowsOf(file, ETable::NextSlot, 0, "", [&](ColumnReader row) {
        const EObjectType wanted = static_cast<EObjectType>(row.Number<std::uint8_t>());
        const Slot next = row.Number<Slot>();
        bool isKnown = false;
        ForEachKind([&]<class Record>() { isKnown = isKnown || Record::Kind == wanted; });
        Expect(isKnown && next != 0, "no number of a kind of object");
        state.nextSlots[wanted] = next;
    });
    ForEachKind([&]<class Record>() {
        if (state.nextSlots.count(Record::Kind) == 0)
            throw StoreFault{"the file is damaged: table next_slot lacks a row"};
    });
}

PlacesByNumber LoadPlaces(SqliteFile& file, PathTable& places, FileState& state) {
    PlacesByNumber byNumber;
    RowsOf(file, ETable::Place, 0, "ORDER BY id", [&](ColumnReader row) {
        const auto number = row.Number<std::int64_t>();
        const auto parent = row.Number<std::int64_t>();
        const Slot comp = row.Number<Slot>();
        const Slot config = row.Number<Slot>();
        Expect(number > 0 && number < std::numeric_limits<std::int64_t>::max() / 2, "a number that is out of range");
        Expect(config != 0 && (parent == 0) == (comp == 0), "neither a root nor below one");
        ExpectGiven(state, EObjectType::Config, config);
        ExpectGiven(state, EObjectType::Comp, comp);
        const PathNode* place = nullptr;
        if (parent == 0) {
            place = &places.Root(config);
        } else {
            const auto above = byNumber.find(parent);
            Expect(above != byNumber.end() && above->second->config == config, "no place above");
            place = &places.Child(*above->second, comp);
        }
        Expect(state.places.Find(place->slot) == 0, "the same place as another row");
        state.places.Enter(place->slot, number);
        byNumber.emplace(number, place);
    });
    return byNumber;
}

void LoadSavePoints(SqliteFile& file, FileState& state, std::vector<SavedState>& savePoints) {
    RowsOf(file, ETable::SavePoint, 0, "ORDER BY id", [&](ColumnReader row) {
        const auto number = row.Number<std::int64_t>();
        const String name = row.Text();
        bool isNew = number > 0 && number < std::numeric_limits<std::int64_t>::max() / 2;
        isNew = isNew && !name.IsEmpty() && !(name == WorkingSnapshot);
        for (const SavedState& other : savePoints)
            isNew = isNew && !(other.name == name);
        Expect(isNew, "no name and number of its own");
        state.savePoints.emplace_back(number, name);
        savePoints.push_back({name, {}, {}});
    });
}

// Whether anything changed between the save point and the next newer one or now.
bool HasOwnRows(SqliteFile& file, std::int64_t savePoint) {
    for (std::size_t i = 0; i < TableCount; ++i) {
        if (!HasHistory(static_cast<ETable>(i))) continue;
        Statement any(file, "SELECT 1 FROM " + std::string(Tables[i].name) + "_before WHERE savepoint = ? LIMIT 1");
        any << savePoint;
        if (any.Step()) return true;
    }
    return false;
}

}  // namespace

void LoadProject(SqliteFile& file, const ProjectContent& content, FileState& state, String& design) {
    design = LoadName(file);
    LoadNextSlots(file, state);
    LoadSavePoints(file, state, content.savePoints);
    const PlacesByNumber places = LoadPlaces(file, content.places, state);
    LoadState(file, content.working, places, state, 0);
    const Graph* newer = &content.working;
    for (std::size_t i = content.savePoints.size(); i-- > 0;) {
        SavedState& savePoint = content.savePoints[i];
        const std::int64_t number = state.savePoints[i].first;
        if (HasOwnRows(file, number)) {
            LoadState(file, savePoint.graph, places, state, number);
        } else {
            savePoint.graph = *newer;
        }
        newer = &savePoint.graph;
    }
    // The attributes that a save point bears itself take the place of the design's once no older one needs those.
    for (std::size_t i = 0; i < content.savePoints.size(); ++i) {
        SavedState& savePoint = content.savePoints[i];
        savePoint.attributes = std::move(savePoint.graph.attributes);
        savePoint.graph.attributes.Clear();
        RowsOf(file, ETable::SavePointAttribute, 0,
               "WHERE savepoint = " + std::to_string(state.savePoints[i].first) + " ORDER BY name",
               [&](ColumnReader row) {
                   row.Number<std::int64_t>();
                   const String name = row.Text();
                   Expect(!name.IsEmpty(), "an attribute without a name");
                   savePoint.graph.attributes.Append({name, row.Text(), EAttributeType::User});
               });
    }
}

}  // namespace Orin::DesignDb
