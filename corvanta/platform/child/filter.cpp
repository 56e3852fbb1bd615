#include "corvanta/platform/child/filter.h"

#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>

#include <array>
#include <cerrno>
#include <memory>

#include "corvanta/platform/child/sanitized.h"

namespace corvanta::platform::child {

namespace {

constexpr int kPlain[] = {
    // the host, and the files that it hands over
    SCMP_SYS(read), SCMP_SYS(pread64), SCMP_SYS(readv), SCMP_SYS(lseek), SCMP_SYS(fstat),
    SCMP_SYS(close), SCMP_SYS(recvmsg), SCMP_SYS(sendto), SCMP_SYS(poll), SCMP_SYS(ppoll),
    // memory
    SCMP_SYS(brk), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(madvise), SCMP_SYS(futex),
    // time, chance, the process itself, its end
    SCMP_SYS(clock_gettime), SCMP_SYS(gettimeofday), SCMP_SYS(time), SCMP_SYS(getrandom),
    SCMP_SYS(sched_yield), SCMP_SYS(getpid), SCMP_SYS(gettid), SCMP_SYS(getrusage),
    SCMP_SYS(rt_sigreturn), SCMP_SYS(rt_sigprocmask), SCMP_SYS(restart_syscall), SCMP_SYS(exit),
    SCMP_SYS(exit_group)};

#ifdef CORVANTA_HAS_SANITIZED_HEAP
// The sanitizers look at their stack, and try addresses out by writing them to a pipe.
constexpr int kForSanitizers[] = {SCMP_SYS(sigaltstack), SCMP_SYS(pipe), SCMP_SYS(pipe2),
                                  SCMP_SYS(write)};
#else
constexpr std::array<int, 0> kForSanitizers{};
#endif

constexpr int kForReading[] = {SCMP_SYS(newfstatat), SCMP_SYS(stat),      SCMP_SYS(lstat),
                               SCMP_SYS(statx),      SCMP_SYS(readlink),  SCMP_SYS(readlinkat),
                               SCMP_SYS(access),     SCMP_SYS(faccessat), SCMP_SYS(faccessat2),
                               SCMP_SYS(getdents64), SCMP_SYS(getcwd),    SCMP_SYS(fadvise64)};

struct Release {
  void operator()(void* filter) const { seccomp_release(filter); }
};

class Filter {
 public:
  // A call that this machine doesn't have is skipped by the library itself.
  template <typename... Conditions>
  void Allow(int call, Conditions... conditions) {
    if (m_filter)
      m_good &= seccomp_rule_add(m_filter.get(), SCMP_ACT_ALLOW, call, sizeof...(conditions),
                                 conditions...) == 0;
  }
  // For all threads.
  bool Load() {
    return m_filter && m_good && seccomp_attr_set(m_filter.get(), SCMP_FLTATR_CTL_TSYNC, 1) == 0 &&
           seccomp_load(m_filter.get()) == 0;
  }

 private:
  std::unique_ptr<void, Release> const m_filter{seccomp_init(SCMP_ACT_ERRNO(EPERM))};
  bool m_good = true;
};

}  // namespace

bool ApplyFilter(NRights rights) {
  Filter filter;
  for (int const call : kPlain) filter.Allow(call);
  for (int const call : kForSanitizers) filter.Allow(call);
  // Nothing new is to be run.
  for (int const call : {SCMP_SYS(mmap), SCMP_SYS(mprotect)})
    filter.Allow(call, SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0));
  for (std::uint64_t const command : {F_GETFD, F_GETFL, F_SETFL, F_SETOWN})
    filter.Allow(SCMP_SYS(fcntl), SCMP_A1(SCMP_CMP_EQ, command));
  if ((rights & kRightsReadFiles) != 0) {
    for (int const call : kForReading) filter.Allow(call);
    constexpr std::uint64_t kWriting = O_ACCMODE | O_CREAT | O_TRUNC | O_APPEND;
    filter.Allow(SCMP_SYS(open), SCMP_A1(SCMP_CMP_MASKED_EQ, kWriting, 0));
    filter.Allow(SCMP_SYS(openat), SCMP_A2(SCMP_CMP_MASKED_EQ, kWriting, 0));
  }
  return filter.Load();
}

}  // namespace corvanta::platform::child
