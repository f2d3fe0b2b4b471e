// What a symbol looks like, read once and placed many times.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "drawing/picture.h"
#include "orin/orin.h"

namespace Quill::Drawing {

// In the symbol's own coordinates.
struct SymbolShapes {
    std::vector<Shape> shapes;  // areas first, then what stands on them, pins with their names and numbers last
    Box body;                   // without pins and texts; empty when nothing is drawn
    Orin::Point outward{1, 0};  // away from the first pin: along an axis, of length 1
    bool hasPins = false;

    bool IsEmpty() const noexcept { return body.IsEmpty(); }
};

// The shapes of an `object` whose drawing the design tells by view: free lines, rectangles, arcs, circles and texts,
// those that are filled first. Throws the failed Orin::Result.
std::vector<Shape> FreeShapes(const Orin::IBlockViewQuill& view);

// The symbols of a design; one thread at a time. What was read stays, so the design must not change meanwhile.
class SymbolCatalogue {
public:
    // The shapes of a definition. Valid as long as the catalogue. Throws the failed Orin::Result.
    const SymbolShapes& Of(const Orin::IComp& definition);

private:
    std::unordered_map<Orin::Index, SymbolShapes> m_symbols;
};

}  // namespace Quill::Drawing
