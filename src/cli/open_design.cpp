#include "cli/open_design.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "cli/command.h"
#include "cli/stored_design.h"
#include "interchange/design_json.h"

namespace Quill::Cli {

namespace {

[[noreturn]] void CannotRead(const std::string& path) {
    const int code = errno != 0 ? errno : EIO;
    throw CommandError(path + ": " + std::generic_category().message(code));
}

std::string ReadFile(const std::string& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) CannotRead(path);
    std::string text;
    std::string buffer(1 << 16, '\0');
    while (file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || file.gcount() > 0)
        text.append(buffer, 0, static_cast<std::size_t>(file.gcount()));
    if (file.bad()) CannotRead(path);
    return text;
}

}  // namespace

OpenDesign ReadDesign(const std::string& path) {
    OpenDesign design;
    Orin::String name;
    const auto need = [&path](const Orin::Result& result) {
        if (!result) throw CommandError(path + ": " + static_cast<const char*>(result.GetDescription()));
    };
    const bool isStored = ReadStoredDesign(path, design.database, name);
    if (!isStored) need(Orin::DesignDb::Database::Create(design.database, Orin::String(path.c_str())));
    design.client = design.database.Connect("quill");
    need(design.client->GetSnapshotByName(design.snapshot, Orin::DesignDb::WorkingSnapshot));
    if (!isStored)
        if (const auto fault = Interchange::ReadDesignJson(ReadFile(path), design.snapshot, name))
            throw CommandError(path + ": " + fault->Message());
    design.name = name.View();
    return design;
}

Orin::ContainerT<const Orin::IConfig> FindConfig(const OpenDesign& design, const std::string& name) {
    Orin::ContainerT<const Orin::IConfig> config;
    const std::string& wanted = name.empty() ? design.name : name;
    if (design.snapshot->GetDefaultConfig(config, Orin::String(std::string_view(wanted)))) return config;
    if (!name.empty()) throw CommandError("The design has no configuration called " + name);
    Orin::IteratorT<const Orin::IConfig> configs;
    if (!design.snapshot->GetIterConfigs(configs) || !configs) throw CommandError("The design has no configuration");
    const Orin::ContainerT<const Orin::IConfig>& first = configs;
    return first;
}

}  // namespace Quill::Cli
