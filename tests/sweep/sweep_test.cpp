// Every operation of the library that calls the database, with each of its calls failing in turn.
#include <cctype>
#include <fstream>
#include <iostream>
#include <new>
#include <sstream>

#include <gtest/gtest.h>

#include "designdb/testing/fault_injector.h"
#include "interchange/design_json.h"
#include "tests/support/allocation_counter.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

using Orin::EErrorCode;
using Orin::DesignDb::Testing::FaultInjector;

std::vector<Family> AllOperations() {
    std::vector<Family> all;
    for (const auto& part : {SheetOperations(), PageOperations(), DataOperations(), EventOperations()})
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

bool Lists(const char* names, const std::string& name) {
    const std::vector<std::string> words = Split(names, ' ');
    return std::find(words.begin(), words.end(), name) != words.end();
}

struct Outcome {
    std::string run, look;
};

std::string Run(const Call& call) {
    try {
        return call.run();
    } catch (const Orin::Result& failed) {
        return Said("thrown", failed);
    } catch (const std::bad_alloc&) {
        return "bad_alloc";
    }
}

class Sweep {
public:
    explicit Sweep(const Operation& operation) : m_operation(operation) {
        SweepDesign untouched;
        m_before.look = operation.prepare(untouched).look();
        SweepDesign design;
        const Call call = operation.prepare(design);
        m_old = Json(design);
        {
            const FaultInjector calls;
            m_clean.run = Run(call);
            m_calls = calls.Calls();
        }
        m_clean.look = call.look();
        m_new = Json(design);
    }

    unsigned Calls() const { return m_calls; }
    bool Edits() const { return m_old != m_new; }
    const Outcome& Clean() const { return m_clean; }

    void FailCall(unsigned number, bool persistent, EErrorCode code) const {
        SweepDesign design;
        Call call = m_operation.prepare(design);
        const bool wasFree = design.IsFree();
        Outcome outcome;
        Failures failures{{}, code == EErrorCode::NoValue};
        {
            FaultInjector faults;
            faults.Inject({.operation = "", .call = number, .persistent = persistent, .code = code});
            outcome.run = Run(call);
            failures.calls = faults.Failed();
        }
        SCOPED_TRACE(Said("failed:", failures.calls));
        EXPECT_FALSE(failures.calls.empty());
        // What the database does not take back when it is asked to, its user takes back.
        if (failures.Count("ISnapshot::RollbackTransaction") != 0)
            static_cast<void>(design.snapshot->RollbackTransaction());
        outcome.look = call.look();
        const bool isReported = IsReported(failures);
        Check(design, call, wasFree, outcome, isReported ? m_operation.failure : m_operation.degraded, isReported,
              static_cast<int>(code));
    }

    // False when the call allocates less often.
    bool FailAllocation(unsigned passed) const {
        SweepDesign design;
        Call call = m_operation.prepare(design);
        const bool wasFree = design.IsFree();
        Tests::FailAllocation(passed);
        Outcome outcome{Run(call), ""};
        if (!Tests::AllocationFailed()) return false;
        outcome.look = call.look();
        constexpr int OutOfMemory = static_cast<int>(EErrorCode::OutOfMemory);
        // Want of memory may be thrown by everything; what can do without the memory does.
        const bool isThrown = outcome.run == "bad_alloc";
        const bool isClean = outcome.run == m_clean.run && outcome.look == m_clean.look;
        const bool isReported = isThrown || (!isClean && Fits(m_operation.failure, outcome, OutOfMemory));
        const char* const wanted = isThrown ? "bad_alloc : ~" : isReported ? m_operation.failure : m_operation.degraded;
        Check(design, call, wasFree, outcome, isClean ? "=" : wanted, isReported, OutOfMemory);
        return true;
    }

private:
    static std::string Json(const SweepDesign& design) {
        std::string text;
        Must(Interchange::WriteDesignJson(design.snapshot, "sweep", text));
        return text;
    }

    static bool HalfFits(std::string pattern, const std::string& half, const std::string& before,
                         const std::string& clean, int code) {
        if (pattern == "*") return true;
        if (pattern == "=") return half == clean;
        if (pattern == "~") return half == before;
        if (pattern == "<") {
            std::vector<std::string> have = Split(half, ','), all = Split(clean, ',');
            std::sort(have.begin(), have.end());
            std::sort(all.begin(), all.end());
            return std::includes(all.begin(), all.end(), have.begin(), have.end());
        }
        if (const std::size_t mark = pattern.find('#'); mark != std::string::npos)
            pattern.replace(mark, 1, std::to_string(code));
        return half == pattern;
    }

    bool Fits(const char* patterns, const Outcome& outcome, int code) const {
        const std::vector<std::string> all = Split(patterns, '|');
        return std::any_of(all.begin(), all.end(), [&](const std::string& pattern) {
            const std::size_t colon = pattern.find(" : ");
            const std::string look = colon != std::string::npos ? pattern.substr(colon + 3) : "=";
            return HalfFits(pattern.substr(0, colon), outcome.run, m_before.run, m_clean.run, code) &&
                   HalfFits(look, outcome.look, m_before.look, m_clean.look, code);
        });
    }

    bool IsReported(const Failures& failures) const {
        if (m_operation.isReported) return m_operation.isReported(failures);
        return std::any_of(failures.calls.begin(), failures.calls.end(), [&](const std::string& call) {
            const bool isJudged = Lists(m_operation.judges, call) || std::string_view(m_operation.judges) == "*";
            return Lists(m_operation.reports, call) || (isJudged && !failures.absent);
        });
    }

    void Check(const SweepDesign& design, Call& call, bool wasFree, const Outcome& outcome, const char* wanted,
               bool isReported, int code) const {
        EXPECT_TRUE(Fits(wanted, outcome, code))
            << outcome.run << " : " << outcome.look << "\nwhere it should be " << wanted << "\nfor " << m_clean.run
            << " : " << m_clean.look;
        const std::string stored = Json(design);
        EXPECT_TRUE(stored == m_old || (!isReported && stored == m_new)) << "the design is neither old nor new";
        EXPECT_TRUE(!isReported || !wasFree || design.IsFree()) << "a lock or transaction is held after the failure";

        const std::string again = m_operation.once ? m_clean.run : Run(call);
        EXPECT_FALSE(again.starts_with("thrown") || again == "bad_alloc") << again << " from the next call";
        if (!m_operation.once && (isReported || (!Edits() && !m_operation.remembers))) {
            EXPECT_EQ(again + " : " + call.look(), m_clean.run + " : " + m_clean.look) << "from the next call";
            EXPECT_EQ(Json(design), m_new);
        }
        call = {};
        EXPECT_TRUE(design.IsFree()) << "a lock or transaction is held at the end";
    }

    const Operation& m_operation;
    Outcome m_before, m_clean;
    std::string m_old, m_new;
    unsigned m_calls = 0;
};

TEST(Sweep, EveryOperationKeepsItsPromisesWhicheverCallOfTheDatabaseFails) {
    unsigned pairs = 0, runs = 0;
    for (const Family& family : AllOperations())
        for (const Operation& operation : family.operations) {
            SCOPED_TRACE(std::string(family.prefix) + operation.names);
            const Sweep sweep(operation);
            const bool promises = *operation.reports != 0 || *operation.judges != 0 || operation.isReported ||
                                  std::string_view(operation.degraded) != "=";
            EXPECT_TRUE(sweep.Calls() != 0 || !promises) << "it calls nothing that could fail";
            if (getenv("SHOW")) std::cout << family.prefix << operation.names << " " << sweep.Calls() << " " << sweep.Clean().run << " : " << sweep.Clean().look << std::endl;
            pairs += sweep.Calls();
            for (unsigned call = 1; call <= sweep.Calls(); ++call)
                for (const bool persistent : {false, true})
                    for (const EErrorCode code : {EErrorCode::NoValue, EErrorCode::StoreFailed}) {
                        SCOPED_TRACE(Said("call", call, persistent ? "and on" : "once", static_cast<int>(code)));
                        sweep.FailCall(call, persistent, code);
                        ++runs;
                    }
        }
    std::cout << pairs << " pairs of operation and failing call, " << runs << " runs\n";
}

TEST(Sweep, AnEditIsMadeWholeOrNotAtAllWhicheverAllocationFails) {
    unsigned runs = 0;
    for (const Family& family : AllOperations())
        for (const Operation& operation : family.operations) {
            SCOPED_TRACE(std::string(family.prefix) + operation.names);
            const Sweep sweep(operation);
            if (!sweep.Edits() || operation.once) continue;
            unsigned allocation = 0;
            while ([&] {
                SCOPED_TRACE(Said("allocation", allocation));
                return sweep.FailAllocation(allocation);
            }())
                ++allocation;
            runs += allocation;
        }
    std::cout << runs << " pairs of edit and failing allocation\n";
}

}  // namespace
}  // namespace Quill::Sweep
