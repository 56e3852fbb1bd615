#include "corvanta/data/history/NTransaction.h"

#include "corvanta/data/history/detail/NRecorder.h"

namespace corvanta::data::history {

NTransaction::NTransaction(document::NDocument& document)
    : m_recorder(detail::NRecorder::Of(document)) {
  m_recorder->Open(this);
}

NTransaction::~NTransaction() {
  try {
    while (IsOpen()) m_recorder->Rollback();
  } catch (...) {
    // The rollback is done; there is nobody to tell.
  }
}

bool NTransaction::IsOpen() const noexcept { return m_recorder->IsOpen(this); }

bool NTransaction::IsInnermost() const noexcept { return m_recorder->IsInnermost(this); }

bool NTransaction::Commit(std::wstring const& name, std::wstring const& mergeKey) {
  if (!IsInnermost()) return false;
  m_recorder->Commit(name, mergeKey);
  return true;
}

bool NTransaction::Rollback() { return IsInnermost() && m_recorder->Rollback(); }

bool AddChangeSetListener(document::NDocument& document, NChangeSetListener& listener) {
  return detail::NRecorder::Of(document)->AddListener(listener);
}

bool RemoveChangeSetListener(document::NDocument& document, NChangeSetListener& listener) {
  return detail::NRecorder::Of(document)->RemoveListener(listener);
}

}  // namespace corvanta::data::history
