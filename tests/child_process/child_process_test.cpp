#include "corvanta/platform/child_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <thread>

#include "corvanta/platform/shared_memory.h"
#include "tests/child_process/probe.h"

namespace corvanta::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

#ifdef __SANITIZE_ADDRESS__
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

constexpr char kMemory[] = "268435456";

class ChildProcess : public testing::Test {
 protected:
  // Every test leaves no child, running or dead.
  ~ChildProcess() override {
    m_child.reset();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
  }

  void Start(char const* rights = "0") {
    m_child = NChildProcess::Start(PROBE, {kMemory, rights}, m_reason);
    ASSERT_TRUE(m_child) << m_reason;
  }

  // The answer's number; -1 if none came.
  int Ask(probe::NQuestion question, std::uint64_t value = 0, int descriptor = -1,
          std::chrono::milliseconds patience = 20s) {
    probe::NMessage message{question, 0, value};
    auto const deadline = steady_clock::now() + patience;
    std::span<int const> const descriptors(&descriptor, descriptor >= 0 ? 1 : 0);
    bool const answered = m_child->Send(&message, sizeof message, descriptors, deadline) &&
                          m_child->Receive(&message, sizeof message, deadline);
    return answered ? static_cast<int>(message.answer) : -1;
  }

  std::unique_ptr<NChildProcess> m_child;
  std::string m_reason;
};

TEST_F(ChildProcess, AnswersAndHasNoMoreThanItWasGiven) {
  NDescriptor const open(::open("/dev/null", O_RDONLY));  // on purpose without O_CLOEXEC
  Start();
  EXPECT_TRUE(m_child->IsRunning());
  EXPECT_EQ(Ask(probe::kDescriptors), 4);
  EXPECT_EQ(Ask(probe::kDescriptors, 0, open.Get()), 5);
  EXPECT_EQ(Ask(probe::kDescriptors), 4) << "what came with a question goes with it";
  for (auto const question :
       {probe::kOpenToRead, probe::kOpenToWrite, probe::kConnect, probe::kFork, probe::kExecute})
    EXPECT_EQ(Ask(question), EPERM) << question;
  EXPECT_NE(Ask(probe::kAllocate, std::uint64_t{1} << 27), ENOMEM);
  EXPECT_EQ(Ask(probe::kAllocate, std::uint64_t{1} << 29), kIsSanitized ? -1 : ENOMEM);
  Start("1");
  EXPECT_EQ(Ask(probe::kOpenToRead), 0);
  EXPECT_EQ(Ask(probe::kOpenToWrite), EPERM);
}

