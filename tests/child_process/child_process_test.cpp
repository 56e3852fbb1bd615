#include "corvanta/platform/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <thread>

#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture.h"
#include "corvanta/platform/shared_memory.h"
#include "tests/child_process/probe.h"
#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"

namespace corvanta::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

#ifdef __SANITIZE_ADDRESS__
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

/// Expects that `call` gives true in a process of its own.
void ExpectInFork(std::function<bool()> const& call) {
  pid_t const child = fork();
  if (child == 0) _exit(call() ? 0 : 1);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

/// Until there are no more.
std::vector<NDescriptor> TakeDescriptors() {
  std::vector<NDescriptor> taken;
  while (taken.emplace_back(open("/dev/null", O_RDONLY | O_CLOEXEC))) continue;
  return taken;
}

/// A limit of this process, while it stands.
class Limit {
 public:
  Limit(__rlimit_resource resource, rlim_t most) : m_resource(resource) {
    getrlimit(m_resource, &m_before);
    rlimit const limit{most, m_before.rlim_max};
    setrlimit(m_resource, &limit);
  }
  ~Limit() { setrlimit(m_resource, &m_before); }

 private:
  __rlimit_resource const m_resource;
  rlimit m_before{};
};

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
    ExpectInFork([&]() -> bool {
      auto const child = NChildProcess::Start(PROBE, {kMemory, "0"}, m_reason);
      probe::NMessage message{question, 0, 0};
      auto const deadline = steady_clock::now() + 200ms;
      if (child && child->Send(&message, sizeof message, {}, deadline))
        child->Receive(&message, sizeof message, deadline);
      _exit(child ? 0 : 1);
    });
    EXPECT_GT(waitpid(-1, nullptr, 0), 0) << "the grandchild";
  }
  prctl(PR_SET_CHILD_SUBREAPER, 0);
}

TEST_F(ChildProcess, OutlivesTheThreadThatStartedItAndServesNoFork) {
  std::thread([this] { Start(); }).join();
  EXPECT_EQ(Ask(probe::kDescriptors), 4);
  ExpectInFork([this] {
    bool const isRunning = m_child->IsRunning();
    m_child.reset();
    return !isRunning;
  });
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
  Limit const few(RLIMIT_NOFILE, 32);
  int const input = dup(0);
  close(0);
  Start();
  EXPECT_EQ(Ask(probe::kDescriptors), 4);
  dup2(input, 0);
  close(input);
  m_child.reset();
  auto const taken = TakeDescriptors();
  EXPECT_EQ(NChildProcess::Start(PROBE, {kMemory, "0"}, m_reason), nullptr);
  EXPECT_FALSE(CreateSharedMemory(1));
}

// What a decoding program, good or bad, may do to the host: nothing.
class Decoder : public testing::Test {
 protected:
  Decoder() : m_sound(m_files.Write("a.gif", pictures::Gif(2, 2)).ToString()) {}
  ~Decoder() override {
    SetDecoderProgram({});
    SetPictureLimits({});
    EndDecoderProgram();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
  }

  bool IsDecoded(std::wstring const& path) {
    m_reason.clear();
    return LoadPicture(path, &m_reason) != nullptr;
  }
  bool IsDecoded(char const* name) { return IsDecoded(m_files.Write(name, "x").ToString()); }

  support::TemporaryFiles const m_files;
  std::wstring const m_sound;
  std::string m_reason;
};

TEST_F(Decoder, NothingThatItAnswersIsTrusted) {
  SetDecoderProgram(LIAR);
  SetPictureLimits({.millisecondsBeyond = 300});
  EXPECT_TRUE(IsDecoded("true")) << m_reason;
  for (char const* const lie : {"width", "offset", "beyond", "length", "large", "zeros", "tiny",
                                "state", "claims", "text", "abort", "leave", "sleep", "short"}) {
    EXPECT_FALSE(IsDecoded(lie)) << lie;
    EXPECT_NE(m_reason, "") << lie;
    EXPECT_EQ(m_reason.find('\n'), std::string::npos) << lie;
  }
  for (char const* const sound : {"true", "harmed"}) EXPECT_TRUE(IsDecoded(sound)) << m_reason;
}

TEST_F(Decoder, WithoutOneTheReasonIsTold) {
  for (std::wstring const program : {L"/no/such/program", L"/etc/passwd", L"/bin/true", L"/tmp"}) {
    SetDecoderProgram(program);
    EXPECT_FALSE(IsDecoded(m_sound));
    EXPECT_NE(m_reason.find("PNG, JPEG and BMP"), std::string::npos) << m_reason;
  }
}

// The number of this process's only child; 0 if it has none, or the system doesn't tell.
pid_t GetChild() {
  std::ifstream children("/proc/self/task/" + std::to_string(getpid()) + "/children");
  pid_t child = 0;
  children >> child;
  return child;
}

