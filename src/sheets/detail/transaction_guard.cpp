#include "sheets/detail/transaction_guard.h"

#include <utility>

#include "designdata/result_rule.h"

namespace Quill::detail {

using Utils::Require;

TransactionGuard::TransactionGuard(const Orin::ContainerT<const Orin::ISnapshot>& snapshot) : m_snapshot(snapshot) {
    if (!m_snapshot) throw Orin::Result(Orin::EErrorCode::ObjectNotFound);
    bool active = false;
    Require(m_snapshot->IsTransactionActive(active));
    if (active) return;
    Require(m_snapshot->BeginTransaction(Orin::ETransactionType::Edit));
    m_owns = true;
}

TransactionGuard::~TransactionGuard() {
    RollBack();
}

void TransactionGuard::Commit() {
    if (!m_owns) return;
    const Orin::Result result = m_snapshot->CommitTransaction();
    if (result)
        m_owns = false;
    else
        RollBack();  // a commit that failed leaves the transaction active
    Require(result);
}

void TransactionGuard::RollBack() noexcept {
    // When this fails too there is nothing left to do: the first failure is on its way to the caller.
    if (std::exchange(m_owns, false)) static_cast<void>(m_snapshot->RollbackTransaction());
}

}  // namespace Quill::detail
