#include "config/flow.h"

#include <gtest/gtest.h>

#include "config/flow_type_info.h"
#include "config/wdir_utils.h"
#include "platform/environment.h"
#include "platform/interface_manager.h"
#include "tests/config/test_support.h"

using Quill::CFlow;
using Quill::CFlowCollection;
using Quill::Test::EnvironmentVariable;

namespace {

using Texts = std::vector<std::string>;

class WorkingDirectories {
public:
    explicit WorkingDirectories(bool answer, Texts dirs) {
        zolt::env::SetWDIRsProvider([=](Texts& out) {
            if (answer) out = dirs;
            return answer;
        });
    }
    ~WorkingDirectories() { zolt::env::SetWDIRsProvider({}); }
};

const Quill::IFlowTypeInfoProvider* RegisteredProvider() {
    Quill::InterfaceFactory* factory = Quill::InterfaceManager::instance().getFactory("IFlowTypeInfoProvider");
    return factory ? dynamic_cast<Quill::IFlowTypeInfoProvider*>(factory->internalCreate()) : nullptr;
}

}  // namespace

TEST(FlowCollection, HasTheFlowsInOrderAndFindsThemInAnyLetterCase) {
    const CFlowCollection& flows = CFlowCollection::Instance();
    std::string list;
    for (const CFlow& flow : flows.GetList())
        list += flow.GetName() + "=" + flow.GetType() + " ";
    EXPECT_EQ(list, "halyard=QS netlist=NETLIST cobalt=Cobalt Brio=Brio ");

    const CFlow* netlist = flows.GetFlowByType("netlist");
    ASSERT_NE(netlist, nullptr);
    EXPECT_EQ(netlist->GetName(), "netlist");
    EXPECT_EQ(flows.GetFlowByName("NETLIST"), netlist);
    EXPECT_EQ(flows.GetFlowByType("qs"), flows.GetFlowByName("Halyard"));
    EXPECT_NE(flows.GetFlowByName("bRIO"), nullptr);
    for (const char* unknown : {"", "halyar", "halyard "}) {
        EXPECT_EQ(flows.GetFlowByName(unknown), nullptr) << unknown;
        EXPECT_EQ(flows.GetFlowByType(unknown), nullptr) << unknown;
    }
    EXPECT_EQ(flows.GetFlowByType("halyard"), nullptr) << "a name is no type";
}

TEST(Flow, TemplateLocationIsTheFoldedInstallationRootWithTheNameInItsOwnCase) {
    const EnvironmentVariable home("TOVE_HOME", "C:\\Tools");
    EXPECT_EQ(CFlow("netlist", "").GetTemplateLocation(), "c:/tools/standard/templates/quillsketch/netlist");
    home.Set("/Opt/T\xC3\x96VE");  // bytes beyond ASCII have no letter case
    EXPECT_EQ(CFlow("Brio", "").GetTemplateLocation(), "/opt/t\xC3\x96ve/standard/templates/quillsketch/Brio");
    home.Set("");
    EXPECT_EQ(CFlow("netlist", "").GetTemplateLocation(), "");
}

TEST(FlowTypeInfo, TheRegisteredProviderDescribesEveryFlowTypeInAnyLetterCase) {
    const Quill::IFlowTypeInfoProvider* provider = RegisteredProvider();
    ASSERT_NE(provider, nullptr) << "the library registers it when it is loaded";
    EXPECT_EQ(RegisteredProvider(), provider) << "always the same one";
    struct Case {
        const char* type;
        const char* name;
        bool central;
        bool symbolLibs;
        const char* settings;
        const char* map;
    };
    const Case cases[] = {
        {"qs", "QS", true, false, "settings.xml", "map.cfg"},
        {"Netlist", "NETLIST", false, true, "nlsettings.xml", "mapnl.cfg"},
        {"cobalt", "Cobalt", true, false, "cbsettings.xml", "map.cfg"},
        {"BRIO", "Brio", true, false, "settings.xml", "map.cfg"},
        {"Brio", "Brio", true, false, "settings.xml", "map.cfg"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        const auto* info = dynamic_cast<const Quill::CFlowTypeInfo*>(provider->getFlowTypeInfo(c.type));
        ASSERT_NE(info, nullptr);
        EXPECT_EQ(info->getName(), c.name);
        EXPECT_EQ(info->getHasCentralLibrary(), c.central);
        EXPECT_EQ(info->getHasSymbolLibs(), c.symbolLibs);
        EXPECT_EQ(info->getSettingsFile(), c.settings);
        EXPECT_EQ(info->getMapCfgFile(), c.map);
    }
    for (const char* unknown : {"", "halyard", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(provider->getFlowTypeInfo(unknown), nullptr);
    }
}

TEST(FlowTypeInfo, AReleaseLeavesTheProviderAndAFactoryDoesNotUnregisterItsSuccessor) {
    auto& manager = Quill::InterfaceManager::instance();
    Quill::InterfaceFactory* atLoad = manager.getFactory("IFlowTypeInfoProvider");
    {
        auto first = std::make_unique<Quill::CFlowTypeInfoProviderFactory>();
        const Quill::CFlowTypeInfoProviderFactory second;
        first.reset();
        EXPECT_EQ(manager.getFactory("IFlowTypeInfoProvider"), &second);
    }
    EXPECT_EQ(manager.getFactory("IFlowTypeInfoProvider"), nullptr);
    manager.registerInterface("IFlowTypeInfoProvider", atLoad);
    Quill::Interface* provider = atLoad->internalCreate();
    atLoad->internalRelease(provider);
    EXPECT_STREQ(provider->interfaceName(), "IFlowTypeInfoProvider");
    EXPECT_EQ(atLoad->internalCreate(), provider);
}

TEST(WorkingDirectories, InstallationAndTemplatesComeLastAndOnce) {
    const EnvironmentVariable home("TOVE_HOME", "");
    const std::string standard = "c:/tools/standard";
    const std::string templates = standard + "/templates/quillsketch/netlist";
    struct Case {
        const char* why;
        const char* home;
        const char* type;
        Texts platform;
        Texts want;
    };
    const Case cases[] = {
        {"templates, then the standard directory", "C:\\Tools", "netlist", {"b", "a"}, {"b", "a", templates, standard}},
        {"an unknown flow has no templates", "C:\\Tools", "none", {"a"}, {"a", standard}},
        {"every earlier mention of the tail goes",
         "C:\\Tools",
         "NETLIST",
         {standard, "a", templates, standard},
         {"a", templates, standard}},
        {"other mentions are kept, repeats too",
         "C:\\Tools",
         "none",
         {"C:/Tools/standard", "c:\\tools\\standard", "a", "a"},
         {"C:/Tools/standard", "c:\\tools\\standard", "a", "a", standard}},
        {"not installed, unknown flow", "", "none", {"", "a"}, {"", "a"}},
        {"not installed: an empty template folder", "", "QS", {"", "a"}, {"a", ""}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        home.Set(c.home);
        const WorkingDirectories platform(true, c.platform);
        Texts dirs = {"old"};
        EXPECT_TRUE(Quill::WdirUtils::GetWDIRs(dirs, c.type));
        EXPECT_EQ(dirs, c.want);
        EXPECT_TRUE(Quill::WdirUtils::GetWDIRs(dirs));
        EXPECT_EQ(dirs, c.platform);
    }
    const WorkingDirectories platform(false, {});
    Texts dirs = {"old"};
    EXPECT_FALSE(Quill::WdirUtils::GetWDIRs(dirs, "QS"));
    EXPECT_EQ(dirs, Texts{"old"});
}
