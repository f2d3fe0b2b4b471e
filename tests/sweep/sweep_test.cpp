// Every operation of the library that calls the database, with each of its calls failing in turn.
#include <iostream>
#include <new>
#include <set>

#include "designdb/testing/fault_injector.h"
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

std::string Json(const SweepDesign& design) {
    std::string text;
    Must(Interchange::WriteDesignJson(design.snapshot, "sweep", text));
    return text;
}

std::string Run(const Call& call) {
    try {
        return call.run();
    } catch (const Orin::Result& failed) {
        return Said(std::string("thrown"), failed);
    } catch (const std::bad_alloc&) {
        return "bad_alloc";
    }
}

struct Outcome {
    std::string run, look;
};

class Sweep {
public:
    explicit Sweep(const Operation& operation) : m_operation(operation) {
        SweepDesign untouched, design;
        m_before.look = operation.prepare(untouched).look();
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

    void FailCall(unsigned number, bool persistent, EErrorCode code) const {
        SweepDesign design;
        Call call = m_operation.prepare(design);
        const bool wasFree = design.IsFree();
        std::string run;
        std::vector<std::string> failed;
        {
            FaultInjector faults;
            faults.Inject({.operation = "", .call = number, .persistent = persistent, .code = code});
            run = Run(call);
            failed = faults.Failed();
        }
        SCOPED_TRACE("failed: " + Said(failed));
        EXPECT_FALSE(failed.empty());
        // What the database does not take back when it is asked to, its user takes back.
        if (std::count(failed.begin(), failed.end(), "ISnapshot::RollbackTransaction") != 0)
            static_cast<void>(design.snapshot->RollbackTransaction());
        const bool isReported = IsReported(failed, code);
        Check(design, call, wasFree, {run, call.look()}, isReported ? m_operation.failure : m_operation.degraded,
              isReported, code);
    }

    // False when the call allocates less often. Want of memory may be thrown by everything; what can do without the
    // memory does.
    bool FailAllocation(unsigned passed) const {
        SweepDesign design;
        Call call = m_operation.prepare(design);
        const bool wasFree = design.IsFree();
        Tests::FailAllocation(passed);
        const std::string run = Run(call);
        if (!Tests::AllocationFailed()) return false;
        const Outcome outcome{run, call.look()};
        const bool isThrown = run == "bad_alloc", isClean = Fits("=", outcome, EErrorCode::OutOfMemory);
        const bool isPassedOver = isClean || Fits(m_operation.degraded, outcome, EErrorCode::OutOfMemory);
        const bool isReported = isThrown || !isPassedOver;
        const char* const wanted = isThrown     ? (Edits() ? "bad_alloc : ~" : "bad_alloc : *")
                                   : isReported ? m_operation.failure
                                                : m_operation.degraded;
        Check(design, call, wasFree, outcome, isClean ? "=" : wanted, isReported, EErrorCode::OutOfMemory);
        return true;
    }

private:
    static bool HalfFits(const std::string& pattern, const std::string& half, const std::string& before,
                         const std::string& clean) {
        if (pattern == "=") return half == clean;
        if (pattern == "^") return clean.starts_with(half);
        if (pattern == "~") return half == before;
        if (pattern == "<") {
            std::vector<std::string> some = Split(half, ' '), all = Split(clean, ' ');
            std::sort(some.begin(), some.end());
            std::sort(all.begin(), all.end());
            return std::includes(all.begin(), all.end(), some.begin(), some.end());
        }
        return pattern == "*" || half == pattern;
    }

    bool Fits(std::string patterns, const Outcome& outcome, EErrorCode code) const {
        for (std::size_t mark; (mark = patterns.find('#')) != std::string::npos;)
            patterns.replace(mark, 1, Word(code));
        const std::vector<std::string> all = Split(patterns, '|');
        return std::any_of(all.begin(), all.end(), [&](const std::string& pattern) {
            const std::size_t colon = pattern.find(" : ");
            const std::string look = colon != std::string::npos ? pattern.substr(colon + 3) : "=";
            return HalfFits(pattern.substr(0, colon), outcome.run, m_before.run, m_clean.run) &&
                   HalfFits(look, outcome.look, m_before.look, m_clean.look);
        });
    }

    bool IsReported(const std::vector<std::string>& failed, EErrorCode code) const {
        if (m_operation.isReported) {
            std::map<std::string, int> counts;
            for (const std::string& call : failed)
                ++counts[call];
            return m_operation.isReported(counts);
        }
        const std::vector<std::string> reports = Split(m_operation.reports, ' ');
        return std::any_of(reports.begin(), reports.end(), [&](const std::string& report) {
            const bool isJudged = report[0] == '?';
            const std::string name = report.substr(isJudged ? 1 : 0);
            return !(isJudged && code == EErrorCode::NoValue) &&
                   (name == "*" || std::count(failed.begin(), failed.end(), name) != 0);
        });
    }

    void Check(const SweepDesign& design, Call& call, bool wasFree, const Outcome& outcome, const char* wanted,
               bool isReported, EErrorCode code) const {
        EXPECT_TRUE(Fits(wanted, outcome, code))
            << "It says " << outcome.run << " : " << outcome.look << "\nin place of " << wanted
            << "\nand without a failure " << m_clean.run << " : " << m_clean.look;
        const std::string stored = Json(design);
        EXPECT_TRUE(stored == m_old || (!isReported && stored == m_new)) << "the design is neither old nor new";
        EXPECT_TRUE(!isReported || !wasFree || design.IsFree()) << "a lock or transaction is held after the failure";
        if (!m_operation.once) {
            const std::string again = Run(call);
            EXPECT_FALSE(again.starts_with("thrown") || again == "bad_alloc") << again << " from the next call";
            if (isReported) {
                EXPECT_EQ(again + " : " + call.look(), m_clean.run + " : " + m_clean.look) << "from the next call";
                EXPECT_EQ(Json(design), m_new);
            }
        }
        call = {};
        EXPECT_TRUE(design.IsFree()) << "a lock or transaction is held at the end";
    }

    const Operation& m_operation;
    Outcome m_before, m_clean;
    std::string m_old, m_new;
    unsigned m_calls = 0;
};

// What the library exports, as `nm -DC` lists it: for each name the parameters of its overloads. What is inlined at its
// users is left out, and so are the insides of classes.
std::map<std::string, std::set<std::string>> ExportedFunctions() {
    std::map<std::string, std::set<std::string>> found;
    std::ifstream symbols(QUILL_EXPORTED_SYMBOLS);
    for (std::string line; std::getline(symbols, line);) {
        // "0000000000001234 T Quill::Class::Operation[abi:cxx11](int, Orin::Index) const"
        const char kind = line[line.find(' ') + 1];
        std::string name = line.substr(line.find(' ') + 3);
        if ((kind != 'T' && kind != 'W') || name.find("thunk") != std::string::npos) continue;
        for (const std::string_view noise : {"[abi:cxx11]", " "})
            for (std::size_t at; (at = name.find(noise)) != std::string::npos;)
                name.erase(at, noise.size());
        if (kind == 'W' && name.find("IdGenerator<") == std::string::npos) continue;
        const std::size_t end = name.find('(');
        if (end == std::string::npos || name.find("Impl::") < end) continue;
        const std::string parameters = name.substr(end);
        name.resize(end);
        for (std::size_t at; (at = name.find("<Quill::Utils::")) != std::string::npos;)
            name.erase(at + 1, std::string_view("Quill::Utils::").size());
        if (name.starts_with("Quill::") || name.starts_with("NQuillUtils::")) found[name].insert(parameters);
    }
    return found;
}

// The database reaches the library by what is given to it: a class one of whose operations takes something of the
// database's may call it in all of them. Observers and the records of their callbacks take indexes only and ask nobody.
TEST(Sweep, HasARowForEveryOperationThatMayCallTheDatabase) {
    const auto classOf = [](const std::string& name) { return name.substr(0, name.rfind("::")); };
    const std::set<std::string> asksNobody = {"NQuillUtils::NEvents::EventObserverEx",
                                              "NQuillUtils::NEvents::EventObserverNavigator",
                                              "NQuillUtils::NEvents::ORINNOTIFICATIONDATA"};
    std::map<std::string, std::size_t> rows;
    for (const Family& family : AllOperations())
        for (const Operation& operation : family.operations)
            for (const std::string& name : Split(operation.names, ' '))
                ++rows[family.prefix + name];
    const std::map<std::string, std::set<std::string>> exported = ExportedFunctions();
    std::set<std::string> classes;
    for (const auto& [name, overloads] : exported)
        for (const std::string& parameters : overloads)
            if (parameters.find("Orin::") != std::string::npos) classes.insert(classOf(name));
    for (const auto& [name, overloads] : exported) {
        const bool asks = classes.count(classOf(name)) != 0 && asksNobody.count(classOf(name)) == 0;
        EXPECT_TRUE(!asks || rows[name] >= overloads.size()) << name << " lacks a row in tests/sweep";
    }
    for (const auto& [name, count] : rows)
        EXPECT_TRUE(count == 0 || exported.count(name) != 0) << name << " is not exported any more";
}

class EveryOperation : public testing::TestWithParam<std::vector<Family> (*)()> {
protected:
    // Hands each operation to `work`, which gives the number of failures that it has tried.
    template <class Work>
    static void ForEach(const char* failures, const Work& work) {
        unsigned pairs = 0;
        for (const Family& family : GetParam()())
            for (const Operation& operation : family.operations) {
                SCOPED_TRACE(std::string(family.prefix) + operation.names);
                pairs += work(operation, Sweep(operation));
            }
        std::cout << pairs << " pairs of operation and failing " << failures << '\n';
    }
};

// Each pair is tried with two codes, the call failing once and from then on.
TEST_P(EveryOperation, KeepsItsPromisesWhicheverCallOfTheDatabaseFails) {
    ForEach("call", [](const Operation& operation, const Sweep& sweep) {
        const bool promises = *operation.reports != 0 || std::string_view(operation.degraded) != "=";
        EXPECT_TRUE(sweep.Calls() != 0 || !promises) << "it calls nothing that could fail";
        for (unsigned call = 1; call <= sweep.Calls(); ++call)
            for (const bool persistent : {false, true})
                for (const EErrorCode code : {EErrorCode::NoValue, EErrorCode::StoreFailed}) {
                    SCOPED_TRACE("call " + Said(call, persistent, code));
                    sweep.FailCall(call, persistent, code);
                }
        return sweep.Calls();
    });
}

TEST_P(EveryOperation, KeepsItsPromisesWhicheverAllocationFails) {
    ForEach("allocation", [](const Operation& operation, const Sweep& sweep) {
        for (unsigned passed = 0; !operation.once; ++passed) {
            SCOPED_TRACE("allocation " + Word(passed));
            if (!sweep.FailAllocation(passed)) return passed;
        }
        return 0U;
    });
}

INSTANTIATE_TEST_SUITE_P(Sheets, EveryOperation, testing::Values(SheetOperations));
INSTANTIATE_TEST_SUITE_P(Pages, EveryOperation, testing::Values(PageOperations));
INSTANTIATE_TEST_SUITE_P(Data, EveryOperation, testing::Values(DataOperations));
INSTANTIATE_TEST_SUITE_P(Events, EveryOperation, testing::Values(EventOperations));

}  // namespace
}  // namespace Quill::Sweep
