#include "config/symbol_library_finder.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>

#include "config/detail/files.h"
#include "text/ascii.h"

namespace Quill {
namespace {

using zolt::filesystem::directory_iterator;
using zolt::filesystem::path;

constexpr std::size_t kTableRecordSize = 30;
constexpr std::string_view kRecordNameEnd(" \0", 2);

bool IsSymbolCharacter(char c) {
    constexpr std::string_view marks = "_$&#@!%'`()+-";
    return Text::IsLetter(c) || Text::IsDigit(c) || marks.find(c) != std::string_view::npos;
}

bool IsSymbolName(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot + 1 == name.size()) return false;
    const std::string_view stem = name.substr(0, dot);
    const std::string_view number = name.substr(dot + 1);
    return std::all_of(stem.begin(), stem.end(), IsSymbolCharacter) &&
           std::all_of(number.begin(), number.end(), Text::IsDigit);
}

// The folder of libraries of the central library that `file` belongs to; empty when the file's own folder is missing.
path SymbolLibsBeside(const path& file) {
    const path folder = file.parent_path();
    return folder.is_dir() ? folder / "SymbolLibs" : path();
}

// Calls `visit` with each candidate name until it returns false.
template <class Visitor>
void ForEachFile(const path& folder, Visitor visit) {
    for (directory_iterator entry(folder); entry != directory_iterator(); ++entry) {
        const std::string name = entry->filename().string();
        // Asking the disk what an entry is costs most, so it comes last.
        if (name.empty() || name.front() == '.' || !IsSymbolName(name) || entry->is_dir()) continue;
        if (!visit(name)) return;
    }
}

template <class Visitor>
void ForEachRecord(std::string_view table, Visitor visit) {
    for (; table.size() >= kTableRecordSize; table.remove_prefix(kTableRecordSize)) {
        const std::string_view record = table.substr(0, kTableRecordSize);
        const std::string_view name = record.substr(0, record.find_first_of(kRecordNameEnd));
        if (IsSymbolName(name) && !visit(name)) return;
    }
}

}  // namespace

CSymbolLibsFinder::CSymbolLibsData::CSymbolLibsData(std::string path, std::string alias, bool mega)
    : m_path(std::move(path)), m_alias(std::move(alias)), m_mega(mega) {}

CSymbolLibsFinder::CSymbolLibsData::~CSymbolLibsData() = default;

bool CSymbolLibsFinder::CSymbolLibsData::ContainsPath(const std::string&) const {
    return false;
}

std::string CSymbolLibsFinder::CSymbolLibsData::GetRelativePath(const std::string&) const {
    return {};
}

CSymbolLibsFinder::CLibCfgParser::CLibCfgParser(const path& file) {
    const std::optional<std::string> text = ConfigDetail::ReadWholeFile(file.string());
    if (!text) return;
    std::string_view rest(*text);
    while (!rest.empty()) {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const std::string_view key = line.substr(0, line.find(' '));
        m_pairs.emplace_back(key, line.substr(std::min(key.size() + 1, line.size())));
    }
}

CSymbolLibsFinder::CSymbolLibsFinder() = default;

CSymbolLibsFinder::~CSymbolLibsFinder() {
    ClearData();
}

void CSymbolLibsFinder::ClearData() {
    for (const CSymbolLibsData* item : m_items)
        delete item;
    m_items.clear();
}

void CSymbolLibsFinder::SearchForLibraries(const std::string& file) {
    SearchCLForLibraries(file, false, false);
}

void CSymbolLibsFinder::SearchCLForLibraries(const std::string& file, bool noAlias, bool noMegaCheck) {
    path libs = SymbolLibsBeside(file);
    if (!libs.is_dir()) libs = SymbolLibsBeside(ConfigDetail::WithForwardSlashes(file));
    ClearData();  // not before `file` is read, which may be a text of an item
    if (!libs.is_dir()) return;
    for (directory_iterator entry(libs); entry != directory_iterator(); ++entry) {
        if (entry->is_dir()) AddLibraryPath(libs, entry->filename().string(), noAlias, noMegaCheck);
    }
}

void CSymbolLibsFinder::AddLibraryPath(const path& base, const std::string& name, bool noAlias, bool noMegaCheck) {
    const path folder = base / name;
    const bool mega = !noMegaCheck && PathContainsMega(folder);
    std::string alias;
    if (!noAlias) {
        const CLibCfgParser config(folder / "lib.cfg");
        const auto& pairs = config.GetPairs();
        const auto found = std::find_if(pairs.begin(), pairs.end(), [](const auto& p) { return p.first == "alias"; });
        if (found != pairs.end()) alias = found->second;
    }
    if (alias.empty()) alias = name;
    auto item = std::make_unique<CSymbolLibsData>(folder.string(), std::move(alias), mega);
    m_items.push_back(item.get());
    static_cast<void>(item.release());  // the list owns it, now that it has found room there
}

bool CSymbolLibsFinder::PathContainsMega(const path& folder) const {
    return (folder / "sym.tbl").is_file() && (folder / "sym.lib").is_file();
}

void CSymbolFinder::SearchSymbols(const char* folder, bool fromTable) {
    SearchSymbols(folder, fromTable, false);
}

void CSymbolFinder::SearchSymbols(const char* folder, bool fromTable, bool firstOnly) {
    const auto add = [&](std::string_view name) {
        m_symbols.emplace_back(name);
        return !firstOnly;
    };
    const std::string library(folder ? folder : "");  // copied before the list is cleared, whose text it may be
    m_symbols.clear();
    if (!folder) return;
    if (fromTable) {
        ForEachRecord(ConfigDetail::ReadWholeFile(library + "\\sym.tbl").value_or(std::string()), add);
    } else {
        ForEachFile(path(ConfigDetail::DirectoryAt(library + "\\sym\\")), add);
    }
}

}  // namespace Quill
