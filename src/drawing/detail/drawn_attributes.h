// The attributes that a view draws.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "designdata/result_rule.h"
#include "drawing/picture.h"
#include "orin/orin.h"

namespace Quill::Drawing::detail {

inline std::string ShownText(const Orin::AttrDataQuill& drawn, std::string_view name, std::string_view value) {
    std::string text;
    if (drawn.showName) text.append(name).append(": ");
    return text.append(value);
}

// Adds the text of each attribute of `object` that is drawn and visible; `read(attribute, record)` asks the view.
template <class Object, class Read>
void AddAttributes(const Object& object, Ink ink, std::vector<Shape>& shapes, const Read& read) {
    Orin::ListAttribute attributes;
    Utils::Require(object.GetAttributes(attributes));
    for (const Orin::Attribute& attribute : std::as_const(attributes)) {
        Orin::AttrDataQuill drawn;
        if (!Utils::Present(read(attribute, drawn)) || !drawn.style.visible) continue;
        shapes.emplace_back(
            TextOf(ink, ShownText(drawn, attribute.name.View(), attribute.value.View()), drawn.position, drawn.style));
    }
}

}  // namespace Quill::Drawing::detail
