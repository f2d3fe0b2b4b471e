// What the sweep knows of an operation of the library: how it is called, and what it promises when the database fails.
#pragma once

#include <algorithm>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/sweep/sweep_design.h"

namespace Quill::Sweep {

// ---- What a call says, as text: one word for each value, a "," behind each element of a list ----

inline std::string Word(bool value) {
    return value ? "true" : "false";
}
inline std::string Word(const std::string& value) {
    return value;
}
inline std::string Word(const char* value) {
    return value;
}
inline std::string Word(int value) {
    return std::to_string(value);
}
inline std::string Word(unsigned value) {
    return std::to_string(value);
}
inline std::string Word(const Index& value) {
    return std::to_string(value.Value());
}
inline std::string Word(const Orin::Result& value) {
    return std::to_string(value.GetErrorCode());
}
template <class A, class B>
std::string Word(const std::pair<A, B>& value) {
    return Word(value.first) + "=" + Word(value.second);
}
template <class List, class = typename List::const_iterator>
std::string Word(const List& values) {
    std::string text;
    for (const auto& value : values)
        text += Word(value) + ",";
    return text;
}
template <class... Values>
std::string Said(const Values&... values) {
    std::string text;
    ((text += text.empty() ? Word(values) : " " + Word(values)), ...);
    return text;
}

// ---- Operations ----

// One prepared call. `run` makes it, with the database failing, and says what it gave; `look` says, with the database
// well again, what it left behind. Both together are the outcome, "RUN : LOOK". What is thrown counts as "thrown CODE"
// and "bad_alloc". Destroying the call gives up what it holds.
struct Call {
    std::function<std::string()> run;
    std::function<std::string()> look = [] { return std::string(); };
};

// The operations of the database whose calls were made to fail, and whether the code said that something is absent.
struct Failures {
    std::vector<std::string> calls;
    bool absent;

    std::ptrdiff_t Count(std::string_view operation) const {
        return std::count(calls.begin(), calls.end(), operation);
    }
};

// Outcomes are given as "RUN : LOOK" or "RUN", several with "|" between. "=" stands for what the call says without a
// failure, as does a missing half; "~" for what it says before the call; "*" for anything; "<" for a list that lacks elements of that or has all; "#" for the
// code of the failure.
struct Operation {
    // The exported names that it covers, without the prefix of the family; once more for each further overload.
    const char* names;
    // Failures of these operations of the database are reported.
    const char* reports = "";
    // So are those of these, or of all others ("*"), unless the code says that something is absent.
    const char* judges = "";
    // How failures are reported. The design is then unchanged, and the same call works when the database is well.
    const char* failure = "thrown #";
    // What may come of a failure that is passed over; the design is then unchanged or complete.
    const char* degraded = "=";
    std::function<Call(SweepDesign&)> prepare;
    // In place of `reports` and `judges`, where the names do not tell.
    std::function<bool(const Failures&)> isReported = {};
    // What could not be read stays unknown after the call.
    bool remembers = false;
    // The same call cannot be made twice.
    bool once = false;
};

// The operations with one prefix.
struct Family {
    const char* prefix;
    std::vector<Operation> operations;
};

// All of them, by folder.
std::vector<Family> SheetOperations();
std::vector<Family> PageOperations();
std::vector<Family> DataOperations();  // attributes, designdata, ids, labels, properties
std::vector<Family> EventOperations();

// A call that needs nothing but the design.
template <class Run>
auto Plain(Run run) {
    return [run](SweepDesign& design) { return Call{[run, &design] { return run(design); }}; };
}

}  // namespace Quill::Sweep
