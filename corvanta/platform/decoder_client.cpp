#include "corvanta/platform/decoder_client.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

#include "corvanta/platform/child_process.h"
#include "corvanta/platform/decoded_picture.h"
#include "corvanta/platform/picture_header.h"
#include "corvanta/platform/shared_memory.h"

namespace corvanta::platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// What the program was started with.
struct Setup {
  std::wstring program;
  std::uint64_t memory = 0;
  std::uint64_t shared = 0;

  explicit Setup(NPictureLimits const& limits)
      : program(GetDecoderProgram()), shared(GetMostBytes(limits) + kSharedSlack) {
    constexpr std::uint64_t kLeast = std::uint64_t{256} << 20;
    memory = std::max(limits.memory, shared + kLeast);
  }
  bool operator==(Setup const&) const = default;
};

struct Worker {
  std::mutex mutex;
  std::unique_ptr<NChildProcess> child;
  std::unique_ptr<Setup const> setup;
  // What the child decodes into, mapped by it and here.
  NDescriptor memory;
  std::unique_ptr<NSharedMapping const> mapping;
  bool hasDecoded = false;  // the child, anything

  void End() {
    child.reset();
    hasDecoded = false;
    LetGoOfMemory();
  }
  void LetGoOfMemory() {
    mapping.reset();
    memory = NDescriptor();
  }
};

Worker& GetWorker() {
  static Worker& worker = *new Worker;
  return worker;
}

// At the host's end. A thread that is decoding then has the lock; its program ends by the socket.
void EndAtExit() {
  std::unique_lock const lock(GetWorker().mutex, std::try_to_lock);
  if (lock) GetWorker().End();
}

// What a sound picture takes at most, by decoders' own speeds: those of the second kind compute
// more for a byte.
milliseconds GetPlainTime(NPictureFormat format, std::uint64_t bytes) {
  constexpr std::uint64_t kFast = 50000, kSlow = 8000;  // bytes a millisecond
  constexpr int kTiff = 18, kExr = 29, kPfm = 32;
  bool const isSlow = format == kTiff || (format >= kExr && format != kPfm);
  return milliseconds(std::min<std::uint64_t>(bytes / (isSlow ? kSlow : kFast), 1 << 30));
}

class Question {
 public:
  Question(NDecodeKind kind, std::string const& name, NPictureLimits const& limits,
           std::uint64_t fileLength)
      : m_lock(m_worker.mutex), m_start(steady_clock::now()), m_fileLength(fileLength) {
    m_request.kind = kind;
    m_request.limits = limits;
    std::size_t const length = std::min(name.size(), sizeof m_request.name - 1);
    std::memcpy(m_request.name, name.data() + name.size() - length, length);
  }

  // A program that refuses a picture may have been harmed by an earlier one: a new one is asked
  // again.
  NDecoderOutcome Ask(int file, NDecodeAnswer& answer, std::string& reason) {
    if (!Start(reason)) return kDecoderUnavailable;
    bool const isUsed = std::exchange(m_worker.hasDecoded, true);
    NDecoderOutcome const outcome = AskOnce(file, answer, reason);
    if (outcome == kDecoderAnswered || !isUsed) return outcome;
    m_worker.End();
    std::string unused;
    if (steady_clock::now() >= GetDeadline(0, PF_BMP) || !Start(unused)) return outcome;
    m_worker.hasDecoded = true;
    reason.clear();
    return AskOnce(file, answer, reason);
  }

  std::unique_ptr<NPicture const> Take(NDecodeAnswer const& answer) {
    auto picture = answer.bytes <= GetMostBytes(m_request.limits)
                       ? TakePicture(m_worker.memory, *m_worker.mapping, answer)
                       : nullptr;
    // A program that gave anything else can't be believed about its memory either.
    if (!picture) m_worker.End();
    if (answer.bytes > kMostCopied) m_worker.LetGoOfMemory();
    return picture;
  }

