// Names of sheets, and the permanent numbers that sheets keep while their names change.
#pragma once

#include <string>

#include "orin/design_objects.h"
#include "orin/handles.h"
#include "quillutils_export.h"

namespace Quill {

namespace detail {
struct SheetNameConstants;
}

// The name of a sheet: as a rule a number, but any text is allowed. It is used as either without being parsed or
// rendered by its user. One pointer wide; copies are deep. Nothing throws but for want of memory.
//
// One object is used by one thread at a time, reading included, since reading renders and parses. The three constants
// below are the exception: any thread may read them.
class QUILLUTILS_EXPORT SheetName {
public:
    SheetName();                  // the empty text
    SheetName(const char* text);  // null counts as ""
    SheetName(int number);
    SheetName(const SheetName& other);
    SheetName& operator=(const SheetName& other);
    ~SheetName();

    // The text; of a number its plain decimal form, rendered anew on every call because the number may have been
    // assigned through the reference below. Valid until the next call on this object.
    operator const char*() const;

    // Compares the texts without letter case (ASCII): "A1" equals "a1" and the number 7 the text "7", but not "07".
    bool operator==(const SheetName& other) const;
    bool operator!=(const SheetName& other) const;

    // The names of the next three are reserved, and other programs rely on them.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreserved-identifier"
#endif

    // The number. A text is read as a decimal integer at its beginning: white space, a sign, then digits up to the
    // first other character ("12b" is 12). A text without one reads as 0, one too large as the nearest integer.
    // The name stays the text that it is.
    int __Number() const noexcept;

    // The number, to be read and assigned; valid as long as this object. The name is the number from now on: "5x"
    // becomes "5".
    int& __Number() noexcept;
    int* __NumberPtr() noexcept;

#ifdef __clang__
#pragma clang diagnostic pop
#endif

private:
    friend struct detail::SheetNameConstants;
    struct Body;

    constexpr explicit SheetName(Body* body) noexcept : m_body(body) {}

    Body* m_body;  // owned, but for the constants
};

// Names that designs agree upon. They can be used by any static initialiser of any module, are never destroyed, and
// may be read by any thread. The first sheet of a component's block and the default sheet of a new block bear the same
// name, "1".
extern QUILLUTILS_EXPORT const SheetName& comp_sheet_name;
extern QUILLUTILS_EXPORT const SheetName& def_sheet_name;
extern QUILLUTILS_EXPORT const SheetName& null_sheet_name;  // the empty text

// The name of the sheet attribute that keeps a sheet's id, a number that stays when sheets are renamed:
// "$$Internal_ID".
QUILLUTILS_EXPORT std::string GetSheetIdAttrName();

// The sheet's id. A value that is no number reads as 0. False, with `id` untouched, when the sheet has none.
QUILLUTILS_EXPORT bool ReadSheetId(const Orin::IGroup& sheet, int& id);

// Gives the sheet its id; `sheet` is a write handle. False when the database refuses or the handle is empty.
QUILLUTILS_EXPORT bool WriteSheetId(Orin::MutableContainerT<Orin::IGroup> sheet, int id);

}  // namespace Quill
