#include "designdata/symbol_orin_quill_data_visitor.h"

#include "designdata/detail/record_walk.h"
#include "orin/views.h"

namespace Quill::Utils {

using namespace Orin;

SymbolOrinQuillDataVisitor::~SymbolOrinQuillDataVisitor() = default;

void SymbolOrinQuillDataVisitor::process(ContainerT<const IComp> comp) {
    if (!comp) throw comp.IsValid();
    ContainerT<const ICompViewQuill> view;
    Require(ICompViewQuill::Init(view, *comp));

    detail::VisitAttributes(*this, *comp, [&](const String& name, const String& value, AttrDataQuill& data) {
        return view->GetAttr(name, value, data);
    });

    IteratorT<const IPin> pin;
    Require(comp->GetIterPins(pin));
    for (; pin; ++pin) {
        detail::VisitRecord<PinDataQuill>(*this, [&](PinDataQuill& data) { return view->GetPinData(*pin, data); });
        detail::VisitRecord<LabelDataQuill>(*this, [&](LabelDataQuill& data) { return view->GetPinLabel(*pin, data); });
        detail::VisitPinAttributes(*this, *view, *pin);
    }

    detail::VisitFreeGraphics(*this, *view);
}

}  // namespace Quill::Utils
