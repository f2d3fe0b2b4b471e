// What holds for a design in each flow: its settings file, its map file, its kind of library.
//
// The descriptions are reached through the interface manager, under IFlowTypeInfoProvider::InterfaceName:
//
//     Quill::InterfaceFactory* factory =
//         Quill::InterfaceManager::instance().getFactory(Quill::IFlowTypeInfoProvider::InterfaceName);
//     auto* provider = static_cast<Quill::IFlowTypeInfoProvider*>(factory->internalCreate());
//     const Quill::IFlowTypeInfo* info = provider->getFlowTypeInfo("netlist");
//     ...
//     factory->internalRelease(provider);
//
// The factory is there from the loading of the library (with a static library: from the first static initialiser of a
// translation unit that includes this header) until the process ends or the library is unloaded.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/interface.h"
#include "quillutils_export.h"

namespace Quill {

// The description of one flow type. Owned by its provider; read-only and readable from any thread.
class QUILLUTILS_EXPORT IFlowTypeInfo {
public:
    virtual bool getHasCentralLibrary() const = 0;
    virtual bool getHasSymbolLibs() const = 0;
    // File names without a folder.
    virtual std::string getSettingsFile() const = 0;
    virtual std::string getMapCfgFile() const = 0;
    virtual ~IFlowTypeInfo();

protected:
    IFlowTypeInfo() = default;
    IFlowTypeInfo(const IFlowTypeInfo&) = default;
    IFlowTypeInfo& operator=(const IFlowTypeInfo&) = default;
};

// The description of one flow type. A value that never changes; readable from any thread.
class QUILLUTILS_EXPORT CFlowTypeInfo : public IFlowTypeInfo {
public:
    // Copies the texts; a null file name counts as "".
    CFlowTypeInfo(const std::string& name, bool hasCentralLibrary, bool hasSymbolLibs, const char* settingsFile,
                  const char* mapCfgFile);

    bool getHasCentralLibrary() const override;
    bool getHasSymbolLibs() const override;
    std::string getSettingsFile() const override;
    std::string getMapCfgFile() const override;

    const std::string& getName() const noexcept { return m_name; }

private:
    bool m_hasCentralLibrary;
    bool m_hasSymbolLibs;
    std::string m_name;
    std::string m_settingsFile;
    std::string m_mapCfgFile;
};

// Knows the flow types; the service that the interface manager gives out under InterfaceName.
class QUILLUTILS_EXPORT IFlowTypeInfoProvider : public Interface {
public:
    static constexpr const char* InterfaceName = "IFlowTypeInfoProvider";

    const char* interfaceName() const noexcept override;
    ~IFlowTypeInfoProvider() override;

    // The description of a flow type, named in any letter case; null for an unknown type and for a null name. It
    // belongs to the provider and lives as long.
    virtual const IFlowTypeInfo* getFlowTypeInfo(const char* type) const = 0;
};

// The provider of the fixed flow types. Never changed after construction; readable from any thread.
class QUILLUTILS_EXPORT CFlowTypeInfoProvider : public IFlowTypeInfoProvider {
public:
    CFlowTypeInfoProvider();
    ~CFlowTypeInfoProvider() override;

    const IFlowTypeInfo* getFlowTypeInfo(const char* type) const override;

private:
    std::map<std::string, std::unique_ptr<CFlowTypeInfo>> m_infos;  // by flow type in capital letters
};

// Publishes one provider under IFlowTypeInfoProvider::InterfaceName from its construction to its destruction. Owns the
// provider: internalCreate gives the same one every time and internalRelease leaves it alone.
class QUILLUTILS_EXPORT CFlowTypeInfoProviderFactory : public InterfaceFactory {
public:
    CFlowTypeInfoProviderFactory();
    ~CFlowTypeInfoProviderFactory() override;

    Interface* internalCreate() override;
    void internalRelease(Interface* object) override;

private:
    std::unique_ptr<CFlowTypeInfoProvider> m_provider;
};

namespace ConfigDetail {

// Makes the process's factory when it does not exist yet.
class QUILLUTILS_EXPORT FlowTypeInfoAnchor {
public:
    FlowTypeInfoAnchor();
};

// A static library gives up only the members that something refers to, and nothing refers to an object that registers
// itself. So everyone who can use the service, which takes this header, refers to it here. It also sets the order:
// every translation unit makes sure of the factory before its own static objects below this line, which hence find it
// as long as they live.
static const FlowTypeInfoAnchor flowTypeInfoAnchor;

}  // namespace ConfigDetail

}  // namespace Quill
