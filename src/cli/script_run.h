// Does what an edit script says.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "cli/edit_script.h"
#include "designdb/editor.h"
#include "designdb/inspector.h"

namespace Quill::Cli {

// The commands of scripts.
std::span<const ScriptVerb> ScriptVerbs();

// Carries out one script on one snapshot, on one thread. Locks that are left end with it.
class ScriptRun {
public:
    // `file` is the script's name for messages. Throws a CommandError when the snapshot cannot be edited.
    ScriptRun(std::string file, const Orin::ContainerT<const Orin::ISnapshot>& snapshot);

    // Throws a ScriptError for the first step that fails, after its transaction was taken back.
    void Execute(const std::vector<ScriptStep>& steps);

    // The line that was begun last; 0 at first. For the thread of Execute.
    std::size_t Line() const noexcept { return m_line; }

    // ---- For the commands ----

    const Orin::ISnapshot& Snapshot() const { return *m_snapshot; }
    Orin::DesignDb::Editor& Editor() { return m_editor; }
    const Orin::DesignDb::Inspector& Inspector() const { return m_inspector; }

    // The object's index; empty for the design as a whole. The other form is empty for a step without that object.
    // Throws a ScriptError when there is no such object, or several.
    Orin::Index Find(const ScriptObject& object) const;
    Orin::Index Find(const ScriptStep& step, std::size_t position) const;

    [[noreturn]] void Fail(const std::string& reason) const;
    // Fails with the names of the step's objects when the result is a failure.
    void Require(const Orin::Result& result) const;

    void Hold(const Orin::RefPtr<Orin::LockToken>& lock) { m_locks.push_back(lock); }
    void ReleaseLocks() { m_locks.clear(); }

    // What the step's variable is to stand for.
    void Give(const Orin::Index& object) {
        if (!m_step->variable.empty()) m_variables[m_step->variable] = object;
    }

private:
    const std::string m_file;
    const Orin::ContainerT<const Orin::ISnapshot> m_snapshot;
    Orin::DesignDb::Editor m_editor;
    Orin::DesignDb::Inspector m_inspector;
    std::map<std::string, Orin::Index> m_variables;
    std::vector<Orin::RefPtr<Orin::LockToken>> m_locks;
    const ScriptStep* m_step = nullptr;
    std::size_t m_line = 0;
};

}  // namespace Quill::Cli
