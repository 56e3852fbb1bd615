#include "corvanta/data/history/NHistory.h"

#include <new>
#include <optional>
#include <utility>

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/data/history/detail/NRecorder.h"

namespace corvanta::data::history {

NHistory::NHistory(document::NDocument& document) : m_recorder(detail::NRecorder::Of(document)) {
  m_recorder->AddHistory(*this);
}

NHistory::~NHistory() { m_recorder->RemoveHistory(*this); }

bool NHistory::Undo() { return Move(m_undo, m_redo, false); }

bool NHistory::Redo() { return Move(m_redo, m_undo, true); }

bool NHistory::Move(Sets& from, Sets& to, bool isForward) {
  if (from.empty() || !m_recorder->IsIdle()) return false;
  m_isMergeable = false;
  to.emplace_back();  // what may fail comes first
  m_isMoving = true;
  bool isMoved = false;
  core::detail::ScopeExit const finish([&] {
    m_isMoving = false;
    if (!isMoved) to.pop_back();
    if (m_isClearing) Clear();
    KeepWithinLimit();
  });
  return m_recorder->Replay(NChangeSet(from.back()), isForward, *this, [&](bool isExact) {
    isMoved = true;
    to.back() = std::move(from.back());
    from.pop_back();
    // What answers of listeners have changed for good stands against a redo.
    if (!isExact) Drop(m_redo);
  });
}

/// Of whoever made the set; it never throws.
void NHistory::Keep(NChangeSet const& set) noexcept {
  if (!set.IsComplete()) return Clear();
  if (!m_isKeeping) return;
  Drop(m_redo);
  try {
    bool const isMergeable = m_isMergeable && !m_undo.empty() && !set.GetMergeKey().empty() &&
                             m_undo.back().GetMergeKey() == set.GetMergeKey();
    auto const merged = isMergeable ? m_undo.back().MergedWith(set) : std::nullopt;
    if (merged) {
      m_bytes -= m_undo.back().GetBytes();
      m_undo.back() = *merged;
    } else {
      m_undo.push_back(set);
    }
    m_bytes += m_undo.back().GetBytes();
    m_isMergeable = true;
    KeepWithinLimit();
  } catch (std::bad_alloc const&) {
    Clear();
  }
}

void NHistory::SetByteLimit(std::size_t bytes) {
  m_byteLimit = bytes;
  KeepWithinLimit();
}

/// The oldest go first, then those that are redone last.
void NHistory::KeepWithinLimit() noexcept {
  if (m_isMoving) return;
  while (m_bytes > m_byteLimit && !(m_undo.empty() && m_redo.empty())) {
    Sets& sets = m_undo.empty() ? m_redo : m_undo;
    m_bytes -= sets.front().GetBytes();
    sets.pop_front();
  }
}

void NHistory::Drop(Sets& sets) noexcept {
  while (!sets.empty()) {
    m_bytes -= sets.back().GetBytes();
    sets.pop_back();
  }
}

void NHistory::Clear() noexcept {
  m_isClearing = m_isMoving;
  if (m_isMoving) return;
  Drop(m_undo);
  Drop(m_redo);
}

bool NHistory::Note(core::attribute::NAttributeHost& host,
                    core::attribute::NAttribute const& attribute,
                    core::variant::NVariant const& previous) {
  return m_recorder->Note(host, attribute, previous);
}

}  // namespace corvanta::data::history