TEST_F(Decoder, KilledAtWorkItIsStartedAgain) {
  SetDecoderProgram(LIAR);
  ASSERT_TRUE(IsDecoded("true")) << m_reason;
  if (GetChild() == 0) GTEST_SKIP() << "the system doesn't tell the children";
  std::jthread const killer([child = GetChild()] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    kill(child, SIGKILL);
  });
  EXPECT_TRUE(IsDecoded("slow")) << m_reason;
}

#ifdef CORVANTA_WITH_FREEIMAGE

TEST_F(Decoder, IsStartedAgainWhenItWasKilled) {
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(IsDecoded(m_sound)) << m_reason;
    pid_t const child = GetChild();
    if (child == 0) GTEST_SKIP() << "the system doesn't tell the children";
    kill(child, SIGKILL);
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT);
  }
}

TEST_F(Decoder, LittleSharedMemoryIsEnoughAndNoneIsAReason) {
  std::string const large = pictures::Tiff(2000, 1000, 2000000);
  std::wstring const path = m_files.Write("a.tif", large).ToString();
  for (rlim_t const most : {rlim_t{0}, rlim_t{1} << 20}) {
    EndDecoderProgram();
    std::optional<Limit> limit(std::in_place, RLIMIT_FSIZE, most);
    std::string reason, reasonInMemory;
    bool const isSmallDecoded = IsDecoded(m_sound);
    bool const isDecoded = LoadPicture(path, &reason) != nullptr;
    DecodePicture(large.data(), large.size(), L"a.tif", &reasonInMemory);
    limit.reset();
    EXPECT_EQ(isSmallDecoded, most != 0) << m_reason;
    EXPECT_FALSE(isDecoded);
    EXPECT_NE(reason, "");
    EXPECT_EQ(reasonInMemory, "there is no shared memory");
  }
  EndDecoderProgram();
  EXPECT_TRUE(IsDecoded(path)) << m_reason;
}

TEST_F(Decoder, WhereNoProgramMayBeStartedThreeFormatsAreLeft) {
  std::string const gif = pictures::Gif(2, 2), jpeg = pictures::Jpeg();
  ASSERT_NE(GetDecoderProgram(), L"");
  ExpectInFork([&] {
    rlimit const none{};
    setrlimit(RLIMIT_NPROC, &none);
    if (geteuid() == 0 && setresuid(65534, 65534, 65534) != 0) return false;  // it has no limit
    return !DecodePicture(gif.data(), gif.size(), L"a.gif", &m_reason) &&
           m_reason.find("can't be started") != std::string::npos &&
           DecodePicture(jpeg.data(), jpeg.size(), L"a.jpg") != nullptr;
  });
}

TEST_F(Decoder, FewDescriptorsAreEnoughAndNoneIsAReason) {
  Limit const few(RLIMIT_NOFILE, 32);
  EXPECT_TRUE(IsDecoded(m_sound)) << m_reason;
  EndDecoderProgram();
  // From all taken to just enough: no step fails otherwise than with a reason.
  auto taken = TakeDescriptors();
  bool isDecoded = false;
  for (int i = 0; i < 12 && !isDecoded; ++i) {
    isDecoded = IsDecoded(m_sound);
    EXPECT_EQ(m_reason.empty(), isDecoded);
    taken.pop_back();
  }
  EXPECT_TRUE(isDecoded);
}

TEST_F(Decoder, ServesManyThreadsAndAFork) {
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([this] {
      for (int k = 0; k < 20; ++k) EXPECT_TRUE(LoadPicture(m_sound));
    });
  threads.clear();
  ExpectInFork([this] { return LoadPicture(m_sound) != nullptr; });
  EXPECT_TRUE(IsDecoded(m_sound)) << m_reason;
}

// A picture that is cut, grown, and replaced by a pipe while it is read is itself or nothing.
TEST_F(Decoder, APictureThatChangesIsNoTrouble) {
  std::string const whole = pictures::Tiff(700, 700, 490000);
  std::wstring const path = m_files.Write("a.tif", whole).ToString();
  std::filesystem::path const at = m_files.GetFolder() / "a.tif";
  std::filesystem::path const kept = m_files.GetFolder() / "kept";
  std::filesystem::path const pipe = m_files.GetFolder() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::jthread const writer([&](std::stop_token const& stop) {
    while (!stop.stop_requested()) {
      std::filesystem::resize_file(at, 1000);
      std::filesystem::resize_file(at, whole.size());
      for (auto const& [from, to] : {std::pair(at, kept), {pipe, at}, {at, pipe}, {kept, at}})
        std::filesystem::rename(from, to);
    }
  });
  for (int i = 0; i < 300; ++i) LoadPicture(path);
  EXPECT_TRUE(IsDecoded(m_sound)) << m_reason;
}

#endif

}  // namespace
}  // namespace corvanta::platform
