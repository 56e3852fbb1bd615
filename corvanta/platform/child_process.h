#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "corvanta/export.h"
#include "corvanta/platform/descriptor.h"

namespace corvanta::platform {

/// Until when a call may wait.
using NDeadline = std::chrono::steady_clock::time_point;

/// A program of that name in libexec/corvanta of the tree in which the library is installed, or was
/// built.
/// Fails: empty.
CORVANTA_API std::wstring FindChildProgram(std::wstring const& name);

/// A program that does for the host what the host doesn't dare to do itself: it gets requests over
/// a socket, and can't do more than its descriptors and limits allow.
///
/// How a program is run that way:
///  - The program links `corvanta_child` (corvanta/platform/child/child.h). Its main loads what it
///    needs, calls `child::Confine` with its limits and rights, and answers requests in a loop:
///    `child::Receive`, work, `child::Send`, until Receive fails, which ends it with the host.
///  - The host keeps an NChildProcess, under a lock of its own: `Start` once, then `Send` and
///    `Receive` for each request. A message has a fixed form, at most kMostMessage bytes, and may
///    carry descriptors to the child (a file open for reading, shared memory for a long answer: see
///    shared_memory.h), never back.
///  - The host trusts nothing that an answer says: it checks every number in it.
///  - After a failed Send or Receive the object is of no more use: `End` tells why; start anew.
/// Starting a program takes as long as loading its libraries does.
class CORVANTA_API NChildProcess {
 public:
  static constexpr std::size_t kMostMessage = 65536;
  static constexpr std::size_t kMostDescriptors = 4;

  /// Starts the program at the path `program`, in a process group of its own, with the socket as
  /// descriptor 3, nothing else open but /dev/null as 0, 1 and 2, and an environment that says
  /// where libraries are and no more. The host isn't forked.
  /// Fails: null, with `reason` set, if the program isn't there or can't be started.
  static std::unique_ptr<NChildProcess> Start(std::wstring const& program,
                                              std::vector<std::string> const& arguments,
                                              std::string& reason);
  /// Ends the program.
  ~NChildProcess();
  NChildProcess(NChildProcess const&) = delete;
  NChildProcess& operator=(NChildProcess const&) = delete;

  /// Whether it can still be asked: it hasn't ended, and this isn't a fork of the process that
  /// started it.
  bool IsRunning() const;

  /// Sends a message with `descriptors`, which stay open here. Raises no SIGPIPE.
  /// Fails: false, at the deadline at the latest.
  bool Send(void const* bytes, std::size_t length, std::span<int const> descriptors,
            NDeadline deadline);

  /// Waits for a message of exactly `length` bytes.
  /// Fails: false, at the deadline at the latest.
  bool Receive(void* bytes, std::size_t length, NDeadline deadline);

  /// Lets the program use `seconds` of processor time from now on; then the system ends it.
  void LimitCpu(unsigned int seconds);

  /// Ends the program, now.
  /// Returns how: "it took too long" if a deadline or its processor time had passed, "it ended by
  /// signal 11", "it ended with status 1".
  std::string End();

 private:
  NChildProcess(pid_t pid, NDescriptor socket);
  bool Wait(short events, NDeadline deadline);
  void Kill() const;
  std::optional<int> Finish() noexcept;

  pid_t m_pid;  // 0 after its end
  pid_t const m_owner;
  NDescriptor m_socket;
  NDescriptor m_handle;  // names the process also when its number is used again
  bool m_isLate = false;
};

}  // namespace corvanta::platform
