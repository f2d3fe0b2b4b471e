#include "drawing/svg_writer.h"

#include <cmath>

#include "drawing/detail/arc_geometry.h"
#include "text/number.h"
#include "text/utf8.h"

namespace Quill::Drawing {

namespace {

using Orin::EVerticalAlign;
using Orin::Point;

constexpr std::int64_t Unit = Millimetre / 10;

// By Ink. Each colour stands out from the background of its theme by 4.5 to 1 at least.
struct InkRow {
    Ink ink;
    const char* name;
    const char* light;
    const char* dark;
    int width;  // of lines that say nothing about it, in units
};
constexpr InkRow Inks[] = {
    {Ink::Frame, "frame", "#666", "#999", 2},
    {Ink::Note, "note", "#33478c", "#a5b4ec", 2},
    {Ink::Cluster, "cluster", "#666", "#aaa", 2},
    {Ink::Body, "body", "#7a2e12", "#e9a583", 2},
    {Ink::Hierarchy, "hierarchy", "#7a4a00", "#e8bf6a", 3},
    {Ink::Connector, "connector", "#7d1f7d", "#e7a0e7", 2},
    {Ink::Power, "power", "#7a2e12", "#e9a583", 2},
    {Ink::Attribute, "attribute", "#0b5566", "#93d3e3", 2},
    {Ink::Bus, "bus", "#1749b3", "#86aeff", 6},
    {Ink::Net, "net", "#0a642b", "#69d594", 2},
};
static_assert(std::size(Inks) == static_cast<std::size_t>(Ink::Count));

constexpr const InkRow& RowOf(Ink ink) noexcept {
    return Inks[static_cast<std::size_t>(ink)];
}
constexpr bool StandInOrder() noexcept {
    for (std::size_t i = 0; i < std::size(Inks); ++i)
        if (RowOf(static_cast<Ink>(i)).ink != static_cast<Ink>(i)) return false;
    return true;
}
static_assert(StandInOrder());

// Thinner lines are hard to see on a screen.
constexpr std::int64_t LeastWidth = 120'000;

constexpr const char* Patterns[] = {nullptr, "12 8", "2 6", "12 6 2 6"};
constexpr const char* Anchors[] = {nullptr, "middle", "end"};

// Letters are so much larger than the capitals by whose height designs go.
constexpr std::int64_t FontPercent = 135;

void AppendLength(std::string& out, std::int64_t nanometres) {
    if (nanometres < 0) out += '-';
    const std::uint64_t length = static_cast<std::uint64_t>(nanometres < 0 ? -nanometres : nanometres);
    Text::AppendUnsigned(out, length / Unit);
    std::uint64_t rest = length % Unit;
    if (rest == 0) return;
    out += '.';
    for (std::uint64_t digit = Unit / 10; rest != 0; digit /= 10) {
        out += static_cast<char>('0' + rest / digit);
        rest %= digit;
    }
}

void AppendAttribute(std::string& out, const char* name, std::int64_t nanometres) {
    out.append(" ").append(name).append("=\"");
    AppendLength(out, nanometres);
    out += '"';
}

void AppendPoint(std::string& out, char command, const Point& point) {
    out += command;
    AppendLength(out, point.x);
    out += ' ';
    AppendLength(out, point.y);
}

// What a line's style changes of what its ink settles.
void AppendStyle(std::string& out, const Orin::LineStyle& style) {
    if (style.fill != Orin::EFill::None)
        out += style.fill == Orin::EFill::Outline ? " class=\"filled\"" : " class=\"area\"";
    const std::size_t pattern = static_cast<std::size_t>(style.pattern);
    const bool patterned = pattern < std::size(Patterns) && Patterns[pattern] != nullptr;
    if (style.width <= 0 && !patterned) return;
    out += " style=\"";
    if (style.width > 0) {
        out += "stroke-width:";
        AppendLength(out, std::clamp(style.width, LeastWidth, MostCoordinate));
        if (patterned) out += ';';
    }
    if (patterned) out.append("stroke-dasharray:").append(Patterns[pattern]);
    out += '"';
}

// A text in which "~{RESET}" stands for RESET with a line above, as names of inverted signals are written.
void AppendOverlined(std::string& out, std::string_view text) {
    while (!text.empty()) {
        const std::size_t mark = text.find("~{");
        const std::size_t end = mark == text.npos ? mark : text.find('}', mark);
        if (end == text.npos) break;
        out.append(Escaped(text.substr(0, mark))).append("<tspan text-decoration=\"overline\">");
        out.append(Escaped(text.substr(mark + 2, end - mark - 2))).append("</tspan>");
        text.remove_prefix(end + 1);
    }
    out += Escaped(text);
}

class ShapeWriter {
public:
    ShapeWriter(std::string& out, Ink ink) : m_out(out), m_ink(ink) {}

