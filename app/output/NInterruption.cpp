#include "app/output/NInterruption.h"

namespace corvanta::app {

namespace {

volatile std::sig_atomic_t g_signal = 0;

extern "C" void NoteSignal(int number) { g_signal = number; }

}  // namespace

NInterruption::NInterruption() {
  g_signal = 0;
  struct sigaction action = {};
  action.sa_handler = &NoteSignal;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, &m_interrupt);
  sigaction(SIGTERM, &action, &m_terminate);
  sigaction(SIGHUP, &action, &m_hangup);
  // What whoever started the program had ignored stays ignored.
  if (m_interrupt.sa_handler == SIG_IGN) sigaction(SIGINT, &m_interrupt, nullptr);
  if (m_hangup.sa_handler == SIG_IGN) sigaction(SIGHUP, &m_hangup, nullptr);
}

NInterruption::~NInterruption() {
  sigaction(SIGINT, &m_interrupt, nullptr);
  sigaction(SIGTERM, &m_terminate, nullptr);
  sigaction(SIGHUP, &m_hangup, nullptr);
}

int NInterruption::GetSignal() { return g_signal; }

}  // namespace corvanta::app
