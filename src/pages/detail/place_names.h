// The names of the places that a walk through the hierarchy comes to.
#pragma once

#include <cstddef>
#include <string>

#include "orin/design_objects.h"

namespace Quill::detail {

// The hierarchical names of the places on the way from the root to where a walk stands. Each is made from the one above
// it, and is exactly what QuillInOrin::GetHierarchicalName gives. The names of all places share one text, since below
// thousands of levels each name by itself is long.
class PlaceNames {
public:
    // What is known of one place; meaningful as long as the walk is there or below.
    struct Place {
        std::size_t begin = 0;  // of the name in the text
        std::size_t end = 0;
        bool hasElements = false;
        bool isNameless = false;  // an element could not be made, which leaves all names below empty, too
    };

    // The place below `parent`, which is the default one at the root.
    Place Below(const Place& parent, const Orin::IPath& path);

    // The name of a page there: the place's name, "\" and the sheet's, or the sheet's alone when the place has none.
    std::string PageName(const Place& place, const Orin::IGroup& sheet) const;

private:
    std::string m_text;
};

}  // namespace Quill::detail
