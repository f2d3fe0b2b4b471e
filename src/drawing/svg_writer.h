// Writes pictures down as SVG.
#pragma once

#include <string>
#include <string_view>

#include "drawing/picture.h"

namespace Quill::Drawing {

// The text as XML and HTML take it, between tags and in quoted attribute values. Characters that XML cannot hold, that
// would change the direction of writing, and bytes that are not UTF-8 become U+FFFD; line feeds stay.
std::string Escaped(std::string_view text);

enum class Theme : std::uint8_t { Light, Dark };

// The rules for everything within an element of the class "picture": once how lines and texts are made, and the colours
// of each theme.
std::string StyleOfShapes();
std::string StyleOfColours(Theme theme);

// An element of SVG with the class "picture", for a document that has the rules above. A tenth of a millimetre of the
// design is a unit. `label` names it for readers who do not see it; within it, what can be pointed at has titles.
std::string SvgElement(const Picture& picture, std::string_view label);

// A file of its own, dark on white, which refers to nothing else: without anchors and links.
std::string SvgFile(const Picture& picture);

}  // namespace Quill::Drawing
