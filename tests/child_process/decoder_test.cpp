#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <thread>

#include "corvanta/platform/descriptor.h"
#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture.h"
#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"
#include "tests/support/test.h"

namespace corvanta::platform {
namespace {

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

  bool IsDecoded(std::wstring const& path) { return LoadPicture(path, &m_reason) != nullptr; }

  support::TemporaryFiles const m_files;
  std::wstring const m_sound;
  std::string m_reason;
};

TEST_F(Decoder, NothingThatItAnswersIsTrusted) {
  SetDecoderProgram(LIAR);
  SetPictureLimits({.millisecondsBeyond = 300});
  EXPECT_TRUE(IsDecoded(m_files.Write("true", "x").ToString())) << m_reason;
  for (char const* const lie : {"width", "offset", "beyond", "length", "large", "zeros", "tiny",
                                "state", "claims", "text", "abort", "leave", "sleep", "short"}) {
    m_reason.clear();
    EXPECT_FALSE(IsDecoded(m_files.Write(lie, "x").ToString())) << lie;
    EXPECT_NE(m_reason, "") << lie;
    EXPECT_EQ(m_reason.find('\n'), std::string::npos) << lie;
  }
  for (char const* const sound : {"true", "harmed"}) {
    EXPECT_TRUE(IsDecoded(m_files.Write(sound, "x").ToString())) << m_reason;
  }
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
  ASSERT_TRUE(IsDecoded(m_files.Write("true", "x").ToString())) << m_reason;
  if (GetChild() == 0) GTEST_SKIP() << "the system doesn't tell the children";
  std::jthread const killer([child = GetChild()] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    kill(child, SIGKILL);
  });
  EXPECT_TRUE(IsDecoded(m_files.Write("slow", "x").ToString())) << m_reason;
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
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  for (rlim_t const most : {rlim_t{0}, rlim_t{1} << 20}) {
    EndDecoderProgram();
    rlimit const limit{most, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::string reason;
    bool const isSmallDecoded = IsDecoded(m_sound);
    bool const isDecoded = LoadPicture(path, &reason) != nullptr;
    std::string reasonInMemory;
    DecodePicture(large.data(), large.size(), L"a.tif", &reasonInMemory);
    setrlimit(RLIMIT_FSIZE, &before);
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
  pid_t const fork = ::fork();
  if (fork == 0) {
    rlimit const none{};
    setrlimit(RLIMIT_NPROC, &none);
    if (geteuid() == 0 && setresuid(65534, 65534, 65534) != 0) _exit(9);  // root has no such limit
    bool const isRefused = !DecodePicture(gif.data(), gif.size(), L"a.gif", &m_reason) &&
                           m_reason.find("can't be started") != std::string::npos;
    bool const isDecoded = DecodePicture(jpeg.data(), jpeg.size(), L"a.jpg") != nullptr;
    _exit((isRefused ? 0 : 1) + (isDecoded ? 0 : 2));
  }
  int status = 0;
  waitpid(fork, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(Decoder, FewDescriptorsAreEnoughAndNoneIsAReason) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit const few{32, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &few);
  EXPECT_TRUE(IsDecoded(m_sound)) << m_reason;
  EndDecoderProgram();
  // From all taken to just enough: no step fails otherwise than with a reason.
  std::vector<NDescriptor> taken;
  while (taken.emplace_back(open("/dev/null", O_RDONLY | O_CLOEXEC))) continue;
  bool isDecoded = false;
  for (int i = 0; i < 12 && !isDecoded; ++i) {
    m_reason.clear();
    isDecoded = IsDecoded(m_sound);
    EXPECT_EQ(m_reason.empty(), isDecoded);
    taken.pop_back();
  }
  EXPECT_TRUE(isDecoded);
  setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(Decoder, ServesManyThreadsAndAFork) {
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([this] {
      for (int k = 0; k < 20; ++k) EXPECT_TRUE(LoadPicture(m_sound));
    });
  threads.clear();
  pid_t const fork = ::fork();
  if (fork == 0) _exit(LoadPicture(m_sound) ? 0 : 1);
  int status = 0;
  waitpid(fork, &status, 0);
  EXPECT_EQ(status, 0);
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
