// Real designs, compared with what an independent reader found in them.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "labels/bus_label_expander.h"
#include "labels/net_limiter.h"
#include "tests/interchange/imported_design.h"

namespace {

using namespace Quill;
using namespace Quill::Interchange;
using namespace Quill::Interchange::Testing;
using namespace Orin;
using nlohmann::json;

using Counts = std::map<std::string, std::size_t>;
using PagesByText = std::map<std::string, std::set<std::size_t>>;

// Everything that is compared, page by page in the order of the walk.
struct Found {
    std::vector<std::pair<std::vector<std::string>, std::string>> pages;  // sheet names and page number
    std::vector<Counts> counts;
    std::vector<std::multiset<std::string>> references;
    PagesByText globalLabels;
    PagesByText hierarchicalLabels;
    PagesByText powerNets;
    PagesByText buses;
    std::map<std::string, std::multiset<std::string>> members;
};

// Without brackets and marks, in which the two sides differ by design.
std::string Bare(std::string text) {
    const auto mark = [](char c) { return std::string_view("[]~{}").find(c) != std::string_view::npos; };
    text.erase(std::remove_if(text.begin(), text.end(), mark), text.end());
    return text;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

class Reader {
public:
    explicit Reader(const ImportedDesign& design) : m_design(design) {}

    Found Read() {
        for (const PageID& page : m_design.Pages(EAlgorithm::DepthFirst))
            ReadPage(page);
        return std::move(m_found);
    }

private:
    void ReadPage(const PageID& page) {
        const OpenPage open(m_design, page);
        m_path = open.path;
        m_found.pages.emplace_back(open.names, open.number);
        m_found.counts.emplace_back();
        m_found.references.emplace_back();
        for (const Index& member : open.members) {
            if (member.GetType() == EObjectType::Comp)
                ReadComp(member);
            else if (member.GetType() == EObjectType::Net)
                ReadNet(member, page.group);
            else
                ReadBus(member, page.group);
        }
        ReadView(*open.block, *open.group);
    }

    std::size_t& Count(const char* kind) { return m_found.counts.back()[kind]; }
    void Enter(PagesByText& texts, const std::string& text) { texts[text].insert(m_found.pages.size() - 1); }

    void ReadComp(const Index& index) {
        ContainerT<const IComp> comp;
        ASSERT_TRUE(m_path->GetCompInPath(comp, index));
        CompTypes types;
        EXPECT_TRUE(comp->GetType(types));
        if (types.Contains(ECompType::Titled)) return;
        if (types.Contains(ECompType::Hierarchical)) {
            ++Count("child_sheets");
            IteratorT<const IPin> pins;
            EXPECT_TRUE(comp->GetIterPins(pins));
            for (; pins; ++pins)
                ++Count("child_sheet_pins");
            return;
        }
        const std::string source = AttributeOf(*comp, KicadAttributes::Source, EAttributeType::System);
        if (types.Contains(ECompType::Part) || types.Contains(ECompType::Power)) {
            ++Count("symbols");
            const std::string reference = AttributeOf(*comp, "REFDES", EAttributeType::User);
            if (types.Contains(ECompType::Power)) {
                ++Count("power_symbols");
                if (!AttributeOf(*comp, "Global Signal Name", EAttributeType::User).empty())
                    Enter(m_found.powerNets, AttributeOf(*comp, "Value", EAttributeType::User));
            }
            if (!reference.starts_with('#'))
                m_found.references.back().insert(reference + ":" + AttributeOf(*comp, "Unit", EAttributeType::User));
            return;
        }
        String cell;
        EXPECT_TRUE(comp->GetName(cell));
        const std::string kind(cell.View());
        ++Count(kind == "bus_entry" ? "bus_entries" : (kind + "s").c_str());
        if (kind == "global_label") Enter(m_found.globalLabels, source);
        if (kind == "hierarchical_label") Enter(m_found.hierarchicalLabels, source);
    }

    // A wire that is cut where something stands on it counts as often as it has pieces.
    void ReadNet(const Index& index, const Index& group) {
        ListT<DesignDb::NetPieceInfo> pieces;
        EXPECT_TRUE(m_design.inspector.GetPieces(index, pieces));
        for (const DesignDb::NetPieceInfo& piece : pieces)
            if (piece.view == group) Count("wires") += piece.data.segments.segments.Count();
        CountLabel(index, group);
    }

    void ReadBus(const Index& index, const Index& group) {
        ContainerT<const IBus> bus;
        ASSERT_TRUE(m_design.objects.GetBus(bus, index));
        const BusDataQuill* const body = CountLabel(index, group);
        if (body != nullptr) Count("buses") += body->segments.segments.Count();
        EnterBus(LabelOf(*bus), AttributeOf(*bus, KicadAttributes::Source));
        const std::vector<std::string> labels = Lines(AttributeOf(*bus, KicadAttributes::OtherLabels));
        const std::vector<std::string> sources = Lines(AttributeOf(*bus, KicadAttributes::OtherSources));
        ASSERT_EQ(labels.size(), sources.size());
        for (std::size_t i = 0; i < labels.size(); ++i)
            EnterBus(labels[i], sources[i]);
    }

    void EnterBus(const std::string& label, const std::string& source) {
        if (source.empty()) return;
        Enter(m_found.buses, source);
        BusContents::BusLabelExpander expander(label, BusContents::SquareLimiter);
        std::multiset<std::string> members;
        while (const auto member = expander.Next())
            members.insert(Bare(std::string(*member)));
        m_found.members[source] = members;
    }

    // Counts the drawn label, and gives what the view shows of a bus.
    const BusDataQuill* CountLabel(const Index& object, const Index& group) {
        EXPECT_TRUE(m_design.inspector.GetDrawings(object, m_drawings));
        const BusDataQuill* body = nullptr;
        for (const DesignDb::DrawingInfo& drawing : m_drawings) {
            if (drawing.view != group) continue;
            if (drawing.label) ++Count("texts and labels");
            body = std::get_if<BusDataQuill>(&drawing.body);
        }
        return body;
    }

    void ReadView(const IBlock& block, const IGroup& group) {
        ContainerT<const IBlockViewQuill> view;
        ASSERT_TRUE(IBlockViewQuill::Init(view, block, group));
        const auto count = [&](const char* kind, auto items) {
            for (; items; ++items)
                ++Count(kind);
        };
        IteratorT<const ITextQuill> texts;
        IteratorT<const ILineQuill> lines;
        IteratorT<const IRectQuill> rects;
        IteratorT<const IArcQuill> arcs;
        IteratorT<const ICircleQuill> circles;
        EXPECT_TRUE(view->GetIterTexts(texts) && view->GetIterLines(lines) && view->GetIterRectangles(rects) &&
                    view->GetIterArcs(arcs) && view->GetIterCircles(circles));
        count("texts and labels", texts);
        count("polyline", lines);
        count("rectangle", rects);
        count("arc", arcs);
        count("circle", circles);
    }

    const ImportedDesign& m_design;
    Found m_found;
    ContainerT<const IPath> m_path;
    ListT<DesignDb::DrawingInfo> m_drawings;
};

// What the oracle counted, in the kinds that designs have: a text box is a rectangle with a text, and what of local
// labels is not the label of a net is a text. Junctions are joints of nets and images are left out.
Counts ExpectedCounts(const json& page) {
    Counts counts;
    const auto add = [&](const char* kind, std::size_t number) {
        if (number != 0) counts[kind] += number;
    };
    for (const char* kind :
         {"symbols", "power_symbols", "wires", "buses", "bus_entries", "no_connects", "global_labels",
          "hierarchical_labels", "directive_labels", "child_sheets", "child_sheet_pins"})
        add(kind, page.at("counts").at(kind).get<std::size_t>());
    add("texts and labels", page.at("counts").at("labels").get<std::size_t>());
    const auto graphics = [&](const char* kind) { return page.at("graphics").value(kind, std::size_t{0}); };
    add("texts and labels", graphics("text") + graphics("text_box"));
    add("polyline", graphics("polyline") + graphics("bezier"));
    add("rectangle", graphics("rectangle") + graphics("text_box"));
    add("arc", graphics("arc"));
    add("circle", graphics("circle"));
    return counts;
}

PagesByText Expected(const json& texts) {
    PagesByText expected;
    for (const auto& [text, pages] : texts.items())
        expected[text] = pages.get<std::set<std::size_t>>();
    return expected;
}

bool IsNumber(const std::string& page) {
    return !page.empty() && page.find_first_not_of("0123456789") == page.npos;
}

void Compare(const json& oracle, const ImportedDesign& design) {
    const Found found = Reader(design).Read();
    decltype(found.pages) pages;
    for (const json& page : oracle.at("pages"))
        pages.emplace_back(page.at("names").get<std::vector<std::string>>(), page.at("page").get<std::string>());
    ASSERT_EQ(found.pages, pages);
    for (std::size_t i = 0; i < pages.size(); ++i) {
        SCOPED_TRACE(oracle.at("pages")[i].at("path").get<std::string>());
        EXPECT_EQ(found.counts[i], ExpectedCounts(oracle.at("pages")[i]));
        EXPECT_EQ(found.references[i], oracle.at("pages")[i].at("refs").get<std::multiset<std::string>>());
    }
    EXPECT_EQ(found.globalLabels, Expected(oracle.at("global_labels")));
    EXPECT_EQ(found.hierarchicalLabels, Expected(oracle.at("hierarchical_labels")));
    PagesByText powerNets = Expected(oracle.at("power_nets"));
    powerNets.erase("PWR_FLAG");  // its pin feeds the net that it stands on, and names none
    EXPECT_EQ(found.powerNets, powerNets);
    PagesByText buses;
    for (const auto& [text, label] : oracle.at("bus_labels").items()) {
        for (const auto& [kind, on] : label.at("as").items())
            for (const std::size_t place : on)
                buses[text].insert(place);
        std::multiset<std::string> members;
        for (const std::string member : label.at("members"))
            members.insert(Bare(member));
        EXPECT_EQ(found.members.at(text), members) << text;
    }
    EXPECT_EQ(found.buses, buses);

    // Numbers that are given twice stand for their first page, and what is no number has no place among them.
    std::vector<std::string> order;
    for (const std::size_t index : oracle.at("page_order_by_number"))
        if (const std::string& number = pages[index].second;
            IsNumber(number) && std::find(order.begin(), order.end(), number) == order.end())
            order.push_back(number);
    std::vector<std::string> printed;
    for (const PageID& page : design.Pages(EAlgorithm::PrintOrder))
        if (const std::string number = OpenPage(design, page).number; IsNumber(number)) printed.push_back(number);
    EXPECT_EQ(printed, order);
}

TEST(KicadImportOfRealDesigns, FindsWhatAnIndependentReaderFound) {
    const char* const chosen = std::getenv("QUILL_DESIGNS");
    const std::filesystem::path folder = chosen != nullptr ? chosen : QUILL_DESIGNS_FOLDER;
    if (!std::filesystem::is_directory(folder)) GTEST_SKIP() << "no designs in " << folder << "; set QUILL_DESIGNS";
    int designs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path() / "oracle.json");
        if (!file) continue;
        SCOPED_TRACE(entry.path().filename().string());
        const json oracle = json::parse(file);
        ImportedDesign design;
        ASSERT_EQ(design.Import(entry.path() / oracle.at("root").get<std::string>()), "");
        Compare(oracle, design);
        ++designs;
    }
    EXPECT_GT(designs, 0);
}

}  // namespace
