// The symbol libraries of a central library, and the symbols of one of them.
#pragma once

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "platform/filesystem.h"
#include "quillutils_export.h"

namespace Quill {

// Finds the symbol libraries of a central library: the folders in its folder "SymbolLibs". Owns what it has found; one
// thread at a time. Files are only read, and one that cannot be read counts as missing.
class QUILLUTILS_EXPORT CSymbolLibsFinder {
public:
    // One library that was found.
    class QUILLUTILS_EXPORT CSymbolLibsData {
    public:
        CSymbolLibsData(std::string path, std::string alias, bool mega);
        virtual ~CSymbolLibsData();

        const std::string& GetPath() const noexcept { return m_path; }
        const std::string& GetAlias() const noexcept { return m_alias; }

        // Whether the library keeps its symbols in a table.
        bool IsMega() const noexcept { return m_mega; }

        // A symbol library lends no paths to others: always false, always "". Callers that treat all kinds of libraries
        // alike ask every one of them.
        bool ContainsPath(const std::string& path) const;
        std::string GetRelativePath(const std::string& path) const;

    private:
        std::string m_path;
        std::string m_alias;
        bool m_mega;
    };

    // The lines of one "lib.cfg" file in file order, as key and value: what stands before the first blank of a line,
    // and everything after that blank. A line without a blank is a key with an empty value. One carriage return at the
    // end of a line is not part of it. A missing file has no lines.
    class QUILLUTILS_EXPORT CLibCfgParser {
    public:
        explicit CLibCfgParser(const zolt::filesystem::path& file);

        const std::vector<std::pair<std::string, std::string>>& GetPairs() const noexcept { return m_pairs; }

    private:
        std::vector<std::pair<std::string, std::string>> m_pairs;
    };

    CSymbolLibsFinder();
    virtual ~CSymbolLibsFinder();
    CSymbolLibsFinder(const CSymbolLibsFinder&) = delete;
    CSymbolLibsFinder& operator=(const CSymbolLibsFinder&) = delete;

    // Forgets what was found before and looks in "SymbolLibs" beside `file`, the central library's own file, which
    // itself need not exist. The alias of a library is the value of the first line "alias" of its "lib.cfg", or, when
    // that is missing or empty, or with `noAlias`, its folder's name. A library is mega when it has both "sym.tbl" and
    // "sym.lib"; with `noMegaCheck` none is. Libraries come sorted by folder name, as a directory_iterator sorts.
    void SearchCLForLibraries(const std::string& file, bool noAlias, bool noMegaCheck);
    void SearchForLibraries(const std::string& file);

    // Deletes what was found.
    void ClearData();

    // What was found, in order. The finder owns the items; they live until the next search, ClearData or its end.
    const std::vector<CSymbolLibsData*>& GetItems() const noexcept { return m_items; }

private:
    void AddLibraryPath(const zolt::filesystem::path& base, const std::string& name, bool noAlias, bool noMegaCheck);
    bool PathContainsMega(const zolt::filesystem::path& folder) const;

    std::vector<CSymbolLibsData*> m_items;
};

// Lists the symbols of one library. One thread at a time.
//
// A symbol's name ends in "." and one or more digits; before that "." it has only ASCII letters, digits and the
// characters _$&#@!%'`()+- (hence no second "."). Whatever else the library holds is passed over.
class QUILLUTILS_EXPORT CSymbolFinder {
public:
    // Replaces the list by the symbols of the library in `folder`; by none when there is no such library or `folder` is
    // null. With `firstOnly` the list ends after the first.
    //
    // Without `fromTable` the symbols are the files in the folder "sym" whose names do not begin with ".", sorted as a
    // directory_iterator sorts. With it they are the records of the file "sym.tbl" in record order, 30 bytes each; a
    // name ends at the first blank or NUL of its record, and a rest of fewer bytes is no record.
    void SearchSymbols(const char* folder, bool fromTable);
    void SearchSymbols(const char* folder, bool fromTable, bool firstOnly);

    const std::list<std::string>& GetSymbols() const noexcept { return m_symbols; }

private:
    std::list<std::string> m_symbols;
};

}  // namespace Quill
