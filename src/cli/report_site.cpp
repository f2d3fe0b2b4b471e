#include "cli/report_site.h"

#include <algorithm>

#include <fmt/format.h>

#include "cli/design_lookup.h"
#include "drawing/svg_writer.h"

namespace Quill::Cli {

namespace {

using Drawing::Escaped;
using Drawing::Theme;
using Orin::EObjectType;

constexpr char StyleOfDocuments[] = R"(:root{color-scheme:light dark}
body{margin:0;font:16px/1.5 system-ui,"DejaVu Sans",Verdana,Arial,sans-serif;background:#f4f4f2;color:#1b1b1b}
header,main{padding:0 1.5rem}
main{padding-bottom:3rem}
h1{font-size:1.4rem;margin:.6rem 0}
h2{font-size:1.1rem;margin:1.6rem 0 .4rem}
a{color:#0b4fb3}
a:focus-visible,label:focus-within,.sheet:focus-visible{outline:3px solid #d07a00;outline-offset:2px}
nav{padding-top:.6rem}
nav a,nav span{margin-right:1rem}
.sheet{overflow:auto;border:1px solid #bbb;margin:.6rem 0}
.sheet svg{display:block;width:100%;height:auto}
#large:checked~.sheet{max-height:90vh}
#large:checked~.sheet svg{width:var(--large)}
.picture a:focus{outline:none}
.picture :target .halo,.picture a:hover .halo{fill:#ffd24d;fill-opacity:.55}
.picture a:focus-visible .halo{fill:#ffd24d;fill-opacity:.55;stroke:#d07a00;stroke-width:4}
table{border-collapse:collapse}
th,td{text-align:left;overflow-wrap:anywhere;padding:.15rem 1.5rem .15rem 0;border-bottom:1px solid #ccc}
tr:target,li:target{background:#ffe69a}
.tree,.tree ul{list-style:none;padding-left:1.4rem}
.tree{padding-left:0}
.columns{columns:14rem;padding-left:1.2rem;overflow-wrap:anywhere}
.quiet{color:#595959}
@media screen and (prefers-color-scheme:dark){
body{background:#101114;color:#e6e6e6}
a{color:#8ab8ff}
.quiet{color:#a6a6a6}
.sheet{border-color:#444}
tr:target,li:target{background:#5a4600}
th,td{border-color:#444}
.picture :target .halo,.picture a:hover .halo,.picture a:focus-visible .halo{fill:#8a6a00}
}
@media print{
nav,.controls{display:none}
body{background:#fff}
.sheet{border:0;overflow:visible}
.sheet svg{width:100%!important;max-height:95vh;break-inside:avoid}
}
)";

// How large a picture is when it is not made to fit: a capital letter of the usual height is nine pixels high.
constexpr double PixelsOfLargePicture = 7;  // a millimetre

struct Wire {
    std::string name;
    std::string kind;
    std::string anchor;
};

}  // namespace

std::string ReportSite::Head(const std::string& title) const {
    return "<!DOCTYPE html>\n<html lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n<meta "
           "charset=\"utf-8\"/>\n"
           "<meta name=\"viewport\" content=\"width=device-width\"/>\n<title>" +
           Escaped(title) + "</title>\n<link rel=\"stylesheet\" href=\"style.css\"/>\n</head>\n<body>\n";
}

std::string ReportSite::Link(std::size_t page, const std::string& text, const char* attributes) const {
    return fmt::format("<a href=\"{}\"{}>{}</a>", m_map.FileOf(page), attributes, Escaped(text));
}

std::string ReportSite::Style() {
    return StyleOfDocuments + Drawing::StyleOfShapes() + Drawing::StyleOfColours(Theme::Light) +
           "@media screen and (prefers-color-scheme:dark){\n" + Drawing::StyleOfColours(Theme::Dark) + "}\n";
}

std::string ReportSite::Index() const {
    const auto& pages = m_map.Pages();
    const auto numbered =
        static_cast<std::size_t>(std::count_if(pages.begin(), pages.end(), [&](const MappedPage& page) {
            return m_map.IsNumbered(static_cast<std::size_t>(&page - pages.data()));
        }));
    std::string out = Head(m_name);
    out += "<header><h1>" + Escaped(m_name) + "</h1></header>\n<main>\n";
    out += fmt::format("<p>{} page{}", numbered, numbered == 1 ? "" : "s");
    if (numbered != pages.size()) out += fmt::format(", and {} excluded from printing", pages.size() - numbered);
    out += fmt::format(". {} sheet connector{}.</p>\n<ul class=\"tree\">\n", m_map.Connectors().size(),
                       m_map.Connectors().size() == 1 ? "" : "s");
    // By hand, since the depth of a design is its own affair: what is open, with the next of its pages to list.
    struct Open {
        const std::vector<std::size_t>* pages;
        std::size_t next;
    };
    std::vector<std::size_t> top;
    for (std::size_t page = 0; page < pages.size(); ++page)
        if (pages[page].parent == NoPlace) top.push_back(page);
    std::vector<Open> open{{&top, 0}};
    while (!open.empty()) {
        Open& level = open.back();
        if (level.next == level.pages->size()) {
            open.pop_back();
            out += open.empty() ? "</ul>\n" : "</ul></li>\n";
            continue;
        }
        const std::size_t page = (*level.pages)[level.next++];
        const PageEntry& entry = m_map.Entry(page);
        const std::string place = m_map.Place(page);
        if (m_map.IsNumbered(page)) {
            out += "<li>" + Link(page, entry.number + " " + entry.block) + " <span class=\"quiet\">" + Escaped(place) +
                   "</span>";
        } else {
            out += "<li>" + Escaped(entry.block) + " <span class=\"quiet\">" + Escaped(place) +
                   ", excluded from printing</span>";
        }
        if (pages[page].below.empty()) {
            out += "</li>\n";
        } else {
            out += "\n<ul>\n";
            open.push_back({&pages[page].below, 0});
        }
    }
    return out + "</main>\n</body>\n</html>\n";
}

// The index and the pages above.
std::string ReportSite::Way(std::size_t page) const {
    std::vector<std::size_t> way;
    for (std::size_t at = m_map.Pages()[page].parent; at != NoPlace; at = m_map.Pages()[at].parent)
        way.push_back(at);
    std::string out = "<a href=\"index.html\">" + Escaped(m_name) + "</a>";
    for (auto at = way.rbegin(); at != way.rend(); ++at)
        out += m_map.IsNumbered(*at) ? Link(*at, m_map.Entry(*at).number + " " + m_map.Entry(*at).block)
                                     : "<span>" + Escaped(m_map.Entry(*at).block) + "</span>";
    return "<nav aria-label=\"Way to this page\">" + out + "</nav>\n";
}

std::string ReportSite::Neighbours(std::size_t page) const {
    std::string out;
    const auto count = m_map.Pages().size();
    const auto add = [&](std::size_t at, const char* word, const char* rel) {
        out += Link(at, fmt::format("{} page: {} {}", word, m_map.Entry(at).number, m_map.Entry(at).block),
                    fmt::format(" rel=\"{}\"", rel).c_str());
    };
    for (std::size_t at = page; at-- > 0;)
        if (m_map.IsNumbered(at)) {
            add(at, "Previous", "prev");
            break;
        }
    for (std::size_t at = page + 1; at < count; ++at)
        if (m_map.IsNumbered(at)) {
            add(at, "Next", "next");
            break;
        }
    return "<nav aria-label=\"Neighbouring pages\">" + out + "</nav>\n";
}

std::string ReportSite::Below(std::size_t page, Anchors drawn) const {
    const std::vector<std::size_t>& below = m_map.Pages()[page].below;
    if (below.empty()) return {};
    std::string out = "<h2>Pages below</h2>\n<ul>\n";
    for (const std::size_t at : below) {
        const PageEntry& entry = m_map.Entry(at);
        const std::string place = " <span class=\"quiet\">" + Escaped(m_map.Place(at));
        const std::string anchor = Drawing::AnchorOf(m_map.Pages()[at].through);
        out += drawn.insert(anchor).second ? "<li id=\"" + anchor + "\">" : "<li>";
        out += m_map.IsNumbered(at) ? Link(at, entry.number + " " + entry.block) + place + "</span></li>\n"
                                    : Escaped(entry.block) + place + ", excluded from printing</span></li>\n";
    }
    return out + "</ul>\n";
}

std::string ReportSite::Connectors(std::size_t page, const Anchors& drawn) const {
    const std::vector<std::size_t>& positions = m_map.Pages()[page].connectors;
    if (positions.empty()) return {};
    std::string out =
        "<h2>Sheet connectors</h2>\n<table>\n<tr><th scope=\"col\">Label</th><th scope=\"col\">Leads to</th></tr>\n";
    for (const std::size_t position : positions) {
        const MappedConnector& connector = m_map.Connectors()[position];
        const std::string anchor = Drawing::AnchorOf(connector.comp);
        const std::string label = Escaped(connector.label);
        out += drawn.count(anchor) != 0 ? fmt::format("<tr><td><a href=\"#{}\">{}</a></td><td>", anchor, label)
                                        : fmt::format("<tr id=\"{}\"><td>{}</td><td>", anchor, label);
        if (connector.next == NoPlace) {
            out += "<span class=\"quiet\">stands alone</span>";
        } else {
            const MappedConnector& next = m_map.Connectors()[connector.next];
            out += fmt::format("<a href=\"{}\">{}</a>", m_map.LinkTo(next.page, next.comp),
                               next.page == page ? "again on this page" : Escaped(m_map.Heading(next.page)));
            if (connector.otherPages.size() > 1 || connector.hasMore) {
                out += " <span class=\"quiet\">also on</span>";
                for (const std::size_t other : connector.otherPages)
                    if (other != next.page) out += ' ' + Link(other, m_map.Entry(other).number);
                if (connector.hasMore) out += " <span class=\"quiet\">and more</span>";
            }
        }
        out += "</td></tr>\n";
    }
    return out + "</table>\n";
}

// By name. Those without one can be found in the picture only.
std::string ReportSite::Wires(std::size_t page, const Anchors& drawn) const {
    std::vector<Wire> wires;
    std::size_t nameless = 0;
    const auto add = [&](const auto& object, const char* kind, const Orin::Index& index) {
        const std::string name = LabelOf(object);
        if (name.empty()) {
            ++nameless;
        } else {
            wires.push_back({name, kind, Drawing::AnchorOf(index)});
        }
    };
    for (const Orin::Index& index : m_map.MembersOf(page, EObjectType::Net)) {
        Orin::ContainerT<const Orin::INet> net;
        if (m_map.Objects().GetNet(net, index)) add(*net, "", index);
    }
    for (const Orin::Index& index : m_map.MembersOf(page, EObjectType::Bus)) {
        Orin::ContainerT<const Orin::IBus> bus;
        if (m_map.Objects().GetBus(bus, index)) add(*bus, " (bus)", index);
    }
    if (wires.empty() && nameless == 0) return {};
    std::stable_sort(wires.begin(), wires.end(), [](const Wire& a, const Wire& b) { return a.name < b.name; });
    std::string out = "<h2>Nets and buses</h2>\n";
    if (!wires.empty()) out += "<ul class=\"columns\">\n";
    for (const Wire& wire : wires)
        out += drawn.count(wire.anchor) != 0
                   ? fmt::format("<li><a href=\"#{}\">{}</a>{}</li>\n", wire.anchor, Escaped(wire.name), wire.kind)
                   : fmt::format("<li>{}{}</li>\n", Escaped(wire.name), wire.kind);
    if (!wires.empty()) out += "</ul>\n";
    if (nameless != 0) out += fmt::format("<p class=\"quiet\">{} without a label.</p>\n", nameless);
    return out;
}

std::string ReportSite::Page(std::size_t page) const {
    const PageEntry& entry = m_map.Entry(page);
    const std::string heading = m_map.Heading(page) + ": " + entry.block;
    const Drawing::Picture picture = m_map.PictureOf(page);
    Anchors drawn;
    for (const Drawing::Item& item : picture.items)
        drawn.insert(item.anchor);
    const double width = static_cast<double>(picture.extent.Width()) / Drawing::Millimetre * PixelsOfLargePicture;
    std::string out = Head(heading + " - " + m_name);
    out += "<header>\n" + Way(page) + Neighbours(page) + "<h1>" + Escaped(heading) + " <span class=\"quiet\">" +
           Escaped(m_map.Place(page)) + "</span></h1>\n</header>\n<main>\n";
    out +=
        "<input type=\"checkbox\" id=\"large\" class=\"controls\"/><label for=\"large\" class=\"controls\"> "
        "Large picture</label>\n";
    out += fmt::format("<div class=\"sheet\" tabindex=\"0\" style=\"--large:{:.0f}px\">\n", width);
    out += Drawing::SvgElement(picture, "Picture of " + heading);
    out += "</div>\n" + Connectors(page, drawn) + Below(page, drawn) + Wires(page, drawn);
    return out + "</main>\n</body>\n</html>\n";
}

}  // namespace Quill::Cli
