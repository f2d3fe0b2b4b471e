// A design with a sheet and a symbol that show one of everything, for what looks at drawings.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "designdb/database.h"
#include "designdb/editor.h"

namespace Tests {

inline void Must(const Orin::Result& result) {
    if (!result) throw std::runtime_error(static_cast<const char*>(result.GetDescription()));
}

// A design as one client holds it.
struct DesignClient {
    DesignClient(const Orin::DesignDb::Database& project, const char* name)
        : database(project), client(database.Connect(name)) {
        Must(client->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot));
    }

    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
};

// The objects of such a design.
struct DrawnObjects : DesignClient {
    using DesignClient::DesignClient;
    void Find(const Orin::Index& blockIndex, const Orin::Index& sheetIndex, const Orin::Index& symbolIndex) {
        Orin::IUIDManager objects;
        Must(snapshot->GetUIDManager(objects));
        Must(objects.GetBlock(block, blockIndex));
        Must(objects.GetGroup(sheet, sheetIndex));
        Must(objects.GetComp(symbol, symbolIndex));
    }

    Orin::ContainerT<const Orin::IBlock> block;
    Orin::ContainerT<const Orin::IGroup> sheet;
    Orin::ContainerT<const Orin::IComp> symbol;
};

// Items are numbered in the order in which a walk meets them. The number is the item's object id, but for the item
// `highest`, whose id is 1000. The attribute id of a drawn attribute is larger by 100.
struct DrawnDesign : DrawnObjects {
    explicit DrawnDesign(Orin::ItemId highest = 0, const char* sheetId = "3")
        : DrawnObjects(NewProject(), "client"), highestItem(highest) {
        Must(Orin::DesignDb::Editor::Open(editor, snapshot));
        Must(editor.AddBlock({"top", Orin::EBlockType::Schematic}, blockIndex));
        Must(editor.AddGroup(blockIndex, {"1"}, sheetIndex));
        Must(editor.AddComp(blockIndex, {"", "amp.1", Orin::ECompType::Symbol}, symbolIndex));
        Find(blockIndex, sheetIndex, symbolIndex);
        if (sheetId != nullptr) Must(editor.SetAttribute(sheetIndex, "$$Internal_ID", sheetId));
    }

    static Orin::DesignDb::Database NewProject() {
        static int projects = 0;
        Orin::DesignDb::Database made;
        Must(Orin::DesignDb::Database::Create(made, ("drawn" + std::to_string(++projects)).c_str()));
        return made;
    }

    Orin::ItemId Id(Orin::ItemId item) const { return item == highestItem ? 1000 : item; }

    // Any record that shows nothing but an object id.
    struct Item {
        Orin::ItemId id;

        template <class Record>
        operator Record() const {
            Record data;
            data.objectId = id;
            return data;
        }
    };
    Item At(Orin::ItemId item) const { return {Id(item)}; }

    // Of a net's piece or a bus; the second ids are small.
    static Orin::ListSegmentsQuill Segments(Orin::ItemId joint, Orin::ItemId segment) {
        return {{{joint, {}, {}}, {5, {}, {}}}, {{segment, 0, 0}, {6, 0, 0}}};
    }

    // An attribute that is drawn, and one that is not.
    void DrawAttribute(const Orin::Index& view, const Orin::Index& object, Orin::ItemId item) {
        Must(editor.SetAttribute(object, "Drawn", "10k"));
        Must(editor.SetAttribute(object, "Hidden", "x"));
        Orin::AttrDataQuill drawn = At(item);
        drawn.attributeId = 100 + drawn.objectId;
        Must(editor.SetAttrData(view, object, "Drawn", "10k", drawn));
        Must(editor.SetAttrData(view, object, "Drawn", "22k", Item{99}));
    }

    void DrawLabelAndAttribute(const Orin::Index& object, Orin::ItemId first) {
        Must(editor.SetLabelData(sheetIndex, object, At(first)));
        DrawAttribute(sheetIndex, object, first + 1);
    }

