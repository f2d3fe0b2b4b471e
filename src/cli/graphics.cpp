#include "cli/graphics.h"

#include "designdata/block_orin_quill_data_visitor.h"

namespace Quill::Cli {

namespace {

class Collector final : public Utils::BlockOrinQuillDataVisitor {
public:
    void visit(const Orin::GroupDataQuill& data) override { Add("group", data.objectId, data.first); }
    void visit(const Orin::LabelDataQuill& data) override { Add("label", data.objectId, data.position); }
    void visit(const Orin::AttrDataQuill& data) override {
        Add("attribute", data.objectId, data.position).attributeId = data.attributeId;
    }
    void visit(const Orin::TextDataQuill& data) override {
        Add("text", data.objectId, data.position).text = data.text.View();
    }
    void visit(const Orin::CircleDataQuill& data) override { Add("circle", data.objectId, data.centre); }
    void visit(const Orin::ArcDataQuill& data) override { Add("arc", data.objectId, data.start); }
    void visit(const Orin::RectDataQuill& data) override { Add("rectangle", data.objectId, data.first); }
    void visit(const Orin::LineDataQuill& data) override {
        Add("line", data.objectId, data.points.IsEmpty() ? Orin::Point() : data.points[0]);
    }
    void visit(const Orin::BusDataQuill& data) override { AddWiring("bus", data.objectId, data.segments); }
    void visit(const Orin::NetDataQuill& data) override { AddWiring("net", data.objectId, data.segments); }
    void visit(const Orin::CompDataQuill& data) override { Add("component", data.objectId, data.position); }

    std::vector<Graphic> found;

private:
    Graphic& Add(const char* kind, Orin::ItemId id, Orin::Point at) {
        return found.emplace_back(Graphic{kind, id, {}, at, {}, {}, {}});
    }
    void AddWiring(const char* kind, Orin::ItemId id, const Orin::ListSegmentsQuill& wiring) {
        Graphic& graphic = Add(kind, id, wiring.joints.IsEmpty() ? Orin::Point() : wiring.joints[0].position);
        graphic.joints.assign(wiring.joints.begin(), wiring.joints.end());
        graphic.segments.assign(wiring.segments.begin(), wiring.segments.end());
    }
};

}  // namespace

void AddSheetOptions(const Syntax& command, SheetOptions& options) {
    AddDesignArgument(command, options.design);
    command.Option("BLOCK", options.block, "name of the block").Required();
    command.Option("SHEET", options.sheet, "name of the sheet").Required();
    AddJsonFlag(command, options.json);
}

std::vector<Graphic> GraphicsOf(const Orin::ContainerT<const Orin::IBlock>& block,
                                const Orin::ContainerT<const Orin::IGroup>& sheet) {
    Collector collector;
    collector.process(block, sheet);
    return std::move(collector.found);
}

}  // namespace Quill::Cli
