#pragma once

namespace corvanta::core::detail {

/// The value that something had before a change, for as long as the listeners of the change run.
///
/// It stands on the stack of the setter, and the setters that run on a thread form a list, the
/// innermost first: a change costs no memory, and every nested change of one thing has its own.
class NPreviousValue {
 public:
  /// `subject` is the address by which the value is found, `value` that of the value itself.
  NPreviousValue(void const* subject, void const* value) noexcept
      : m_subject(subject), m_value(value), m_outer(s_innermost) {
    s_innermost = this;
  }
  NPreviousValue(NPreviousValue const&) = delete;
  NPreviousValue& operator=(NPreviousValue const&) = delete;
  ~NPreviousValue() { s_innermost = m_outer; }

  /// The value before the innermost change of `subject` that runs on this thread.
  /// Fails: null if none does.
  static void const* Find(void const* subject) noexcept {
    NPreviousValue const* at = s_innermost;
    while (at != nullptr && at->m_subject != subject) at = at->m_outer;
    return at == nullptr ? nullptr : at->m_value;
  }

 private:
  void const* const m_subject;
  void const* const m_value;
  NPreviousValue const* const m_outer;

  // The model of the library's own data: no call finds the thread's place. Hidden, so that it is.
  [[gnu::tls_model("initial-exec"),
    gnu::visibility("hidden")]] static constinit thread_local NPreviousValue const* s_innermost;
};

}  // namespace corvanta::core::detail
