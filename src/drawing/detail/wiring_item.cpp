#include "drawing/detail/wiring_item.h"

#include <unordered_map>

#include "drawing/detail/drawn_attributes.h"
#include "drawing/sheet_picture.h"

namespace Quill::Drawing::detail {

namespace {

using Utils::Present;
using Utils::Require;

constexpr std::int64_t JunctionRadius = 500'000;
constexpr int EndsOfDot = 3;

struct Joint {
    Orin::Point at;
    int ends = 0;
};

// Whether what touches a joint, other than pieces, is one of the ends that make a dot: a pin on a net is, but a bus is
// tapped in so many places that dots would hide it.
enum class Touching { Counts, Not };

void AddWiring(const Orin::ListSegmentsQuill& wiring, const Orin::LineStyle& style, Touching touching,
               std::vector<Shape>& shapes) {
    std::unordered_map<Orin::ItemId, Joint> joints;
    for (const Orin::ListSegmentsQuillJoint& joint : wiring.joints)
        joints.emplace(joint.id,
                       Joint{Bounded(joint.position), touching == Touching::Counts && !joint.attached.IsEmpty()});
    Segments drawn{{}, style};
    drawn.style.fill = Orin::EFill::None;
    for (const Orin::ListSegmentsQuillSegment& segment : wiring.segments) {
        const auto from = joints.find(segment.from);
        const auto to = joints.find(segment.to);
        if (from == joints.end() || to == joints.end()) continue;
        ++from->second.ends;
        ++to->second.ends;
        drawn.pieces.push_back({from->second.at, to->second.at});
    }
    if (!drawn.pieces.empty()) shapes.emplace_back(std::move(drawn));
    Orin::LineStyle dot;
    dot.fill = Orin::EFill::Outline;
    for (const Orin::ListSegmentsQuillJoint& joint : wiring.joints)
        if (const Joint& at = joints.at(joint.id); at.ends >= EndsOfDot)
            shapes.emplace_back(Circle{at.at, JunctionRadius, dot});
}

template <class Object>
std::string LabelOf(const Object& object) {
    Orin::String label;
    return Present(object.GetLabel(label)) ? std::string(label.View()) : std::string();
}

// The common part of nets and buses: their labels, and what they are called.
template <class Object, class Read>
Item WiringItem(Ink ink, const char* kind, const Object& object, const Orin::LabelDataQuill* label,
                const Read& readAttribute) {
    const std::string name = LabelOf(object);
    Orin::Index index;
    Require(object.GetIndex(index));
    Item item{ink,
              name.empty() ? std::string(kind) + " without a label" : std::string(kind) + " " + name,
              AnchorOf(index),
              {},
              {}};
    if (label != nullptr && label->style.visible && !name.empty())
        item.shapes.emplace_back(TextOf(ink, Shortened(name), label->position, label->style));
    AddAttributes(object, Ink::Attribute, item.shapes, readAttribute);
    return item;
}

}  // namespace

Item NetItem(const Orin::IBlockViewQuill& view, const Orin::INet& net) {
    Orin::LabelDataQuill label;
    const bool labelled = Present(view.GetNetLabel(net, label));
    Item item = WiringItem(Ink::Net, "Net", net, labelled ? &label : nullptr,
                           [&](const Orin::Attribute& a, Orin::AttrDataQuill& drawn) {
                               return view.GetNetAttr(net, a.name, a.value, drawn);
                           });
    Orin::IteratorT<const Orin::INetQuill> piece;
    Require(view.GetIterNetsQuill(net, piece));
    for (; piece; ++piece) {
        Orin::NetDataQuill data;
        if (Present(piece->GetData(data))) AddWiring(data.segments, data.style, Touching::Counts, item.shapes);
    }
    return item;
}

Item BusItem(const Orin::IBlockViewQuill& view, const Orin::IBus& bus) {
    Orin::LabelDataQuill label;
    const bool labelled = Present(view.GetBusLabel(bus, label));
    Item item = WiringItem(Ink::Bus, "Bus", bus, labelled ? &label : nullptr,
                           [&](const Orin::Attribute& a, Orin::AttrDataQuill& drawn) {
                               return view.GetBusAttr(bus, a.name, a.value, drawn);
                           });
    Orin::BusDataQuill data;
    if (Present(view.GetBusData(bus, data))) AddWiring(data.segments, data.style, Touching::Not, item.shapes);
    return item;
}

}  // namespace Quill::Drawing::detail
