// Draws the sheets of a design.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "drawing/picture.h"
#include "drawing/symbol_shapes.h"
#include "orin/orin.h"

namespace Quill::Drawing {

// What stands under a picture.
struct Caption {
    std::string page;   // "Page 3"
    std::string place;  // which sheet of what it is
    std::string name;   // of the page
};

// What a picture says of a component beyond what the design draws.
struct Pointer {
    std::string anchor;  // the id of the component in the document; empty for none
    std::string href;    // where the component leads; empty for nowhere
    std::string title;   // the same in words, behind what the component is
    std::string mark;    // the numbers of the pages there, written beside the component
};
using Pointers = std::unordered_map<Orin::Index, Pointer>;

// The id of an object in a document that draws its sheet.
std::string AnchorOf(const Orin::Index& object);

// Pictures of the sheets of one snapshot. What is drawn:
//
// - Everything that the sheet's view shows, where it stands. A component is drawn as its symbol, with the names of its
//   pins; one whose symbol draws nothing as a flag when it is a connector, as a dot otherwise; one without a symbol as
//   a box. Its label and its reference are those of the page's place in the hierarchy.
// - A component of which the view has no text is called by its label and its value.
// - Ends of at least three pieces of a net, or of two at a pin, are joined by a dot.
// - A frame with the caption.
//
// What the view does not have is left out. One thread at a time. The design must not change while the artist lives.
class SheetArtist {
public:
    explicit SheetArtist(const Orin::ContainerT<const Orin::ISnapshot>& snapshot);

    // The sheet `sheet` of the block at `place`. Throws the failed Orin::Result.
    Picture Draw(const Orin::ContainerT<const Orin::IPath>& place, const Orin::ContainerT<const Orin::IGroup>& sheet,
                 const Caption& caption, const Pointers& pointers);

private:
    Orin::IUIDManager m_objects;
    SymbolCatalogue m_symbols;
};

}  // namespace Quill::Drawing
