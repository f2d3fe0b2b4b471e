#include "config/flow_type_info.h"

#include "platform/interface_manager.h"
#include "text/ascii.h"

namespace Quill {
namespace {

struct FlowTypeRow {
    const char* name;
    bool hasCentralLibrary;
    bool hasSymbolLibs;
    const char* settingsFile;
    const char* mapCfgFile;
};

constexpr FlowTypeRow kFlowTypes[] = {
    {"QS", true, false, "settings.xml", "map.cfg"},
    {"NETLIST", false, true, "nlsettings.xml", "mapnl.cfg"},
    {"Cobalt", true, false, "cbsettings.xml", "map.cfg"},
    {"Brio", true, false, "settings.xml", "map.cfg"},
};

std::string TextOrEmpty(const char* text) {
    return text ? text : "";
}

}  // namespace

IFlowTypeInfo::~IFlowTypeInfo() = default;

CFlowTypeInfo::CFlowTypeInfo(const std::string& name, bool hasCentralLibrary, bool hasSymbolLibs,
                             const char* settingsFile, const char* mapCfgFile)
    : m_hasCentralLibrary(hasCentralLibrary),
      m_hasSymbolLibs(hasSymbolLibs),
      m_name(name),
      m_settingsFile(TextOrEmpty(settingsFile)),
      m_mapCfgFile(TextOrEmpty(mapCfgFile)) {}

bool CFlowTypeInfo::getHasCentralLibrary() const {
    return m_hasCentralLibrary;
}
bool CFlowTypeInfo::getHasSymbolLibs() const {
    return m_hasSymbolLibs;
}
std::string CFlowTypeInfo::getSettingsFile() const {
    return m_settingsFile;
}
std::string CFlowTypeInfo::getMapCfgFile() const {
    return m_mapCfgFile;
}

const char* IFlowTypeInfoProvider::interfaceName() const noexcept {
    return InterfaceName;
}
IFlowTypeInfoProvider::~IFlowTypeInfoProvider() = default;

CFlowTypeInfoProvider::CFlowTypeInfoProvider() {
    for (const FlowTypeRow& row : kFlowTypes) {
        // Look-ups bring the type in capital letters, so the key of every row is made the same way.
        m_infos.emplace(Text::ToUpper(row.name),
                        std::make_unique<CFlowTypeInfo>(row.name, row.hasCentralLibrary, row.hasSymbolLibs,
                                                        row.settingsFile, row.mapCfgFile));
    }
}

CFlowTypeInfoProvider::~CFlowTypeInfoProvider() = default;

const IFlowTypeInfo* CFlowTypeInfoProvider::getFlowTypeInfo(const char* type) const {
    const auto found = m_infos.find(Text::ToUpper(TextOrEmpty(type)));
    return found == m_infos.end() ? nullptr : found->second.get();
}

CFlowTypeInfoProviderFactory::CFlowTypeInfoProviderFactory() : m_provider(std::make_unique<CFlowTypeInfoProvider>()) {
    InterfaceManager::instance().registerInterface(IFlowTypeInfoProvider::InterfaceName, this);
}

CFlowTypeInfoProviderFactory::~CFlowTypeInfoProviderFactory() {
    // A factory that an application has put in this one's place stays registered.
    InterfaceManager::instance().unRegisterInterface(IFlowTypeInfoProvider::InterfaceName, this);
}

Interface* CFlowTypeInfoProviderFactory::internalCreate() {
    return m_provider.get();
}

void CFlowTypeInfoProviderFactory::internalRelease(Interface*) {}

ConfigDetail::FlowTypeInfoAnchor::FlowTypeInfoAnchor() {
    static CFlowTypeInfoProviderFactory factory;
}

}  // namespace Quill
