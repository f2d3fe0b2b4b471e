// Lesson: jump from a sheet connector to the other ends of its signal.
//
// Connectors that bear one label are joined, wherever in the design they stand. The cache finds them; it observes the
// design and collects anew when it has to.
#include <iostream>
#include <list>

#include "orin/uid_manager.h"
#include "sheets/sheet_connectors_cache.h"
#include "small_design.h"

namespace {

// Which symbols are connectors is the application's knowledge.
class Symbols : public Quill::IPinTypeComponentsData {
public:
    std::vector<std::string> GetComponents(int pinType) override {
        if (pinType != Quill::CSheetConnectorsCache::SheetConnectorPinType) return {};
        return {"LIB:offpage.1"};
    }
};

// The labels of the components through which the page is reached, such as "/CH1"; "/" for a page of the root block.
std::string PlaceOf(const Quill::CSheetConnectorData& connector, const Orin::ISnapshot& snapshot) {
    Orin::IUIDManager objects;
    Lessons::Check(snapshot.GetUIDManager(objects));
    std::string place;
    for (const Orin::Index& index : connector.hierarchy) {
        Orin::ContainerT<const Orin::IComp> comp;
        Lessons::Check(objects.GetComp(comp, index));
        Orin::String label;
        Lessons::Check(comp->GetLabel(label));
        place += '/' + std::string(label);
    }
    return place.empty() ? "/" : place;
}

}  // namespace

int main() {
    try {
        const Lessons::SmallDesign design;

        Quill::CSheetConnectorsCache cache;
        cache.attachObserver(design.snapshot);
        Symbols symbols;
        if (!cache.reloadSheetConnectorsList(&symbols)) return 1;

        // From connector to connector in the order of the pages, until the jumps come round to where they began. A
        // connector is known by its index and by the way to its page: the channel's stands on two pages.
        std::cout << "Jumping along DIM\n";
        Quill::CSheetConnectorData at{design.firstConnector, {}, {}};
        do {
            const Quill::CSheetConnectorData* next = nullptr;
            if (!cache.getNextTargetSheetConnector("LIB", "offpage", "1", "/lamp", "DIM", at.index, at.hierarchy,
                                                   &next))
                return 1;
            at = *next;  // a copy: the cache's own may go with its next query
            std::cout << "  in " << PlaceOf(at, *design.snapshot) << '\n';
        } while (!(at.index == design.firstConnector));

        // Or all other ends at once.
        std::list<const Quill::CSheetConnectorData*> others;
        cache.getAllTargetSheetConnectors("LIB", "offpage", "1", "/lamp", "DIM", at.index, at.hierarchy, others);
        std::cout << "Other ends: " << others.size() << '\n';

        // An edit makes the cache stale, and the next query collects again.
        Orin::DesignDb::Editor editor;
        Lessons::Check(Orin::DesignDb::Editor::Open(editor, design.snapshot));
        Lessons::Check(editor.SetLabel(design.firstConnector, "BRIGHT"));
        const Quill::CSheetConnectorData* alone = nullptr;
        const bool elsewhere = cache.getNextTargetSheetConnector("LIB", "offpage", "1", "/lamp", "BRIGHT",
                                                                 design.firstConnector, {}, &alone);
        std::cout << "BRIGHT leads elsewhere: " << (elsewhere ? "yes" : "no") << '\n';
    } catch (const Orin::Result& failure) {
        std::cerr << static_cast<const char*>(failure.GetDescription()) << '\n';
        return 1;
    }
}
