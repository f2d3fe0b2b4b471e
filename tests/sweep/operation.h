// What the sweep knows of an operation of the library: how it is called, and what it promises when the database fails.
#pragma once

#include <algorithm>
#include <functional>
#include <list>
#include <map>
#include <type_traits>
#include <vector>

#include "tests/sweep/sweep_design.h"

namespace Quill::Sweep {

// ---- What a call says: words, with a blank behind each element of a list ----

template <class T>
std::string Word(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_integral_v<T>) {
        return std::to_string(value);
    } else if constexpr (std::is_enum_v<T>) {
        return Word(static_cast<int>(value));
    } else if constexpr (std::is_same_v<T, Index>) {
        return Word(value.Value());
    } else if constexpr (std::is_same_v<T, Orin::Result>) {
        return Word(value.GetErrorCode());
    } else if constexpr (std::is_convertible_v<T, std::string>) {
        return value;
    } else if constexpr (requires { value.second; }) {
        return Word(value.first) + "=" + Word(value.second);
    } else {
        std::string text;
        for (const auto& one : value)
            text += Word(one) + " ";
        return text;
    }
}
template <class... Values>
std::string Said(const Values&... values) {
    std::string text;
    ((text += text.empty() ? Word(values) : " " + Word(values)), ...);
    return text;
}
// What a call gives; nothing when that is void.
template <class Run, class... Arguments>
std::string SaidBy(const Run& run, Arguments&... arguments) {
    if constexpr (std::is_void_v<std::invoke_result_t<const Run&, Arguments&...>>) {
        run(arguments...);
        return "";
    } else {
        return Said(run(arguments...));
    }
}

// ---- Operations ----

// One prepared call. `run` makes it, with the database failing, and says what it gave; `look` says, with the database
// well again, what it left behind. Both together are the outcome, "RUN : LOOK". What is thrown counts as "thrown CODE"
// and "bad_alloc". Destroying the call gives up what it holds.
struct Call {
    std::function<std::string()> run;
    std::function<std::string()> look = [] { return std::string(); };
};
using Prepare = std::function<Call(SweepDesign&)>;

// Outcomes are given as "RUN : LOOK" or "RUN", several with "|" between. In place of a half stands "=" for what the
// call says without a failure, as when it is missing, "^" for a beginning of that, "<" for some of its words, "~" for
// what it says before the call, and "*" for anything; "#" stands for the code of the failure.
struct Operation {
    // The exported names that it covers, without the prefix of the family; once more for each further overload.
    const char* names;
    // The operations of the database whose failures are reported, "*" for all; with a "?" in front, those whose
    // failures are reported unless the code says that something is absent.
    const char* reports;
    // How failures are reported. The design is then unchanged, and the same call works when the database is well.
    const char* failure;
    // What may come of a failure that is passed over; the design is then unchanged or complete.
    const char* degraded;
    Prepare prepare;
    // The same call cannot be made twice.
    bool once = false;
    // Told how often each operation failed, in place of `reports` where the names alone do not tell.
    std::function<bool(std::map<std::string, int>&)> isReported = {};
};

// The operations with one prefix.
struct Family {
    const char* prefix;
    std::vector<Operation> operations;
};

std::vector<Family> SheetOperations();
std::vector<Family> PageOperations();
std::vector<Family> DataOperations();  // attributes, designdata, ids, labels, properties
std::vector<Family> EventOperations();

// A call that needs nothing but the design, and says what `run` gives.
template <class Run>
Prepare Plain(Run run) {
    return [run](SweepDesign& design) { return Call{[run, &design] { return SaidBy(run, design); }}; };
}

// A call whose `run` says what it gives, and that shares `state` with `look`.
template <class State, class Run, class Look>
Call Sharing(SweepDesign& design, const std::shared_ptr<State>& state, Run run, Look look) {
    return {[=, &design] { return SaidBy(run, *state, design); }, [=] { return Said(look(*state)); }};
}

}  // namespace Quill::Sweep