 private:
  bool Start(std::string& reason) {
    Setup const setup(m_request.limits);
    bool const isAllowed = IsDecoderProgramAllowed();
    NChildProcess const* const running = m_worker.child.get();
    if (isAllowed && running && running->IsRunning() && *m_worker.setup == setup) return true;
    m_worker.End();
    if (!isAllowed || setup.program.empty()) {
      reason = isAllowed ? "there is no decoding program" : "the decoding program isn't allowed";
      return false;
    }
    static int const registered = std::atexit(&EndAtExit);
    static_cast<void>(registered);
    m_worker.setup = std::make_unique<Setup const>(setup);
    m_worker.child = NChildProcess::Start(
        setup.program,
        {kDecoderVersion, std::to_string(setup.memory), std::to_string(setup.shared)}, reason);
    NDecodeAnswer ready;
    if (!m_worker.child) return false;
    // However short the limits are, a program gets the time to start.
    constexpr std::chrono::seconds kPatience{5};
    if (m_worker.child->Receive(&ready, sizeof ready, steady_clock::now() + kPatience) &&
        ready.state == kDecoderReady)
      return true;
    reason = "the decoding program doesn't start: " + m_worker.child->End();
    m_worker.End();
    return false;
  }

  NDecoderOutcome AskOnce(int file, NDecodeAnswer& answer, std::string& reason) {
    int descriptors[2] = {file, -1};
    std::size_t count = 1;
    if (m_request.kind == kDecodePixels && !m_worker.memory) {
      if (!MakeMemory(reason)) return kDecoderRefused;
      descriptors[count++] = m_worker.memory.Get();
    }
    NChildProcess& child = *m_worker.child;
    child.LimitCpu(m_request.limits.milliseconds / 1000 + 1);
    if (child.Send(&m_request, sizeof m_request, {descriptors, count}, GetDeadline(0, PF_BMP)) &&
        Receive(child, answer)) {
      answer.text[sizeof answer.text - 1] = '\0';
      if (answer.state == kDecodeDone) return kDecoderAnswered;
      reason = answer.text[0] != 0 ? answer.text : "the decoder gave no picture";
      std::ranges::replace_if(
          reason, [](unsigned char c) { return c < ' ' || c > '~'; }, ' ');
      return kDecoderRefused;
    }
    reason = "the decoder gave no picture: " + child.End();
    m_worker.End();
    return kDecoderRefused;
  }

  bool MakeMemory(std::string& reason) {
    std::uint64_t const length = std::min(m_worker.setup->shared, GetSharedMemoryLimit());
    m_worker.memory = CreateSharedMemory(length);
    m_worker.mapping = std::make_unique<NSharedMapping const>(m_worker.memory.Get(), 0, length);
    if (m_worker.mapping->GetData()) return true;
    m_worker.LetGoOfMemory();
    reason = "there is no shared memory";
    return false;
  }

  // The first answer may tell what the header claims, and by that how long the rest may take.
  bool Receive(NChildProcess& child, NDecodeAnswer& answer) const {
    if (!child.Receive(&answer, sizeof answer, GetDeadline(m_fileLength, PF_BMP))) return false;
    if (answer.state != kDecodeClaimed) return true;
    std::uint64_t const bytes = answer.bytes != 0 ? answer.bytes : 4 * m_fileLength;
    return child.Receive(&answer, sizeof answer, GetDeadline(bytes, answer.format)) &&
           answer.state != kDecodeClaimed;
  }

  NDeadline GetDeadline(std::uint64_t bytes, NPictureFormat format) const {
    NPictureLimits const& limits = m_request.limits;
    return m_start +
           std::min(milliseconds(limits.milliseconds),
                    milliseconds(limits.millisecondsBeyond) + GetPlainTime(format, bytes));
  }

  Worker& m_worker = GetWorker();
  std::scoped_lock<std::mutex> const m_lock;
  NDecodeRequest m_request;
  NDeadline const m_start;  // after the wait for other questions, which have limits of their own
  std::uint64_t const m_fileLength;
};

}  // namespace

NDecoderOutcome AskForSize(int file, std::string const& name, NDecodeAnswer& answer,
                           std::string& reason) {
  return Question(kDecodeSize, name, GetPictureLimits(), 0).Ask(file, answer, reason);
}

NDecoderOutcome AskForPicture(int file, std::string const& name, std::uint64_t fileLength,
                              std::unique_ptr<NPicture const>& picture, std::string& reason) {
  Question question(kDecodePixels, name, GetPictureLimits(), fileLength);
  NDecodeAnswer answer;
  NDecoderOutcome const outcome = question.Ask(file, answer, reason);
  if (outcome != kDecoderAnswered) return outcome;
  picture = question.Take(answer);
  if (picture) return kDecoderAnswered;
  reason = "its decoder gave what isn't a picture";
  return kDecoderRefused;
}

void EndDecoderProgram() {
  std::scoped_lock const lock(GetWorker().mutex);
  GetWorker().End();
}

}  // namespace corvanta::platform
