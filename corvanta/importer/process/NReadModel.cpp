#include "corvanta/importer/process/NReadModel.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <system_error>

#include "corvanta/core/text/message.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/process/NModelFolder.h"
#include "corvanta/importer/process/read_messages.h"
#include "corvanta/platform/child_process.h"

namespace corvanta::importer {

namespace {

using platform::NChildProcess;
using platform::NDescriptor;
using std::chrono::steady_clock;

class Reading {
 public:
  Reading(std::filesystem::path const& path, NImportLimits const& limits)
      : m_path(path),
        m_folder(path),
        m_limits(limits),
        m_deadline(steady_clock::now() + limits.timeout),
        m_memory(platform::CreateSharedMemory(
            std::min(limits.memory, platform::GetSharedMemoryLimit()))) {
    if (!m_memory) throw NImportError("there is no shared memory to read it into");
    Start();
  }

  std::unique_ptr<platform::NSharedMapping const> GetScene() {
    std::uint64_t const size = Ask();
    if (size == 0 || size > m_limits.memory || !platform::FreezeSharedMemory(m_memory.Get())) {
      throw NImportError("the reader's result is damaged");
    }
    auto mapping = std::make_unique<platform::NSharedMapping const>(m_memory.Get(), 0, size);
    if (mapping->GetData() == nullptr) throw NImportError("its scene can't be mapped");
    return mapping;
  }
  std::vector<std::string> const& GetFiles() const { return m_folder.GetOpened(); }

 private:
  void Start() {
    std::wstring const program = GetReaderProgram();
    if (program.empty()) throw NImportError("the program that reads model files isn't there");
    std::string reason;
    m_child =
        NChildProcess::Start(program, {kReaderVersion, std::to_string(m_limits.memory)}, reason);
    if (!m_child) throw NImportError("the program that reads model files can't start: " + reason);
    m_child->LimitCpu(static_cast<unsigned>(m_limits.timeout.count() / 1000 + 1));
    if (Receive().state != kReadReady) Refuse();
  }

  // The size of the scene.
  std::uint64_t Ask() {
    NReadRequest request{};
    std::string const path = m_path.string();
    if (path.size() >= sizeof request.path) throw NImportError("its path is too long");
    path.copy(request.path, path.size());
    Send(request, m_memory);
    NReadAnswer answer = Receive();
    for (; answer.state == kReadOpen; answer = Receive()) {
      // One that asks faster than it is answered is never waited for.
      if (steady_clock::now() >= m_deadline) Refuse();
      NDescriptor const file = m_folder.Open(GetText(answer));
      Send(NOpenAnswer{file ? 1u : 0u}, file);
    }
    if (answer.state == kReadFailed) throw NImportError(GetText(answer));
    if (answer.state == kReadTooLarge) {
      throw NImportError("it takes more than " + core::text::NumberText(GetMegabytes()) +
                         " MB to read");
    }
    if (answer.state != kReadDone) Refuse();
    return answer.size;
  }

  template <class Message>
  void Send(Message const& message, NDescriptor const& descriptor) {
    int const number = descriptor.Get();
    std::size_t const count = descriptor ? 1 : 0;
    if (!m_child->Send(&message, sizeof message, {&number, count}, m_deadline)) Refuse();
  }

  NReadAnswer Receive() {
    NReadAnswer answer;
    if (!m_child->Receive(&answer, sizeof answer, m_deadline)) Refuse();
    return answer;
  }

  [[noreturn]] void Refuse() {
    bool const isLate = steady_clock::now() >= m_deadline;
    std::string const end = m_child->End();
    if (!isLate) throw NImportError("the reader gave no scene: " + end);
    double const seconds = std::chrono::duration<double>(m_limits.timeout).count();
    throw NImportError("it takes longer than " + core::text::NumberText(seconds) + " s to read");
  }

  static std::string GetText(NReadAnswer const& answer) {
    return {answer.text, std::min<std::size_t>(answer.length, sizeof answer.text)};
  }
  double GetMegabytes() const { return static_cast<double>(m_limits.memory >> 10) / 1024.0; }

  std::filesystem::path const& m_path;
  NModelFolder m_folder;
  NImportLimits const m_limits;
  platform::NDeadline const m_deadline;
  NDescriptor const m_memory;
  std::unique_ptr<NChildProcess> m_child;
};

}  // namespace

std::string ReadFormats(NImportLimits const& limits) {
  std::filesystem::path const none;
  auto const text = Reading(none, limits).GetScene();
  return {reinterpret_cast<char const*>(text->GetData()), text->GetLength()};
}

NReadModel::NReadModel(std::filesystem::path const& path, NImportLimits const& limits) {
  std::error_code error;
  auto const status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) throw NImportError("no such file");
  if (!std::filesystem::is_regular_file(status)) throw NImportError("not a file");
  Reading reading(path, limits);
  m_mapping = reading.GetScene();
  m_files = reading.GetFiles();
}

std::span<std::byte const> NReadModel::GetBlock() const {
  return std::as_bytes(std::span(m_mapping->GetData(), m_mapping->GetLength()));
}

}  // namespace corvanta::importer
