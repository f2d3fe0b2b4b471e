#include "config/flow.h"

#include <gtest/gtest.h>

#include "config/flow_type_info.h"
#include "config/wdir_utils.h"
#include "platform/environment.h"
#include "platform/interface_manager.h"
#include "tests/support/temporary.h"

using Quill::CFlow;
using Quill::CFlowCollection;
using Texts = std::vector<std::string>;

TEST(FlowCollection, HasTheFlowsInOrderAndFindsThemInAnyLetterCase) {
    const CFlowCollection& flows = CFlowCollection::Instance();
    std::string list;
    for (const CFlow& flow : flows.GetList())
        list += flow.GetName() + "=" + flow.GetType() + " ";
    EXPECT_EQ(list, "halyard=QS netlist=NETLIST cobalt=Cobalt Brio=Brio ");

    EXPECT_EQ(flows.GetFlowByType("qs"), &flows.GetList().front());
    EXPECT_EQ(flows.GetFlowByName("bRIO"), &flows.GetList().back());
    EXPECT_EQ(flows.GetFlowByName("halyar"), nullptr);
    EXPECT_EQ(flows.GetFlowByType("halyard"), nullptr) << "a name is no type";
}

TEST(Flow, TemplateLocationIsTheFoldedInstallationRootWithTheNameInItsOwnCase) {
    const Tests::Variable root("TOVE_HOME", "\\Opt/T\xC3\x96VE");  // bytes beyond ASCII have no letter case
    EXPECT_EQ(CFlow("Brio", "").GetTemplateLocation(), "/opt/t\xC3\x96ve/standard/templates/quillsketch/Brio");
    root.Set("");
    EXPECT_EQ(CFlow("netlist", "").GetTemplateLocation(), "");
}

TEST(FlowTypeInfo, TheFactoryRegisteredAtLoadDescribesEveryFlowTypeInAnyLetterCase) {
    Quill::InterfaceFactory* factory = Quill::InterfaceManager::instance().getFactory("IFlowTypeInfoProvider");
    ASSERT_NE(factory, nullptr);
    Quill::Interface* object = factory->internalCreate();
    factory->internalRelease(object);
    EXPECT_EQ(factory->internalCreate(), object) << "always the same one, which a release leaves alone";
    const auto& provider = dynamic_cast<Quill::IFlowTypeInfoProvider&>(*object);
    std::string described;
    for (const char* const type : {"qs", "Netlist", "cobalt", "BRIO"}) {
        const auto& info = dynamic_cast<const Quill::CFlowTypeInfo&>(*provider.getFlowTypeInfo(type));
        described += info.getName() + " " + info.getSettingsFile() + " " + info.getMapCfgFile() +
                     (info.getHasCentralLibrary() ? " central" : "") + (info.getHasSymbolLibs() ? " symbols\n" : "\n");
    }
    EXPECT_EQ(described,
              "QS settings.xml map.cfg central\n"
              "NETLIST nlsettings.xml mapnl.cfg symbols\n"
              "Cobalt cbsettings.xml map.cfg central\n"
              "Brio settings.xml map.cfg central\n");
    EXPECT_EQ(provider.getFlowTypeInfo("halyard"), nullptr);
    EXPECT_EQ(provider.getFlowTypeInfo(nullptr), nullptr);
}

TEST(FlowTypeInfo, AFactoryDoesNotUnregisterItsSuccessor) {
    auto& manager = Quill::InterfaceManager::instance();
    Quill::InterfaceFactory* atLoad = manager.getFactory("IFlowTypeInfoProvider");
    auto first = std::make_unique<Quill::CFlowTypeInfoProviderFactory>();
    auto second = std::make_unique<Quill::CFlowTypeInfoProviderFactory>();
    first.reset();
    EXPECT_EQ(manager.getFactory("IFlowTypeInfoProvider"), second.get());
    second.reset();
    EXPECT_EQ(manager.getFactory("IFlowTypeInfoProvider"), nullptr);
    manager.registerInterface("IFlowTypeInfoProvider", atLoad);
}

TEST(WorkingDirectories, InstallationAndTemplatesComeLastAndOnce) {
    const std::string std = "c:/tools/standard", templates = std + "/templates/quillsketch/netlist";
    // clang-format off
    const struct { const char *why, *root, *type; Texts platform, want; } cases[] = {
        {"templates, then the standard folder", "C:\\Tools", "netlist", {"b", "a"}, {"b", "a", templates, std}},
        {"an unknown flow has no templates",    "C:\\Tools", "none", {"a"}, {"a", std}},
        {"every earlier mention goes",          "C:\\Tools", "NETLIST", {std, "a", templates, std}, {"a", templates, std}},
        {"other forms and repeats are kept",    "C:\\Tools", "none", {"C:/Tools/standard", "a", "a"},
                                                                     {"C:/Tools/standard", "a", "a", std}},
        {"no installation, unknown flow",       "", "none", {"", "a"}, {"", "a"}},
        {"no installation: empty templates",    "", "QS",   {"", "a"}, {"a", ""}},
    };
    // clang-format on
    Texts dirs;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const Tests::Variable root("TOVE_HOME", c.root);
        zolt::env::SetWDIRsProvider([&](Texts& out) { return out = c.platform, true; });
        EXPECT_TRUE(Quill::WdirUtils::GetWDIRs(dirs, c.type));
        EXPECT_EQ(dirs, c.want);
        EXPECT_TRUE(Quill::WdirUtils::GetWDIRs(dirs));
        EXPECT_EQ(dirs, c.platform);
    }
    zolt::env::SetWDIRsProvider([](Texts&) { return false; });
    dirs = {"old"};
    EXPECT_FALSE(Quill::WdirUtils::GetWDIRs(dirs, "QS"));
    EXPECT_EQ(dirs, Texts{"old"});
    zolt::env::SetWDIRsProvider({});
}