    void operator()(const Lines& lines) const {
        if (lines.points.empty()) return;
        m_out += "<path d=\"";
        for (std::size_t i = 0; i < lines.points.size(); ++i)
            AppendPoint(m_out, i == 0 ? 'M' : 'L', lines.points[i]);
        if (lines.closed) m_out += 'Z';
        m_out += '"';
        End(lines.style);
    }
    void operator()(const Segments& segments) const {
        if (segments.pieces.empty()) return;
        m_out += "<path d=\"";
        for (const auto& [from, to] : segments.pieces) {
            AppendPoint(m_out, 'M', from);
            AppendPoint(m_out, 'L', to);
        }
        m_out += '"';
        End(segments.style);
    }
    void operator()(const Rect& rect) const {
        Box box;
        box.Add(rect.first);
        box.Add(rect.second);
        m_out += "<rect";
        AppendAttribute(m_out, "x", box.least.x);
        AppendAttribute(m_out, "y", box.least.y);
        AppendAttribute(m_out, "width", box.Width());
        AppendAttribute(m_out, "height", box.Height());
        End(rect.style);
    }
    void operator()(const Arc& arc) const {
        const auto circle = detail::CircleOf(arc);
        if (!circle) return (*this)(Lines{{arc.start, arc.middle, arc.end}, arc.style, false});
        m_out += "<path d=\"";
        AppendPoint(m_out, 'M', arc.start);
        const std::int64_t radius = std::llround(circle->radius);
        AppendPoint(m_out, 'A', {radius, radius});
        m_out.append(" 0 ").append(circle->large ? "1 " : "0 ").append(circle->clockwise ? "1" : "0");
        AppendPoint(m_out, ' ', arc.end);
        m_out += '"';
        End(arc.style);
    }
    void operator()(const Circle& circle) const {
        m_out += "<circle";
        AppendAttribute(m_out, "cx", circle.centre.x);
        AppendAttribute(m_out, "cy", circle.centre.y);
        AppendAttribute(m_out, "r", circle.radius);
        End(circle.style);
    }
    void operator()(const Writing& text) const {
        const std::int64_t step = text.height * LinePercent / 100;
        const auto further = std::count(text.text.begin(), text.text.end(), '\n');
        const std::int64_t gap = text.height * 3 / 10;
        // From the place to the foot of the first line; what stands on a line leaves a little room to it.
        std::int64_t down = -gap - step * further;
        if (text.vertical == EVerticalAlign::Centre) down = (text.height - step * further) / 2;
        if (text.vertical == EVerticalAlign::Top) down = text.height + gap;
        std::string_view rest = text.text;
        for (bool last = false; !last; down += step) {
            const std::size_t feed = rest.find('\n');
            last = feed == rest.npos;
            WriteLine(text, rest.substr(0, feed), down);
            if (!last) rest.remove_prefix(feed + 1);
        }
    }

private:
    void End(const Orin::LineStyle& style) const {
        AppendStyle(m_out, style);
        m_out += "/>\n";
    }
    void WriteLine(const Writing& text, std::string_view line, std::int64_t down) const {
        if (line.empty()) return;
        const Point at = text.upwards ? Point{text.at.x + down, text.at.y} : Point{text.at.x, text.at.y + down};
        m_out += "<text";
        AppendAttribute(m_out, "x", at.x);
        AppendAttribute(m_out, "y", at.y);
        AppendAttribute(m_out, "font-size", text.height * FontPercent / 100);
        const std::size_t align = static_cast<std::size_t>(text.horizontal);
        if (align < std::size(Anchors) && Anchors[align] != nullptr)
            m_out.append(" text-anchor=\"").append(Anchors[align]).append("\"");
        if (text.upwards) {
            AppendPoint(m_out.append(" transform=\"rotate(-90"), ' ', at);
            m_out += ")\"";
        }
        if (text.ink != m_ink) m_out.append(" class=\"").append(RowOf(text.ink).name).append("\"");
        m_out += '>';
        AppendOverlined(m_out, line);
        m_out += "</text>\n";
    }

