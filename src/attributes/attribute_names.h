// The names under which schematic designs keep their common attributes. They differ between design flows: the netlist
// flow ("NETLIST") has names of its own, every other flow has the schematic ones.
#pragma once

#include <array>
#include <string>

#include "quillutils_export.h"

namespace NQuillUtils::NAttributeNames {

// The names of the current flow: readers see constants, SetCurrentFlowType points them elsewhere. A pointer that was
// read from one stays valid for the life of the process; it then names the attribute of the flow that was current.
// Static initialisers may read them: the schematic names are there before any code runs.
//
// Bound to storage that is not const, so that every read sees the last switch.
extern QUILLUTILS_EXPORT const char* const& globalSignalName;
extern QUILLUTILS_EXPORT const char* const& partNumber;
extern QUILLUTILS_EXPORT const char* const& refDesignator;
extern QUILLUTILS_EXPORT const char* const& level;
extern QUILLUTILS_EXPORT const char* const& vhdlModel;
extern QUILLUTILS_EXPORT const char* const& verilogModel;
extern QUILLUTILS_EXPORT const char* const& vhdlType;
extern QUILLUTILS_EXPORT const char* const& verilogFile;
extern QUILLUTILS_EXPORT const char* const& vhdlFile;
extern QUILLUTILS_EXPORT const char* const& pinNumber;
extern QUILLUTILS_EXPORT const char* const& pinType;
extern QUILLUTILS_EXPORT const char* const& cellName;
extern QUILLUTILS_EXPORT const char* const& defaultCellName;

// The same in every flow.
inline constexpr const char* term = "Term";
inline constexpr const char* XrefAnnotation = "Xref Annotation";

// Makes `flowType` the current flow: "NETLIST", "Cobalt" or "Brio" in any letter case; every other text stands for the
// plain schematic flow. To be called while no other thread reads the names.
QUILLUTILS_EXPORT void SetCurrentFlowType(const std::string& flowType);

// The names of one flow, whichever is the current one. A value; one thread at a time.
class QUILLUTILS_EXPORT CQuillAttrNames {
public:
    explicit CQuillAttrNames(const std::string& flowType);

    // Takes flow types as SetCurrentFlowType does.
    void SetFlowType(const std::string& flowType);

    // Each valid until the object is changed or destroyed.
    const char* globalSignalName();
    const char* partNumber();
    const char* refDesignator();
    const char* level();
    const char* vhdlModel();
    const char* verilogModel();
    const char* vhdlType();
    const char* verilogFile();
    const char* vhdlFile();
    const char* pinNumber();
    const char* pinType();
    const char* cellName();
    const char* defaultCellName();

private:
    std::array<std::string, 13> m_names;  // in the order of the accessors
};

}  // namespace NQuillUtils::NAttributeNames
