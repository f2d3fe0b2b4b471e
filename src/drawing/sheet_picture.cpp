#include "drawing/sheet_picture.h"

#include "designdata/result_rule.h"
#include "drawing/detail/component_item.h"
#include "drawing/detail/drawn_attributes.h"
#include "drawing/detail/wiring_item.h"
#include "text/number.h"

namespace Quill::Drawing {

namespace {

using Orin::ContainerT;
using Orin::EObjectType;
using Orin::Index;
using Utils::Present;
using Utils::Require;

constexpr std::int64_t Margin = 8 * Millimetre;
constexpr std::int64_t LeastCaption = 2'000'000;
constexpr Box EmptySheet{{0, 0}, {160 * Millimetre, 60 * Millimetre}};

// What is written under a picture gets larger with it.
void AddFrame(const Caption& caption, Picture& picture) {
    Box content;
    for (const Item& item : picture.items)
        content.Add(ExtentOf(item.shapes));
    Item frame{Ink::Frame, {}, {}, {}, {}};
    if (content.IsEmpty()) {
        content = EmptySheet;
        const Orin::Point centre{(content.least.x + content.most.x) / 2, (content.least.y + content.most.y) / 2};
        frame.shapes.emplace_back(Writing{Ink::Frame, "Nothing is drawn on this sheet", centre, LeastCaption, false,
                                          Orin::EHorizontalAlign::Centre, Orin::EVerticalAlign::Centre});
    }
    const std::int64_t height = std::max(content.Width() / 120, LeastCaption);
    const std::int64_t needed = WidthOf(caption.page + caption.place + caption.name, height) * 5 / 4;
    if (needed > content.Width()) content.most.x = content.least.x + needed;
    const Box inner = content.Grown(Margin);
    const std::int64_t foot = inner.most.y + 2 * height;
    frame.shapes.emplace_back(Rect{inner.least, {inner.most.x, foot}, {}});
    frame.shapes.emplace_back(Segments{{{Orin::Point{inner.least.x, inner.most.y}, inner.most}}, {}});
    const std::int64_t line = inner.most.y + height;
    const auto write = [&](std::string text, std::int64_t x, Orin::EHorizontalAlign align) {
        frame.shapes.emplace_back(
            Writing{Ink::Frame, std::move(text), {x, line}, height, false, align, Orin::EVerticalAlign::Centre});
    };
    write(caption.page, inner.least.x + height, Orin::EHorizontalAlign::Left);
    write(caption.place, (inner.least.x + inner.most.x) / 2, Orin::EHorizontalAlign::Centre);
    write(caption.name, inner.most.x - height, Orin::EHorizontalAlign::Right);
    picture.items.insert(picture.items.begin(), std::move(frame));
    picture.extent.Add(inner.least);
    picture.extent.Add(Orin::Point{inner.most.x, foot});
    picture.extent = picture.extent.Grown(Millimetre);
}

void AddItem(Item item, Picture& picture) {
    if (!item.shapes.empty()) picture.items.push_back(std::move(item));
}

Item ClusterItem(const Orin::IBlockViewQuill& view, const Orin::IGroup& group) {
    Item item{Ink::Cluster, {}, {}, {}, {}};
    Orin::EGroupType type = Orin::EGroupType::Unknown;
    if (!Present(group.GetType(type)) || type != Orin::EGroupType::Cluster) return item;
    Orin::String name;
    if (Present(group.GetName(name)) && !name.IsEmpty()) item.title = "Group " + std::string(name.View());
    Orin::GroupDataQuill data;
    if (Present(view.GetGroupData(group, data))) {
        Orin::LineStyle style;
        style.pattern = Orin::ELinePattern::Dash;
        item.shapes.emplace_back(Rect{Bounded(data.first), Bounded(data.second), style});
    }
    Orin::LabelDataQuill label;
    if (Present(view.GetGroupLabel(group, label)) && label.style.visible)
        item.shapes.emplace_back(TextOf(Ink::Cluster, name.View(), label.position, label.style));
    detail::AddAttributes(group, Ink::Attribute, item.shapes,
                          [&](const Orin::Attribute& a, Orin::AttrDataQuill& drawn) {
                              return view.GetGroupAttr(group, a.name, a.value, drawn);
                          });
    return item;
}

}  // namespace

std::string AnchorOf(const Index& object) {
    std::string anchor = "o";
    for (const std::uint32_t part : {object.Top(), object.Middle(), object.Low()}) {
        anchor += '-';
        Text::AppendUnsigned(anchor, part);
    }
    return anchor;
}

SheetArtist::SheetArtist(const ContainerT<const Orin::ISnapshot>& snapshot) {
    Require(snapshot->GetUIDManager(m_objects));
}

Picture SheetArtist::Draw(const ContainerT<const Orin::IPath>& place, const ContainerT<const Orin::IGroup>& sheet,
                          const Caption& caption, const Pointers& pointers) {
    ContainerT<const Orin::IBlock> block;
    Require(place->GetBlock(block));
    ContainerT<const Orin::IBlockViewQuill> view;
    Require(Orin::IBlockViewQuill::Init(view, *block, *sheet));
    Orin::ListT<Index> members;
    Require(sheet->GetListObjects(members));

    Picture picture;
    picture.title = caption.page + ": " + caption.place;
    Item notes{Ink::Note, {}, {}, {}, FreeShapes(*view)};
    detail::AddAttributes(*block, Ink::Note, notes.shapes, [&](const Orin::Attribute& a, Orin::AttrDataQuill& drawn) {
        return view->GetAttr(a.name, a.value, drawn);
    });
    AddItem(std::move(notes), picture);

    // Components may be filled, so wires lie above them, and what leads somewhere above all.
    std::vector<Item> wires;
    std::vector<Item> connectors;
    for (const Index& member : std::as_const(members)) {
        ContainerT<const Orin::IComp> comp;
        ContainerT<const Orin::INet> net;
        ContainerT<const Orin::IBus> bus;
        ContainerT<const Orin::IGroup> group;
        switch (member.GetType()) {
            case EObjectType::Comp:
                if (Present(m_objects.GetComp(comp, member))) {
                    const auto pointer = pointers.find(member);
                    Item item = detail::ComponentItem(*place, *view, *comp, m_symbols,
                                                      pointer == pointers.end() ? nullptr : &pointer->second);
                    if (item.ink == Ink::Connector && !item.shapes.empty()) {
                        connectors.push_back(std::move(item));
                    } else {
                        AddItem(std::move(item), picture);
                    }
                }
                break;
            case EObjectType::Net:
                if (Present(m_objects.GetNet(net, member))) wires.push_back(detail::NetItem(*view, *net));
                break;
            case EObjectType::Bus:
                if (Present(m_objects.GetBus(bus, member))) wires.push_back(detail::BusItem(*view, *bus));
                break;
            case EObjectType::Group:
                if (Present(m_objects.GetGroup(group, member))) AddItem(ClusterItem(*view, *group), picture);
                break;
            default:
                break;
        }
    }
    for (Item& item : wires)
        AddItem(std::move(item), picture);
    for (Item& item : connectors)
        AddItem(std::move(item), picture);
    AddFrame(caption, picture);
    return picture;
}

}  // namespace Quill::Drawing