    std::string& m_out;
    const Ink m_ink;
};

// `reachable`: with anchors, links, and what shows that something is reached.
void AppendItem(std::string& out, const Item& item, bool reachable) {
    out.append("<g class=\"").append(RowOf(item.ink).name).append("\"");
    if (reachable && !item.anchor.empty()) out.append(" id=\"").append(Escaped(item.anchor)).append("\"");
    out += ">";
    if (!item.title.empty()) out.append("<title>").append(Escaped(item.title)).append("</title>");
    if (reachable && !item.href.empty()) out.append("<a href=\"").append(Escaped(item.href)).append("\">");
    out += '\n';
    if (reachable && (!item.anchor.empty() || !item.href.empty())) {
        // Lies behind what can be reached and shows when it is.
        const Box box = ExtentOf(item.shapes).Grown(Millimetre);
        if (!box.IsEmpty()) {
            out += "<rect class=\"halo\"";
            AppendAttribute(out, "x", box.least.x);
            AppendAttribute(out, "y", box.least.y);
            AppendAttribute(out, "width", box.Width());
            AppendAttribute(out, "height", box.Height());
            out += "/>\n";
        }
    }
    const ShapeWriter writer(out, item.ink);
    for (const Shape& shape : item.shapes)
        std::visit(writer, shape);
    out += item.href.empty() || !reachable ? "</g>\n" : "</a></g>\n";
}

void AppendSvg(std::string& out, const Picture& picture, std::string_view attributes, std::string_view head,
               bool reachable) {
    const Box& box = picture.extent;
    out.append("<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"picture\" viewBox=\"");
    const char* between = "";
    for (const std::int64_t length : {box.least.x, box.least.y, box.Width(), box.Height()}) {
        out += between;
        AppendLength(out, length);
        between = " ";
    }
    out.append("\" ").append(attributes).append(">\n").append(head);
    for (const Item& item : picture.items)
        AppendItem(out, item, reachable);
    out += "</svg>\n";
}

// The code point of a well-formed character of three bytes.
constexpr unsigned Code(std::string_view three) noexcept {
    const auto byte = [three](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(three[i])); };
    return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
}

bool CanBeShown(std::string_view character) noexcept {
    const auto first = static_cast<unsigned char>(character[0]);
    switch (character.size()) {
        case 1:
            return (first >= 0x20 && first != 0x7F) || first == '\n';
        case 2:  // controls above U+007F, and the Arabic letter mark
            return !(first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0) && character != "\xD8\x9C";
        case 3: {
            const unsigned code = Code(character);
            const bool turns = code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
                               (code >= 0x2066 && code <= 0x2069) || code == 0xFEFF;
            return !turns && code != 0xFFFE && code != 0xFFFF;
        }
        default:
            return true;
    }
}

struct Escape {
    char character;
    std::string_view text;
};
constexpr Escape Escapes[] = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"}};
constexpr std::string_view Replacement = "\xEF\xBF\xBD";

}  // namespace

std::string Escaped(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = Text::Utf8Length(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
        text.remove_prefix(character.size());
        const auto* const found = std::find_if(std::begin(Escapes), std::end(Escapes),
                                               [&](const Escape& row) { return row.character == character[0]; });
        if (found != std::end(Escapes)) {
            escaped += found->text;
        } else {
            escaped += length != 0 && CanBeShown(character) ? character : Replacement;
        }
    }
    return escaped;
}

std::string StyleOfShapes() {
    std::string css =
        ".picture{font-family:\"DejaVu Sans\",Verdana,Arial,sans-serif}\n"
        ".picture path,.picture rect,.picture circle{fill:none;stroke:currentColor;stroke-linecap:round;"
        "stroke-linejoin:round}\n"
        ".picture text{fill:currentColor;white-space:pre}\n"
        ".picture .filled{fill:currentColor}\n"
        ".picture a{color:inherit}\n"
        ".picture .halo{stroke:none}\n";
    for (const InkRow& row : Inks) {
        css.append(".picture .").append(row.name).append("{stroke-width:");
        Text::AppendSigned(css, row.width);
        css += "}\n";
    }
    return css;
}

std::string StyleOfColours(Theme theme) {
    const bool light = theme == Theme::Light;
    std::string css = light ? ".picture{background:#fff}\n.picture .area{fill:#fffbe8}\n"
                            : ".picture{background:#16181c}\n.picture .area{fill:#23262d}\n";
    for (const InkRow& row : Inks)
        css.append(".picture .").append(row.name).append("{color:").append(light ? row.light : row.dark).append("}\n");
    return css;
}

std::string SvgElement(const Picture& picture, std::string_view label) {
    std::string out;
    AppendSvg(out, picture, "role=\"group\" aria-label=\"" + Escaped(label) + '"', {}, true);
    return out;
}

std::string SvgFile(const Picture& picture) {
    std::string size = "role=\"img\" width=\"";
    // A file that is opened alone shows at its size on paper.
    const auto append = [&size](std::int64_t length) {
        AppendLength(size, length / 10);
        size += "mm\"";
    };
    append(picture.extent.Width());
    size += " height=\"";
    append(picture.extent.Height());
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    std::string head = "<title>" + Escaped(picture.title) + "</title>\n<style>\n" + StyleOfShapes() +
                       StyleOfColours(Theme::Light) + "</style>\n<rect";
    AppendAttribute(head, "x", picture.extent.least.x);
    AppendAttribute(head, "y", picture.extent.least.y);
    AppendAttribute(head, "width", picture.extent.Width());
    AppendAttribute(head, "height", picture.extent.Height());
    head += " style=\"fill:#fff;stroke:none\"/>\n";
    AppendSvg(out, picture, size, head, false);
    return out;
}

}  // namespace Quill::Drawing
