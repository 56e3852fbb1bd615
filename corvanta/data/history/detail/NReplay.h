#pragma once

#include <exception>
#include <utility>

#include "corvanta/data/history/detail/NRecorder.h"

namespace corvanta::data::history::detail {

/// The kinds of change that are each other's inverse have a number; attributes have another one.
constexpr int kAttribute = -1;
constexpr int GetGroup(NChangeKind kind) noexcept { return kind < NCK_NAME ? kind / 2 : kind; }

/// Takes changes back or repeats them, one by one. What listeners change in answer to one is taken
/// back before the next, so that each meets the state that it had.
class NRecorder::NReplay {
 public:
  explicit NReplay(NRecorder& recorder) noexcept
      : m_recorder(recorder), m_outer(recorder.m_replay) {
    recorder.m_replay = this;
  }
  NReplay(NReplay const&) = delete;
  NReplay& operator=(NReplay const&) = delete;
  ~NReplay() { m_recorder.m_replay = m_outer; }

  /// Goes on behind what is refused if `goesOn`, else ends there.
  /// Fails: false if something was refused.
  bool Apply(NChangeSet::AttributeChanges const& attributes, NChangeSet::Changes const& changes,
             bool isForward, bool goesOn);

  /// Whether a change that the recorder has met, of what and of which kinds, is a listener's answer
  /// and not the one that is being applied.
  bool IsAnswer(void const* subject, int group) noexcept;
  /// The one within whose changes a listener began this one; null for the outermost.
  NReplay* GetOuter() const noexcept { return m_outer; }
  NLevel& GetAnswers() noexcept { return m_answers; }
  /// Whether answers remained that couldn't be taken back.
  bool HasLeftOver() const noexcept { return m_hasLeftOver; }

  /// The first that was met, or null.
  std::exception_ptr const& GetException() const noexcept { return m_exception; }

 private:
  template <class Call>
  bool Try(void const* subject, int group, Call const& call);
  bool ApplyAttribute(NAttributeChange const& change, core::variant::NVariant const& value);
  void TakeAnswersBack();
  void TakeRoundBack();

  NRecorder& m_recorder;
  NReplay* const m_outer;
  void const* m_subject = nullptr;  // of what is being applied
  int m_group = 0;
  bool m_hasHappened = false;
  bool m_isTakingBack = false;
  bool m_hasLeftOver = false;
  NLevel m_answers{false};
  std::exception_ptr m_exception;
};

}  // namespace corvanta::data::history::detail