TEST_F(ChildProcess, SharedMemoryIsReadOnceNobodyCanChangeIt) {
  constexpr std::size_t kLength = 100000;
  Start();
  NDescriptor const memory = CreateSharedMemory(std::uint64_t{1} << 40);
  ASSERT_EQ(Ask(probe::kFill, kLength, memory.Get()), 0);
  EXPECT_NE(ftruncate(memory.Get(), 0), 0);
  ASSERT_TRUE(FreezeSharedMemory(memory.Get()));
  NSharedMapping const mapping(memory.Get(), 4097, kLength);
  ASSERT_TRUE(mapping.GetData());
  EXPECT_EQ(mapping.GetData()[0], 7);
  EXPECT_EQ(mapping.GetData()[kLength - 4098], 7);
  EXPECT_EQ(mapping.GetData()[kLength - 1], 0) << "what wasn't written";
  EXPECT_EQ(pwrite(memory.Get(), "x", 1, 0), -1);
  EXPECT_FALSE(NSharedMapping(memory.Get(), std::uint64_t{1} << 40, 1).GetData());
  EXPECT_FALSE(NSharedMapping(memory.Get(), 1, SIZE_MAX).GetData());

  NDescriptor const kept = CreateSharedMemory(kLength);
  ASSERT_EQ(Ask(probe::kFillAndKeep, kLength, kept.Get()), 0);
  EXPECT_FALSE(FreezeSharedMemory(kept.Get()));
  NDescriptor const unsealed(memfd_create("unsealed", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  EXPECT_FALSE(FreezeSharedMemory(unsealed.Get()));
}

TEST_F(ChildProcess, ItsEndIsToldAndCostsNoMoreThanTheDeadline) {
  Start();
  EXPECT_EQ(Ask(probe::kCrash), -1);
  EXPECT_FALSE(m_child->IsRunning());
  EXPECT_EQ(m_child->End(), kIsSanitized ? "it ended with status 1" : "it ended by signal 11");
  EXPECT_EQ(Ask(probe::kDescriptors), -1);

  Start();
  EXPECT_EQ(Ask(probe::kSleep, 0, -1, 50ms), -1);
  EXPECT_EQ(m_child->End(), "it took too long");

  Start();
  m_child->LimitCpu(0);
  EXPECT_EQ(Ask(probe::kSpin), -1);
  EXPECT_EQ(m_child->End(), "it took too long");

  for (auto const& program : {L"/no/such/program", L"/etc/passwd", L"/tmp", L""}) {
    EXPECT_EQ(NChildProcess::Start(program, {}, m_reason), nullptr);
    EXPECT_NE(m_reason, "");
  }
}

TEST_F(ChildProcess, EndsWithItsHostEvenWhileItWorks) {
  // A host of its own that dies while its child is busy; the child becomes ours.
  ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
  for (auto const question : {probe::kSleep, probe::kSpin}) {
    pid_t const host = fork();
    if (host == 0) {
      std::string reason;
      auto const child = NChildProcess::Start(PROBE, {kMemory, "0"}, reason);
      probe::NMessage message{question, 0, 0};
      auto const deadline = steady_clock::now() + 200ms;
      if (child && child->Send(&message, sizeof message, {}, deadline))
        child->Receive(&message, sizeof message, deadline);
      _exit(child ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(host, &status, 0), host);
    EXPECT_EQ(status, 0);
    EXPECT_GT(waitpid(-1, nullptr, 0), 0) << "the grandchild";
  }
  prctl(PR_SET_CHILD_SUBREAPER, 0);
}

TEST_F(ChildProcess, OutlivesTheThreadThatStartedItAndServesNoFork) {
  std::thread([this] { Start(); }).join();
  EXPECT_EQ(Ask(probe::kDescriptors), 4);
  pid_t const fork = ::fork();
  if (fork == 0) {
    bool const running = m_child->IsRunning();
    m_child.reset();
    _exit(running ? 1 : 0);
  }
  int status = 0;
  waitpid(fork, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Ask(probe::kDescriptors), 4) << "the fork's end leaves it alone";
}

TEST_F(ChildProcess, AHostThatWaitsForAllItsChildrenIsNoTrouble) {
  struct sigaction ignore {
  }, before{};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGCHLD, &ignore, &before);
  Start();
  EXPECT_EQ(Ask(probe::kCrash), -1);
  EXPECT_EQ(m_child->End(), "it ended");
  sigaction(SIGCHLD, &before, nullptr);
}

TEST_F(ChildProcess, StartsWithoutStandardDescriptorsAndFailsWithoutAny) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit const few{32, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &few);
  int const input = dup(0);
  close(0);
  Start();
  EXPECT_EQ(Ask(probe::kDescriptors), 4);
  dup2(input, 0);
  close(input);
  m_child.reset();
  std::vector<NDescriptor> all;
  while (all.emplace_back(open("/dev/null", O_RDONLY | O_CLOEXEC))) continue;
  EXPECT_EQ(NChildProcess::Start(PROBE, {kMemory, "0"}, m_reason), nullptr);
  EXPECT_FALSE(CreateSharedMemory(1));
  all.clear();
  setrlimit(RLIMIT_NOFILE, &before);
}

}  // namespace
}  // namespace corvanta::platform
