#include "sheets/sheet_name.h"

#include "orin/string.h"
#include "properties/property_mangler.h"
#include "text/ascii.h"
#include "text/number.h"

namespace Quill {

struct SheetName::Body {
    Orin::String text;      // a cache while `numeric`
    int number = -1;        // what the name is while `numeric`
    bool numeric = false;   // whether `number`, and not `text`, is the name
    bool constant = false;  // laid down at compile time: rendered from the start, never written, never freed

    // Brings `text` up to date and gives it.
    const Orin::String& Text() {
        if (numeric && !constant) {
            // An equal text is kept: its address stays the same and nothing is allocated.
            const std::string rendered = Quill::Text::Render(number);
            if (text != rendered.c_str()) text = Orin::String(rendered);
        }
        return text;
    }

    int ParseText() const noexcept { return Quill::Text::ParseInt32(text.View()).value; }
};

namespace detail {

// Everything here is initialised at compile time, ahead of every static initialiser of the process, and never
// destroyed. Threads that read the constants read memory that nobody writes.
struct SheetNameConstants {
    template <class T>
    union Undying {
        template <class... Arguments>
        constexpr explicit Undying(const Arguments&... arguments) noexcept : value{arguments...} {}
        constexpr ~Undying() {}  // NOLINT(modernize-use-equals-default): a default one destroys the value

        T value;
    };

    static const Orin::String::Literal<2> OneText;
    static const Orin::String::Literal<1> EmptyText;
    static Undying<SheetName::Body> One;
    static Undying<SheetName::Body> Empty;
    static const Undying<SheetName> Comp;
    static const Undying<SheetName> Def;
    static const Undying<SheetName> Null;
};

constinit const Orin::String::Literal<2> SheetNameConstants::OneText("1");
constinit const Orin::String::Literal<1> SheetNameConstants::EmptyText("");
constinit SheetNameConstants::Undying<SheetName::Body> SheetNameConstants::One(OneText, 1, true, true);
constinit SheetNameConstants::Undying<SheetName::Body> SheetNameConstants::Empty(EmptyText, -1, false, true);
constinit const SheetNameConstants::Undying<SheetName> SheetNameConstants::Comp(&One.value);
constinit const SheetNameConstants::Undying<SheetName> SheetNameConstants::Def(&One.value);
constinit const SheetNameConstants::Undying<SheetName> SheetNameConstants::Null(&Empty.value);

}  // namespace detail

constinit const SheetName& comp_sheet_name = detail::SheetNameConstants::Comp.value;
constinit const SheetName& def_sheet_name = detail::SheetNameConstants::Def.value;
constinit const SheetName& null_sheet_name = detail::SheetNameConstants::Null.value;

SheetName::SheetName() : m_body(new Body) {}
SheetName::SheetName(const char* text) : m_body(new Body{text}) {}
SheetName::SheetName(int number) : m_body(new Body{{}, number, true}) {}

SheetName::SheetName(const SheetName& other)
    : m_body(new Body{other.m_body->text, other.m_body->number, other.m_body->numeric}) {}

SheetName& SheetName::operator=(const SheetName& other) {
    if (this == &other) return *this;
    m_body->text = other.m_body->text;
    m_body->number = other.m_body->number;
    m_body->numeric = other.m_body->numeric;
    return *this;
}

SheetName::~SheetName() {
    if (!m_body->constant) delete m_body;
}

SheetName::operator const char*() const {
    return m_body->Text();
}

bool SheetName::operator==(const SheetName& other) const {
    return this == &other || Text::EqualNoCase(m_body->Text().View(), other.m_body->Text().View());
}

bool SheetName::operator!=(const SheetName& other) const {
    return !(*this == other);
}

int SheetName::__Number() const noexcept {
    if (m_body->numeric) return m_body->number;
    const int number = m_body->ParseText();
    if (!m_body->constant) m_body->number = number;
    return number;
}

int& SheetName::__Number() noexcept {
    if (!m_body->numeric) {
        m_body->number = m_body->ParseText();
        m_body->numeric = true;
    }
    return m_body->number;
}

int* SheetName::__NumberPtr() noexcept {
    return &__Number();
}

std::string GetSheetIdAttrName() {
    std::string name;
    Utils::CPropertyMangler::Mangle("ID", DataModel::PropertyType::Internal, name);
    return name;
}

bool ReadSheetId(const Orin::IGroup& sheet, int& id) {
    Orin::String value;
    if (!sheet.GetAttribute(Orin::String(GetSheetIdAttrName()), value)) return false;
    id = Text::ParseInt32(value.View()).value;
    return true;
}

bool WriteSheetId(Orin::MutableContainerT<Orin::IGroup> sheet, int id) {
    if (!sheet) return false;
    const Orin::Result result = sheet->SetAttribute(Orin::String(GetSheetIdAttrName()), Orin::String(Text::Render(id)));
    return result.Succeeded();
}

}  // namespace Quill
