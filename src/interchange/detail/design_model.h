// A design as its text says it, before it enters the database.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "designdb/editor.h"
#include "designdb/inspector.h"
#include "interchange/design_json.h"

namespace Quill::Interchange {

inline constexpr std::string_view FormatName = "quill-design";
inline constexpr int FormatVersion = 1;

// The record that a drawn item's GetData fills.
template <class Item>
struct DataOfItem;
template <>
struct DataOfItem<Orin::ILineQuill> {
    using Type = Orin::LineDataQuill;
};
template <>
struct DataOfItem<Orin::IRectQuill> {
    using Type = Orin::RectDataQuill;
};
template <>
struct DataOfItem<Orin::IArcQuill> {
    using Type = Orin::ArcDataQuill;
};
template <>
struct DataOfItem<Orin::ICircleQuill> {
    using Type = Orin::CircleDataQuill;
};
template <>
struct DataOfItem<Orin::ITextQuill> {
    using Type = Orin::TextDataQuill;
};
template <class Item>
using DataOf = typename DataOfItem<Item>::Type;

// A place in the document, from the value upwards: each step borrows the one above.
class Place {
public:
    Place() = default;
    Place Member(std::string_view name) const { return {this, name, 0}; }
    Place At(std::size_t position) const { return {this, {}, position}; }
    std::string Pointer() const;

private:
    Place(const Place* above, std::string_view member, std::size_t position)
        : m_above(above), m_member(member), m_position(position) {}

    const Place* m_above = nullptr;
    std::string_view m_member;  // of a position: null
    std::size_t m_position = 0;
};

// What is thrown inside the reader.
[[noreturn]] void Fail(const Place& place, std::string reason);

using Attributes = std::vector<Orin::Attribute>;
using Indexes = std::vector<Orin::Index>;

template <class Data>
struct ItemModel {
    Orin::Index index;
    Data data;
};

struct ViewModel {
    std::optional<std::int32_t> time;
    std::vector<ItemModel<Orin::LineDataQuill>> lines;
    std::vector<ItemModel<Orin::RectDataQuill>> rects;
    std::vector<ItemModel<Orin::ArcDataQuill>> arcs;
    std::vector<ItemModel<Orin::CircleDataQuill>> circles;
    std::vector<ItemModel<Orin::TextDataQuill>> texts;
};

// What every object of a block has.
template <class ObjectSpec>
struct ObjectModel {
    ObjectSpec spec;
    Attributes attributes;
    Indexes memberOf;
    std::vector<Orin::DesignDb::DrawingInfo> drawn;
};

struct GroupModel : ObjectModel<Orin::DesignDb::GroupSpec> {
    Orin::Index owner;
    Indexes members;
    std::unique_ptr<ViewModel> view;
};

using PinModel = ObjectModel<Orin::DesignDb::PinSpec>;

struct OccurrenceModel {
    Orin::Index config;
    Indexes path;
    Attributes attributes;
};

// The definition and the child block of `spec` are entered when all objects are there.
struct CompModel : ObjectModel<Orin::DesignDb::CompSpec> {
    Orin::Index bus;
    std::vector<PinModel> pins;
    std::vector<OccurrenceModel> occurrences;
    std::unique_ptr<ViewModel> view;
};

struct NetModel : ObjectModel<Orin::DesignDb::NetSpec> {
    Indexes pins;
    std::vector<Orin::DesignDb::NetPieceInfo> pieces;
};

struct BusModel : ObjectModel<Orin::DesignDb::BusSpec> {
    Indexes nets;
};

struct BlockModel : ObjectModel<Orin::DesignDb::BlockSpec> {
    std::vector<GroupModel> groups;
    std::vector<CompModel> comps;
    std::vector<NetModel> nets;
    std::vector<BusModel> buses;
    Indexes pinOrder;
};

struct ConfigModel {
    Orin::DesignDb::ConfigSpec spec;
    Attributes attributes;
};

struct DesignModel {
    Orin::String name;
    Attributes attributes;
    std::vector<BlockModel> blocks;
    std::vector<ConfigModel> configs;
};

// Throw a DesignJsonFault.
DesignModel ParseDesign(std::string_view text);
// Enters the model into a snapshot, in the client's transaction. `beforeDrawing` is called when all objects are there
// with their attributes and nothing is drawn yet; it may change what the model says of drawings.
void ApplyDesign(const DesignModel& design, const Orin::ContainerT<const Orin::ISnapshot>& snapshot,
                 const std::function<void()>& beforeDrawing = {});

// Builds a design with `make` and enters it into a snapshot that holds none, in one transaction, which is rolled back
// when anything is thrown. Gives the design's name.
Orin::String ImportDesign(const Orin::ContainerT<const Orin::ISnapshot>& snapshot,
                          const std::function<DesignModel()>& make,
                          const std::function<void(DesignModel&)>& beforeDrawing = {});

}  // namespace Quill::Interchange
