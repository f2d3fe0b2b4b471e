#include "orin/result.h"

#include <string>

namespace Orin {

namespace {

struct CodeText {
    EErrorCode code;
    const char* text;
};

constexpr CodeText CodeTexts[] = {
    {EErrorCode::None, "Success"},
    {EErrorCode::InvalidArgument, "An argument is not valid"},
    {EErrorCode::OutOfMemory, "There is not enough memory"},
    {EErrorCode::StoreFailed, "The store of the design failed"},
    {EErrorCode::NotConnected, "No database is attached"},
    {EErrorCode::UnknownProject, "There is no such project"},
    {EErrorCode::ObjectNotFound, "There is no such object"},
    {EErrorCode::AccessDenied, "Another client holds the object"},
    {EErrorCode::AttributeNotFound, "There is no such attribute"},
    {EErrorCode::NotLocked, "The object is not locked for writing"},
    {EErrorCode::ViewDataNotFound, "The object is not drawn on this view"},
    {EErrorCode::NoValue, "The object has no such value"},
    {EErrorCode::NotInHierarchy, "There is no such place in the hierarchy"},
    {EErrorCode::TransactionActive, "A transaction is active"},
    {EErrorCode::NoTransaction, "No transaction is active"},
    {EErrorCode::TransactionVetoed, "An observer refused the transaction"},
    {EErrorCode::AlreadyExists, "An object of that name or index exists"},
    {EErrorCode::ObjectInUse, "Another object needs this one"},
};

}  // namespace

Result::~Result() = default;

String Result::GetDescription() const {
    std::string description;
    for (const CodeText& entry : CodeTexts)
        if (static_cast<int>(entry.code) == m_code) description = entry.text;
    if (description.empty()) description = "Database error " + std::to_string(m_code);
    if (!m_detail.IsEmpty()) description.append(": ").append(m_detail.View());
    return String(description);
}

}  // namespace Orin
