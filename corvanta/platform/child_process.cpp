#include "corvanta/platform/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>
#include <system_error>

// This header forgets to say so itself in some versions of the C library.
extern "C" {
#include <sys/pidfd.h>
}

#include "corvanta/platform/file.h"
#include "corvanta/platform/narrow_path.h"

namespace corvanta::platform {

namespace {

constexpr int kChildSocket = 3;

std::string Describe(int error) { return std::generic_category().message(error); }

// The program's descriptors. The socket goes first: it may itself have one of the low numbers.
class Actions {
 public:
  explicit Actions(int socket) {
    bool good = posix_spawn_file_actions_init(&m_actions) == 0;
    good = good && posix_spawn_file_actions_adddup2(&m_actions, socket, kChildSocket) == 0;
    for (int standard : {0, 1, 2}) {
      good = good &&
             posix_spawn_file_actions_addopen(&m_actions, standard, "/dev/null", O_RDWR, 0) == 0;
    }
    m_good = good && posix_spawn_file_actions_addclosefrom_np(&m_actions, kChildSocket + 1) == 0;
  }
  ~Actions() { posix_spawn_file_actions_destroy(&m_actions); }
  Actions(Actions const&) = delete;
  Actions& operator=(Actions const&) = delete;
  posix_spawn_file_actions_t const* Get() const { return m_good ? &m_actions : nullptr; }

