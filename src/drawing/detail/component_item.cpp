#include "drawing/detail/component_item.h"

#include "drawing/detail/drawn_attributes.h"

namespace Quill::Drawing::detail {

namespace {

using Orin::CompTypes;
using Orin::ContainerT;
using Orin::EAttributeType;
using Orin::ECompType;
using Orin::EHorizontalAlign;
using Orin::EVerticalAlign;
using Orin::Point;
using Utils::Present;
using Utils::Require;

constexpr Point BoxCorner{5'080'000, 3'810'000};  // of a component without a symbol, from its centre
constexpr std::int64_t DotRadius = 400'000;
constexpr std::int64_t Gap = 800'000;

struct TypeInk {
    ECompType type;
    Ink ink;
};
// The first that a component bears.
constexpr TypeInk TypeInks[] = {{ECompType::Border, Ink::Frame},
                                {ECompType::Hierarchical, Ink::Hierarchy},
                                {ECompType::Connector, Ink::Connector},
                                {ECompType::Power, Ink::Power},
                                {ECompType::Ripper, Ink::Bus}};

// The attribute under which a place of the hierarchy keeps a component's reference designator, and that under which
// components bear the one that they were drawn with.
constexpr char PlaceReference[] = "REFDES";
constexpr std::string_view DrawnReference = "Reference";
constexpr const char* ValueNames[] = {"VALUE", "Value"};

// Stands where the pages of a connector's other ends are to be written, which the mark does.
constexpr std::string_view PagesOfOtherEnds = "${INTERSHEET_REFS}";

// At which ends a flag is pointed, by the variant of its symbol: the end at the net is the first.
struct FlagShape {
    std::string_view variant;
    bool first;
    bool second;
};
constexpr FlagShape FlagShapes[] = {{"output", false, true},
                                    {"bidirectional", true, true},
                                    {"tri_state", true, true},
                                    {"passive", false, false},
                                    {"", true, false}};  // every other

const FlagShape& FlagOf(std::string_view variant) {
    const FlagShape* row = FlagShapes;
    while (!row->variant.empty() && row->variant != variant)
        ++row;
    return *row;
}

class ComponentArtist {
public:
    ComponentArtist(const Orin::IPath& place, const Orin::IBlockViewQuill& view, const Orin::IComp& comp,
                    const Pointer* pointer)
        : m_view(view), m_comp(comp), m_pointer(pointer) {
        Orin::Index index;
        Require(comp.GetIndex(index));
        Require(comp.GetType(m_types));
        m_here = Present(place.GetCompInPath(m_occurrence, index)) ? &*m_occurrence : &comp;
        for (const TypeInk& row : TypeInks)
            if (m_item.ink == Ink::Body && m_types.Contains(row.type)) m_item.ink = row.ink;
        Orin::String label;
        if (Present(comp.GetLabel(label))) m_label = label.View();
        const bool isPart = m_item.ink == Ink::Body;
        m_reference = Value(PlaceReference);
        if (isPart && !m_reference.empty()) m_label = m_reference;
        for (const char* const name : ValueNames)
            if (m_value.empty()) m_value = Value(name);
        if (Present(comp.GetName(label))) m_name = label.View();
    }

    Item Draw(SymbolCatalogue& symbols) {
        Orin::CompDataQuill data;
        const bool drawn = Present(m_view.GetCompData(m_comp, data));
        m_placement = {Bounded(data.position), data.orientation, data.mirrored};
        const std::size_t texts = DrawTexts();
        if (drawn) DrawBody(symbols, texts == 0);
        m_item.title = Title();
        if (m_pointer != nullptr) {
            m_item.anchor = m_pointer->anchor;
            m_item.href = m_pointer->href;
        }
        return std::move(m_item);
    }

private:
    std::string Value(const char* name) const {
        Orin::String value;
        return Present(m_here->GetAttribute(name, value, EAttributeType::User)) ? std::string(value.View())
                                                                                : std::string();
    }

    std::string Title() const {
        std::string title = m_label;
        const std::string& what = m_value.empty() ? m_name : m_value;
        if (!what.empty() && what != m_label) title += title.empty() ? what : ": " + what;
        if (m_pointer != nullptr && !m_pointer->title.empty())
            title += title.empty() ? m_pointer->title : ", " + m_pointer->title;
        return title;
    }

