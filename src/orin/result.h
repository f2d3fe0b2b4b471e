// The outcome of a database operation.
#pragma once

#include <utility>

#include "orin/export.h"
#include "orin/string.h"

namespace Orin {

// Error codes of this interface. A reader that tolerates absence takes 200, 202, 204, 205 and 206 for "there is no such
// thing"; every other code says that the operation went wrong. An implementation may give further codes.
enum class EErrorCode : int {
    None = 0,
    InvalidArgument = 100,
    OutOfMemory = 101,
    StoreFailed = 102,   // the design could not be made durable
    NotConnected = 110,  // no database is attached
    UnknownProject = 111,
    ObjectNotFound = 200,  // no object of that index or name, or it was deleted
    AccessDenied = 201,    // another client holds the object, or a transaction on the snapshot
    AttributeNotFound = 202,
    NotLocked = 203,         // the caller does not hold the write access that the edit needs
    ViewDataNotFound = 204,  // the object is not drawn on this view
    NoValue = 205,           // the object has no such relation: no child block, no parent, no definition, no name
    NotInHierarchy = 206,    // the place of the hierarchy does not exist
    TransactionActive = 210,
    NoTransaction = 211,
    TransactionVetoed = 212,
    AlreadyExists = 213,
    ObjectInUse = 214,  // another object needs the one that was to be deleted
};

// A value: success, or an error code with an optional detail. The library above the interface throws a failed result
// by value and its callers catch it by this type.
class ORINPI_EXPORT Result {
public:
    Result() noexcept = default;  // success
    Result(EErrorCode code) noexcept : m_code(static_cast<int>(code)) {}
    explicit Result(int code, String detail = {}) noexcept : m_code(code), m_detail(std::move(detail)) {}
    Result(EErrorCode code, String detail) noexcept : Result(static_cast<int>(code), std::move(detail)) {}
    Result(const Result&) noexcept = default;
    Result(Result&&) noexcept = default;
    Result& operator=(const Result&) noexcept = default;
    Result& operator=(Result&&) noexcept = default;
    virtual ~Result();

    bool Succeeded() const noexcept { return m_code == 0; }
    explicit operator bool() const noexcept { return m_code == 0; }

    // 0 on success.
    int GetErrorCode() const noexcept { return m_code; }

    // A sentence for people: what the code means, then ": " and the detail when there is one.
    String GetDescription() const;

private:
    int m_code = 0;
    String m_detail;
};

}  // namespace Orin
