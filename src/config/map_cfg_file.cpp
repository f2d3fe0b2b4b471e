#include "config/map_cfg_file.h"

#include <optional>
#include <string_view>

#include "config/detail/files.h"
#include "config/detail/installation.h"
#include "text/ascii.h"

namespace Quill {
namespace {

constexpr const char* kSchematicFlow = "QS";
constexpr const char* kNetlistFlow = "NETLIST";

// Takes the next quoted text off the front of `rest`; "" with nothing left when no quote opens one.
std::string_view TakeToken(std::string_view& rest) {
    const std::size_t open = rest.find('"');
    if (open == std::string_view::npos) {
        rest = {};
        return {};
    }
    rest.remove_prefix(open + 1);
    const std::string_view token = rest.substr(0, rest.find('"'));
    rest.remove_prefix(token.size() < rest.size() ? token.size() + 1 : token.size());
    return token;
}

}  // namespace

void MapCfgFile::load(const std::string& path) {
    const std::optional<std::string> text = ConfigDetail::ReadWholeFile(path);
    if (!text) return;
    std::string_view rest(*text);
    rest = rest.substr(0, rest.find('\0'));
    while (!rest.empty()) {
        std::string key(TakeToken(rest));
        m_map[std::move(key)] = TakeToken(rest);
    }
}

void MapCfgFile::loadFileFromDefaultLocations(const std::string& fileName) {
    load(ConfigDetail::InstallationRoot() + "\\standard\\" + fileName);
}

void MapCfgFile::loadFromDefaultLocations(const std::string& flowType) {
    loadFileFromDefaultLocations(Text::EqualNoCase(flowType, kNetlistFlow) ? "mapnl.cfg" : "map.cfg");
}

void MapCfgFile::loadFromDefaultLocations() {
    loadFromDefaultLocations(kSchematicFlow);
}

}  // namespace Quill