    void Add(Shape shape) { m_item.shapes.push_back(std::move(shape)); }
    // From the symbol's coordinates. What has no ink of its own is drawn in that of the component.
    void Place(const Shape& shape) {
        Add(m_placement.Placed(shape));
        if (Writing* const writing = std::get_if<Writing>(&m_item.shapes.back()))
            if (writing->ink == Ink::Body) writing->ink = m_item.ink;
    }
    void PlaceText(std::string text, const Point& at, EHorizontalAlign horizontal, EVerticalAlign vertical,
                   bool upwards = false) {
        Place(Writing{Ink::Body, std::move(text), at, DefaultTextHeight, upwards, horizontal, vertical});
    }

    // The label and the attributes that the view draws. How many it has, with those that are not to be seen.
    std::size_t DrawTexts();
    void DrawBody(SymbolCatalogue& symbols, bool nameless);
    void DrawFlag(std::string_view variant);
    void DrawNames(const Box& body);
    void DrawMark(const Box& body, const Point& away);

    const Orin::IBlockViewQuill& m_view;
    const Orin::IComp& m_comp;
    const Pointer* const m_pointer;
    const Orin::IComp* m_here = nullptr;  // the component as it stands at the place
    ContainerT<const Orin::IComp> m_occurrence;
    CompTypes m_types;
    std::string m_label;
    std::string m_reference;
    std::string m_value;
    std::string m_name;
    Orin::LabelDataQuill m_labelData;
    bool m_labelDrawn = false;
    Placement m_placement;
    Item m_item{Ink::Body, {}, {}, {}, {}};
};

std::size_t ComponentArtist::DrawTexts() {
    const bool labelled = Present(m_view.GetCompLabel(m_comp, m_labelData));
    m_labelDrawn = labelled && m_labelData.style.visible;
    Orin::ListAttribute attributes;
    Require(m_comp.GetAttributes(attributes));
    std::size_t count = labelled ? 1 : 0;
    for (const Orin::Attribute& attribute : std::as_const(attributes)) {
        Orin::AttrDataQuill drawn;
        if (!Present(m_view.GetCompAttr(m_comp, attribute.name, attribute.value, drawn))) continue;
        ++count;
        if (!drawn.style.visible) continue;
        Orin::String here;
        std::string value(attribute.value.View());
        if (Present(m_here->GetAttribute(attribute.name, here, attribute.type))) value = here.View();
        if (attribute.name.View() == DrawnReference && !m_reference.empty()) value = m_reference;
        if (value.empty() || value == PagesOfOtherEnds) continue;
        Add(TextOf(Ink::Attribute, ShownText(drawn, attribute.name.View(), value), drawn.position, drawn.style));
    }
    Orin::IteratorT<const Orin::IPin> pin;
    Require(m_comp.GetIterPins(pin));
    for (; pin; ++pin)
        AddAttributes(*pin, Ink::Attribute, m_item.shapes, [&](const Orin::Attribute& a, Orin::AttrDataQuill& drawn) {
            return m_view.GetPinAttr(*pin, a.name, a.value, drawn);
        });
    return count;
}

void ComponentArtist::DrawBody(SymbolCatalogue& symbols, bool nameless) {
    ContainerT<const Orin::IComp> definition;
    const SymbolShapes none;
    const SymbolShapes& symbol = Present(m_comp.GetDefinition(definition)) ? symbols.Of(*definition) : none;
    const bool isConnector = m_item.ink == Ink::Connector;
    Orin::String cell;
    std::string_view variant;
    if (definition && Present(definition->GetName(cell))) variant = cell.View().substr(cell.View().rfind('.') + 1);

    if (isConnector && symbol.IsEmpty()) {
        DrawFlag(variant);
        return;
    }
    // What is filled must not hide the texts.
    std::vector<Shape> texts;
    texts.swap(m_item.shapes);
    Box body = symbol.body;
    for (const Shape& shape : symbol.shapes)
        Place(shape);
    if (symbol.IsEmpty() && m_item.ink != Ink::Frame) {
        if (definition) {
            Orin::LineStyle dot;
            dot.fill = Orin::EFill::Outline;
            Add(Circle{m_placement.at, DotRadius, dot});
            body.Add(Point{0, 0});
        } else {
            Orin::LineStyle area;
            area.fill = Orin::EFill::Background;
            body = {{-BoxCorner.x, -BoxCorner.y}, BoxCorner};
            Place(Rect{body.least, body.most, area});
        }
    }
    m_item.shapes.insert(m_item.shapes.end(), std::make_move_iterator(texts.begin()),
                         std::make_move_iterator(texts.end()));
    if (m_labelDrawn && !m_label.empty())
        Add(TextOf(m_item.ink, Shortened(m_label), m_labelData.position, m_labelData.style));
    // A mark without a label is told by its symbol.
    const bool isNamed = m_item.ink == Ink::Body || m_item.ink == Ink::Hierarchy || isConnector;
    if (nameless && isNamed && (!m_label.empty() || !definition)) DrawNames(body);
    DrawMark(body, symbol.outward);
}

// A flag around the label, in the direction of the component; its first end is at the net.
void ComponentArtist::DrawFlag(std::string_view variant) {
    const FlagShape& flag = FlagOf(variant);
    std::int64_t height = DefaultTextHeight;
    if (m_labelData.style.height > 0) height = std::min(m_labelData.style.height, MostTextHeight);
    const std::int64_t half = height;
    const std::int64_t tip = half;
    const std::string text = Shortened(m_label);
    const std::int64_t width = WidthOf(text, height) + height;
    const std::int64_t begin = flag.first ? tip : 0;
    const std::int64_t end = begin + width;
    Lines outline{{}, {}, true};
    outline.style.fill = Orin::EFill::Background;
    if (flag.first) outline.points.push_back({0, 0});
    outline.points.push_back({begin, -half});
    outline.points.push_back({end, -half});
    if (flag.second) outline.points.push_back({end + tip, 0});
    outline.points.push_back({end, half});
    outline.points.push_back({begin, half});
    Place(outline);
    Writing label{Ink::Connector,        text, {(begin + end) / 2, 0}, height, false, EHorizontalAlign::Centre,
                  EVerticalAlign::Centre};
    Place(label);
    if (m_pointer != nullptr && !m_pointer->mark.empty())
        PlaceText(m_pointer->mark, {end + (flag.second ? tip : 0) + Gap, 0}, EHorizontalAlign::Left,
                  EVerticalAlign::Centre);
}

// Above and below the body, as it stands on the sheet.
void ComponentArtist::DrawNames(const Box& body) {
    Box placed;
    placed.Add(m_placement.Placed(body.least));
    placed.Add(m_placement.Placed(body.most));
    const std::int64_t middle = (placed.least.x + placed.most.x) / 2;
    const auto write = [&](const std::string& text, std::int64_t y, EVerticalAlign align) {
        if (!text.empty())
            Add(Writing{m_item.ink, text, {middle, y}, DefaultTextHeight, false, EHorizontalAlign::Centre, align});
    };
    write(m_label, placed.least.y - Gap / 2, EVerticalAlign::Bottom);
    write(m_value.empty() ? m_name : m_value, placed.most.y + Gap / 2, EVerticalAlign::Top);
}

// In the lower corner of a box, and behind a connector on the side away from its net.
void ComponentArtist::DrawMark(const Box& body, const Point& away) {
    if (m_pointer == nullptr || m_pointer->mark.empty() || body.IsEmpty()) return;
    const std::string& text = m_pointer->mark;
    if (m_item.ink == Ink::Hierarchy) {
        Box placed;
        placed.Add(m_placement.Placed(body.least));
        placed.Add(m_placement.Placed(body.most));
        Add(Writing{m_item.ink,
                    text,
                    {placed.most.x - Gap, placed.most.y - Gap},
                    DefaultTextHeight,
                    false,
                    EHorizontalAlign::Right,
                    EVerticalAlign::Bottom});
        return;
    }
    const Point at{away.x > 0   ? body.most.x + Gap
                   : away.x < 0 ? body.least.x - Gap
                                : (body.least.x + body.most.x) / 2,
                   away.y > 0   ? body.most.y + Gap
                   : away.y < 0 ? body.least.y - Gap
                                : (body.least.y + body.most.y) / 2};
    const bool back = away.x < 0 || away.y > 0;
    PlaceText(text, at, back ? EHorizontalAlign::Right : EHorizontalAlign::Left, EVerticalAlign::Centre, away.x == 0);
}

}  // namespace

Item ComponentItem(const Orin::IPath& place, const Orin::IBlockViewQuill& view, const Orin::IComp& comp,
                   SymbolCatalogue& symbols, const Pointer* pointer) {
    return ComponentArtist(place, view, comp, pointer).Draw(symbols);
}

}  // namespace Quill::Drawing::detail