    // Last things first, so that the order of a walk is not that of the making.
    void DrawFreeGraphics(const Orin::Index& view, Orin::ItemId first) {
        Orin::Index item;
        Must(editor.AddText(view, At(first + 4), item));
        Must(editor.AddCircle(view, At(first + 3), item));
        Must(editor.AddArc(view, At(first + 2), item));
        Must(editor.AddRect(view, At(first + 1), item));
        Must(editor.AddLine(view, At(first), item));
    }

    static constexpr const char* SheetItems =
        "Comp1 Label2 Attr3 Attr4 Net5 Net6 Label7 Attr8 Bus9 Label10 Attr11 Group12 Label13 Attr14 Attr15 Line16 "
        "Rect17 Arc18 Circle19 Text20 ";

    void DrawSheet() {
        DrawFreeGraphics(sheetIndex, 16);
        DrawAttribute(sheetIndex, blockIndex, 15);
        Orin::Index other, strange, comp, pin, net, bus, group, piece;
        Must(editor.AddGroup(blockIndex, {"2", Orin::EGroupType::Sheet}, other));
        Must(editor.SetGroupData(sheetIndex, other, Item{98}));
        Orin::DesignDb::CompSpec odd{"X"};
        odd.index = Orin::Index(static_cast<Orin::EObjectType>(99), 0, 1);
        Must(editor.AddComp(blockIndex, odd, strange));
        Must(editor.SetCompData(sheetIndex, strange, Item{97}));
        Must(editor.AddGroup(blockIndex, {"cluster", Orin::EGroupType::Cluster}, group));
        Must(editor.SetGroupData(sheetIndex, group, At(12)));
        DrawLabelAndAttribute(group, 13);
        Must(editor.AddBus(blockIndex, {"B"}, bus));
        Must(editor.SetBusData(sheetIndex, bus, {Id(9), Segments(0xFFFFFFFF, 812), {}, {}}));
        DrawLabelAndAttribute(bus, 10);
        Must(editor.AddNet(blockIndex, {"N"}, net));
        Must(editor.AddNetQuill(sheetIndex, net, {Id(5), Segments(700, 0xFFFFFFFE), {}}, piece));
        Must(editor.AddNetQuill(sheetIndex, net, {Id(6), Segments(711, 800), {}}, piece));
        DrawLabelAndAttribute(net, 7);
        Must(editor.AddComp(blockIndex, {"U1"}, comp));
        Must(editor.SetCompData(sheetIndex, comp, At(1)));
        DrawLabelAndAttribute(comp, 2);
        Must(editor.AddPin(comp, {"A"}, pin));
        Must(editor.SetLabelData(sheetIndex, pin, Item{96}));  // a sheet shows no labels of pins
        DrawAttribute(sheetIndex, pin, 4);
        for (const Orin::Index& member : {other, comp, strange, net, bus, group})
            Must(editor.AddMember(sheetIndex, member));
    }

    static constexpr const char* SymbolItems = "Attr1 Pin2 Label3 Attr4 Pin5 Line6 Rect7 Arc8 Circle9 Text10 ";

    void DrawSymbol() {
        DrawFreeGraphics(symbolIndex, 6);
        Orin::Index first, second;
        Must(editor.AddPin(symbolIndex, {"A"}, first));
        Must(editor.AddPin(symbolIndex, {"B"}, second));
        Must(editor.SetPinData(symbolIndex, second, At(5)));
        Must(editor.SetPinData(symbolIndex, first, At(2)));
        Must(editor.SetLabelData(symbolIndex, first, At(3)));
        DrawAttribute(symbolIndex, first, 4);
        DrawAttribute(symbolIndex, symbolIndex, 1);
    }

    Orin::ItemId highestItem;
    Orin::DesignDb::Editor editor;
    Orin::Index blockIndex, sheetIndex, symbolIndex;
};

}  // namespace Tests
