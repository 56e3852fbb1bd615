#include "decoder/answer.h"

#include <unistd.h>

#include <cstring>
#include <memory>
#include <new>
#include <optional>

#include "corvanta/platform/decode_file.h"
#include "corvanta/platform/file.h"
#include "decoder/shared_blocks.h"

namespace corvanta::decoder {

namespace {

using namespace platform;

void SetText(NDecodeAnswer& answer, std::string const& text) {
  std::size_t const length = std::min(text.size(), sizeof answer.text - 1);
  std::memcpy(answer.text, text.data(), length);
  answer.text[length] = '\0';
}

void SetClaim(NDecodeAnswer& answer, NPictureClaim const& claim) {
  answer.width = claim.width;
  answer.height = claim.height;
  answer.bytes = claim.GetBytes();
}

// Where the picture is in the shared memory, copied there if it isn't in it yet: a small one, and
// any whose decoder took its memory some other way.
std::optional<std::uint64_t> Place(NPicture const& picture, NSharedBlocks& blocks) {
  auto const* const header = static_cast<unsigned char const*>(picture.GetInfoHeader());
  if (auto const offset = blocks.GetOffset(header)) return offset;
  // The rows' address is to stay divisible by 16.
  std::size_t const lead = reinterpret_cast<std::uintptr_t>(header) % 16;
  auto* const room = static_cast<unsigned char*>(blocks.Allocate(lead + picture.GetByteLength()));
  if (!room) return std::nullopt;
  std::memcpy(room + lead, header, picture.GetByteLength());
  return blocks.GetOffset(room + lead);
}

class Work {
 public:
  Work(NDecodeRequest const& request, NFile file, std::uint64_t length)
      : m_request(request), m_file(std::move(file)), m_length(length) {
    std::size_t const end = strnlen(request.name, sizeof request.name);
    m_answer.format = JudgeFormat(*m_file, std::string(request.name, end));
  }

  NDecodeAnswer GetSize() {
    std::string reason;
    auto const claim = ReadClaim(m_answer.format, *m_file, m_length, m_request.limits, reason);
    if (claim) SetClaim(m_answer, *claim);
    return Finish(claim.has_value(), reason);
  }

  NDecodeAnswer GetPixels(std::function<void(NDecodeAnswer const&)> const& tell) {
    std::string reason;
    std::optional<std::uint64_t> const offset = Decode(tell, reason);
    m_answer.offset = SettleSharedBlocks(offset.value_or(0), offset ? m_answer.bytes : 0);
    return Finish(offset.has_value(), reason);
  }

 private:
  std::optional<std::uint64_t> Decode(std::function<void(NDecodeAnswer const&)> const& tell,
                                      std::string& reason) {
    NSharedBlocks blocks;
    reason = "there is no shared memory";
    if (!blocks.IsMapped()) return std::nullopt;
    auto const onClaim = [&](NPictureClaim const& claim) {
      NDecodeAnswer claimed = m_answer;
      claimed.state = kDecodeClaimed;
      SetClaim(claimed, claim);
      tell(claimed);
    };
    auto const picture =
        DecodeFile(m_answer.format, *m_file, m_length, m_request.limits, onClaim, reason);
    if (!picture) return std::nullopt;
    m_answer.pixelType = picture->GetPixelType();
    m_answer.bytes = picture->GetByteLength();
    std::optional<std::uint64_t> const offset = Place(*picture, blocks);
    if (!offset) reason = "there is no room for it";
    return offset;
  }

  NDecodeAnswer Finish(bool good, std::string const& reason) {
    m_answer.state = good ? kDecodeDone : kDecodeFailed;
    SetText(m_answer, reason);
    return m_answer;
  }

  NDecodeRequest const& m_request;
  NFile const m_file;
  std::uint64_t const m_length;
  NDecodeAnswer m_answer;
};

}  // namespace

NDecodeAnswer AnswerRequest(NDecodeRequest const& request, NDescriptor file,
                            std::function<void(NDecodeAnswer const&)> const& tell) {
  NDecodeAnswer failed;
  try {
    // By a seek: see shared_blocks.cpp.
    off_t const length = lseek(file.Get(), 0, SEEK_END);
    NFile stream(length >= 0 ? fdopen(file.Get(), "rb") : nullptr);
    if (!stream) {
      SetText(failed, "there is no file");
      return failed;
    }
    file.Release();
    Work work(request, std::move(stream), static_cast<std::uint64_t>(length));
    return request.kind == kDecodePixels ? work.GetPixels(tell) : work.GetSize();
  } catch (std::bad_alloc const&) {
    SetText(failed, "it takes too much memory");
  } catch (...) {
    SetText(failed, "its decoder gave up");
  }
  return failed;
}

}  // namespace corvanta::decoder
