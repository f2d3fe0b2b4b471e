// A visitor that writes down what it is shown.
#pragma once

#include <string>

#include "orin/records.h"
#include "orin/result.h"

namespace Tests {

// Writes down what it is given: the kind and the object id of each record. Overrides what `Visitor` declares.
template <class Visitor>
class VisitRecorder final : public Visitor {
public:
    void visit(const Orin::LabelDataQuill& data) { Write("Label", data); }
    void visit(const Orin::AttrDataQuill& data) { Write("Attr", data); }
    void visit(const Orin::TextDataQuill& data) { Write("Text", data); }
    void visit(const Orin::CircleDataQuill& data) { Write("Circle", data); }
    void visit(const Orin::ArcDataQuill& data) { Write("Arc", data); }
    void visit(const Orin::RectDataQuill& data) { Write("Rect", data); }
    void visit(const Orin::LineDataQuill& data) { Write("Line", data); }
    void visit(const Orin::GroupDataQuill& data) { Write("Group", data); }
    void visit(const Orin::BusDataQuill& data) { Write("Bus", data); }
    void visit(const Orin::NetDataQuill& data) { Write("Net", data); }
    void visit(const Orin::CompDataQuill& data) { Write("Comp", data); }
    void visit(const Orin::PinDataQuill& data) { Write("Pin", data); }

    // What the walk visited, and the code with which it ended unless it came to its end.
    template <class... Handles>
    static std::string Walk(const Handles&... handles) {
        VisitRecorder recorder;
        try {
            recorder.process(handles...);
        } catch (const Orin::Result& result) {
            recorder.visits += "thrown " + std::to_string(result.GetErrorCode());
        }
        return recorder.visits;
    }

    std::string visits;

private:
    template <class Record>
    void Write(const char* kind, const Record& data) {
        visits += kind + std::to_string(data.objectId) + " ";
    }
};

}  // namespace Tests
