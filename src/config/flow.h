// The design flows that the application works in.
#pragma once

#include <list>
#include <string>

#include "quillutils_export.h"

namespace Quill {

// One design flow. A value; safe to read from any thread.
class QUILLUTILS_EXPORT CFlow {
public:
    CFlow(std::string name, std::string type);

    std::string GetName() const { return m_name; }
    std::string GetType() const { return m_type; }

    // The directory of the flow's schematic templates: TOVE_HOME with "/" for every backslash and in small letters,
    // "/standard/templates/quillsketch/", and the flow's name in its own letter case. "" when TOVE_HOME is empty.
    // Nothing is looked up on the disk.
    std::string GetTemplateLocation() const;

private:
    std::string m_name;
    std::string m_type;
};

// The fixed list of flows. Built on first use, never changed, destroyed when the process ends; readable from any
// thread. Pointers into it stay valid as long as it does.
class QUILLUTILS_EXPORT CFlowCollection {
public:
    static CFlowCollection& Instance();

    // The first flow with this name (this type), whatever the letter case; null when there is none.
    const CFlow* GetFlowByName(const std::string& name) const;
    const CFlow* GetFlowByType(const std::string& type) const;

    const std::list<CFlow>& GetList() const { return m_flows; }

    CFlowCollection(const CFlowCollection&) = delete;
    CFlowCollection& operator=(const CFlowCollection&) = delete;

private:
    CFlowCollection();

    std::list<CFlow> m_flows;
};

}  // namespace Quill