 private:
  posix_spawn_file_actions_t m_actions{};
  bool m_good = false;
};

// Every signal at its default and unblocked; a process group of its own, so that what a terminal
// sends to the host's group leaves a decoding alone.
class Attributes {
 public:
  Attributes() {
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_init(&m_attributes);
    posix_spawnattr_setsigmask(&m_attributes, &none);
    posix_spawnattr_setsigdefault(&m_attributes, &all);
    posix_spawnattr_setpgroup(&m_attributes, 0);
    posix_spawnattr_setflags(
        &m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  }
  ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
  Attributes(Attributes const&) = delete;
  Attributes& operator=(Attributes const&) = delete;
  posix_spawnattr_t const* Get() const { return &m_attributes; }

 private:
  posix_spawnattr_t m_attributes{};
};

std::vector<std::string> GetEnvironment() {
  // Decoders start threads for each processor otherwise, which nothing here needs.
  std::vector<std::string> variables{"LC_ALL=C", "OMP_NUM_THREADS=1"};
  for (char const* name :
       {"LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS"}) {
    if (char const* const value = secure_getenv(name))
      variables.push_back(std::string(name) + "=" + value);
  }
  return variables;
}

std::vector<char*> GetPointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

std::wstring FindChildProgram(std::wstring const& name) {
  std::wstring const library = GetLibraryFolder();
  // As it was installed; in the build tree; and from a folder of the architecture, lib/<triplet>.
  for (wchar_t const* const place : {CORVANTA_LIBEXEC L"/", L"../libexec/", L"../../libexec/"}) {
    std::wstring path = library + place + L"corvanta/" + name;
    if (Exists(path)) return path;
  }
  return {};
}

NChildProcess::NChildProcess(pid_t pid, NDescriptor socket)
    : m_pid(pid), m_owner(getpid()), m_socket(std::move(socket)), m_handle(pidfd_open(pid, 0)) {}

NChildProcess::~NChildProcess() {
  if (m_pid != 0 && m_owner == getpid()) Finish();
}

std::unique_ptr<NChildProcess> NChildProcess::Start(std::wstring const& program,
                                                    std::vector<std::string> const& arguments,
                                                    std::string& reason) {
  std::optional<std::string> const path = ToNarrowPath(program);
  int ends[2];
  if (!path || socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0) {
    reason = path ? "no socket: " + Describe(errno) : "no such program";
    return nullptr;
  }
  NDescriptor ours(ends[0]);
  NDescriptor const theirs(ends[1]);
  std::vector<std::string> texts{*path};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<std::string> environment = GetEnvironment();
  Actions const actions(theirs.Get());
  Attributes const attributes;
  pid_t pid = 0;
  int const error = actions.Get()
                        ? posix_spawn(&pid, path->c_str(), actions.Get(), attributes.Get(),
                                      GetPointers(texts).data(), GetPointers(environment).data())
                        : ENOMEM;
  if (error != 0) {
    reason = *path + " can't be started: " + Describe(error);
    return nullptr;
  }
  return std::unique_ptr<NChildProcess>(new NChildProcess(pid, std::move(ours)));
}

bool NChildProcess::IsRunning() const {
  if (m_pid == 0 || m_owner != getpid()) return false;
  // Nobody has been asked, so that anything that is in the socket is as bad as its end.
  pollfd entry{m_socket.Get(), POLLIN, 0};
  return poll(&entry, 1, 0) == 0;
}

bool NChildProcess::Wait(short events, NDeadline deadline) {
  using namespace std::chrono;
  for (;;) {
    auto const left = ceil<milliseconds>(deadline - steady_clock::now()).count();
    pollfd entry{m_socket.Get(), events, 0};
    int const count =
        poll(&entry, 1, static_cast<int>(std::clamp<long long>(left, 0, 1000 * 1000)));
    if (count > 0) return true;
    if ((count == 0 && left <= 0) || (count < 0 && errno != EINTR)) {
      m_isLate = count == 0;
      return false;
    }
  }
}

bool NChildProcess::Send(void const* bytes, std::size_t length, std::span<int const> descriptors,
                         NDeadline deadline) {
  if (m_pid == 0 || length > kMostMessage || descriptors.size() > kMostDescriptors) return false;
  // The bytes are only read.
  iovec part{const_cast<void*>(bytes), length};
  alignas(cmsghdr) char control[CMSG_SPACE(kMostDescriptors * sizeof(int))] = {};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  if (!descriptors.empty()) {
    message.msg_control = control;
    message.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(descriptors.size_bytes());
    std::memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size_bytes());
  }
  for (;;) {
    if (sendmsg(m_socket.Get(), &message, MSG_NOSIGNAL) >= 0) return true;
    if (errno == EINTR) continue;
    if ((errno != EAGAIN && errno != EWOULDBLOCK) || !Wait(POLLOUT, deadline)) return false;
  }
}

bool NChildProcess::Receive(void* bytes, std::size_t length, NDeadline deadline) {
  if (m_pid == 0) return false;
  for (;;) {
    // Descriptors aren't taken: without room for them the system closes what was sent.
    ssize_t const count = recv(m_socket.Get(), bytes, length, MSG_TRUNC);
    if (count >= 0) return static_cast<std::size_t>(count) == length && length != 0;
    if (errno == EINTR) continue;
    if ((errno != EAGAIN && errno != EWOULDBLOCK) || !Wait(POLLIN, deadline)) return false;
  }
}

void NChildProcess::LimitCpu(unsigned int seconds) {
  clockid_t clock{};
  timespec used{};
  if (m_pid == 0 || clock_getcpuclockid(m_pid, &clock) != 0 || clock_gettime(clock, &used) != 0)
    return;
  rlimit limit{};
  if (prlimit(m_pid, RLIMIT_CPU, nullptr, &limit) != 0) return;
  limit.rlim_cur = std::min<rlim_t>(static_cast<rlim_t>(used.tv_sec) + 1 + seconds, limit.rlim_max);
  prlimit(m_pid, RLIMIT_CPU, &limit, nullptr);
}

void NChildProcess::Kill() const {
  if (m_handle)
    pidfd_send_signal(m_handle.Get(), SIGKILL, nullptr, 0);
  else
    kill(m_pid, SIGKILL);
}

/// Gives the status that it ended with, unless the host has taken it.
std::optional<int> NChildProcess::Finish() noexcept {
  // An end of its own, which its socket has told already, is to be seen as such.
  int status = 0;
  pid_t ended = 0;
  if (!m_isLate) {
    pollfd entry{m_handle.Get(), POLLIN, 0};
    if (m_handle && !IsRunning()) poll(&entry, 1, 20);
    ended = waitpid(m_pid, &status, WNOHANG);
  }
  if (ended == 0) {
    Kill();
    while ((ended = waitpid(m_pid, &status, 0)) < 0 && errno == EINTR) continue;
  }
  pid_t const pid = std::exchange(m_pid, 0);
  m_socket = NDescriptor();
  m_handle = NDescriptor();
  // The host may have waited for all its children, and so for this one.
  return ended == pid ? std::optional(status) : std::nullopt;
}

std::string NChildProcess::End() {
  if (m_pid == 0 || m_owner != getpid()) return "it isn't running";
  std::optional<int> const status = Finish();
  if (m_isLate) return "it took too long";
  if (!status) return "it ended";
  if (WIFSIGNALED(*status) && WTERMSIG(*status) == SIGXCPU) return "it took too long";
  if (WIFSIGNALED(*status)) return "it ended by signal " + std::to_string(WTERMSIG(*status));
  return "it ended with status " + std::to_string(WEXITSTATUS(*status));
}

}  // namespace corvanta::platform
