#include "corvanta/data/history/detail/NReplay.h"

#include <new>

#include "corvanta/data/history/NHistory.h"
#include "corvanta/data/history/detail/NChangeAccess.h"

namespace corvanta::data::history::detail {

namespace {

/// After so many rounds the answers of listeners to answers stay.
constexpr int kRounds = 16;

template <class List, class Call>
bool ForEach(List const& list, bool isForward, bool goesOn, Call const& call) {
  bool isWhole = true;
  for (std::size_t i = 0; i != list.size() && (isWhole || goesOn); ++i) {
    if (!call(list[isForward ? i : list.size() - 1 - i])) isWhole = false;
  }
  return isWhole;
}

}  // namespace

bool NRecorder::NReplay::IsAnswer(void const* subject, int group) noexcept {
  if (m_hasHappened || subject != m_subject || group != m_group) return true;
  m_hasHappened = true;
  return false;
}

/// Runs one change. What listeners throw is kept if the change has happened.
template <class Call>
bool NRecorder::NReplay::Try(void const* subject, int group, Call const& call) {
  if (m_recorder.m_document == nullptr) return false;  // a listener has ended it
  m_subject = subject;
  m_group = group;
  m_hasHappened = false;
  bool isDone = false;
  try {
    isDone = call();
  } catch (...) {
    isDone = m_hasHappened;
    if (!m_exception) m_exception = std::current_exception();
  }
  m_hasHappened = true;
  if (!m_isTakingBack) TakeAnswersBack();
  return isDone;
}

bool NRecorder::NReplay::ApplyAttribute(NAttributeChange const& change,
                                        core::variant::NVariant const& value) {
  core::attribute::NAttribute& attribute = change.GetAttribute();
  core::variant::NVariant copy(value);
  if (change.GetNode() == nullptr && m_recorder.IsOutside(change.GetHost())) {
    // Nobody but this records it.
    core::detail::NChangeScope const scope(&m_recorder);
    m_recorder.RecordAttribute(attribute, nullptr, true, attribute.GetValue());
    attribute.SetValue(std::move(copy), true);
  } else {
    attribute.SetValue(std::move(copy), true);
  }
  return true;
}

bool NRecorder::NReplay::Apply(NChangeSet::AttributeChanges const& attributes,
                               NChangeSet::Changes const& changes, bool isForward, bool goesOn) {
  auto const applyAttributes = [&] {
    return ForEach(attributes, isForward, goesOn, [&](NAttributeChange const& change) {
      return Try(&change.GetAttribute(), kAttribute, [&] {
        return ApplyAttribute(change, isForward ? change.GetAfter() : change.GetBefore());
      });
    });
  };
  auto const applyStructure = [&] {
    return ForEach(changes, isForward, goesOn, [&](NChange const& change) {
      return Try(change.subject.GetObject(), GetGroup(change.kind),
                 [&] { return NChangeAccess::Apply(change, isForward); });
    });
  };
  bool const isFirstDone = isForward ? applyStructure() : applyAttributes();
  if (!isFirstDone && !goesOn) return false;
  bool const isSecondDone = isForward ? applyAttributes() : applyStructure();
  return isFirstDone && isSecondDone;
}

void NRecorder::NReplay::TakeAnswersBack() {
  if (m_answers.IsEmpty()) return;
  m_isTakingBack = true;
  try {
    for (int round = 0; round != kRounds && !m_answers.IsEmpty(); ++round) TakeRoundBack();
    if (!m_answers.IsEmpty()) m_hasLeftOver = true;
  } catch (std::bad_alloc const&) {
    m_hasLeftOver = true;
  }
  m_answers = NLevel(false);
  m_isTakingBack = false;
}

void NRecorder::NReplay::TakeRoundBack() {
  NLevel answers = std::exchange(m_answers, NLevel(false));
  auto& data = answers.GetData();
  std::erase_if(data.attributes, [](NAttributeChange const& change) {
    return AreSame(change.GetBefore(), change.GetAttribute().GetValue());
  });
  Apply(data.attributes, {}, false, true);
  // An answer to this round may stand against it, such as one that took a name: the next round
  // takes that back first.
  NChangeSet::Changes refused;
  for (auto change = data.changes.rbegin(); change != data.changes.rend(); ++change) {
    bool const isDone = Try(change->subject.GetObject(), GetGroup(change->kind),
                            [&] { return NChangeAccess::Apply(*change, false); });
    if (!isDone) refused.push_back(std::move(*change));
  }
  auto& next = m_answers.GetData().changes;
  next.insert(next.begin(), refused.rbegin(), refused.rend());
}

}  // namespace corvanta::data::history::detail
