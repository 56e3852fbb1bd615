#include "corvanta/platform/decoded_picture.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace corvanta::platform {

namespace {

// The head of a bitmap as the program gives it, judged before anything else relies on it.
bool IsWhole(unsigned char const* bytes, std::uint64_t length) {
  constexpr std::size_t kHeader = 40;
  if (length < kHeader) return false;
  auto const word = [bytes](std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes + at, size);
    return std::uint64_t{value};
  };
  constexpr std::uint64_t kDepths[] = {1, 4, 8, 16, 24, 32, 48, 64, 96, 128};
  std::uint64_t const width = word(4, 4), height = word(8, 4), bits = word(14, 2);
  std::uint64_t const colors = bits <= 8 ? word(32, 4) : 0;
  std::uint64_t const masks = bits == 16 && word(16, 4) == 3 ? 12 : 0;
  constexpr std::uint64_t kMostSide = INT32_MAX;
  if (word(0, 4) != kHeader || width - 1 >= kMostSide || height - 1 >= kMostSide ||
      std::ranges::find(kDepths, bits) == std::end(kDepths) || colors > 256)
    return false;
  std::uint64_t const pitch = (width * bits + 31) / 32 * 4;
  std::uint64_t const head = kHeader + 4 * colors + masks;
  constexpr std::uintptr_t kAlignment = 16;
  if ((reinterpret_cast<std::uintptr_t>(bytes) + head) % kAlignment != 0) return false;
  return length >= head && (length - head) % height == 0 && (length - head) / height == pitch;
}

// The pixels stay where the program put them. They aren't frozen, since that can wait for all
// processors: what could still change is the pixels' values, never the head, whose pages are made
// this process's own by writing to them before they are judged.
class SharedPicture : public NPicture {
 public:
  SharedPicture(int memory, NDecodeAnswer const& answer)
      : m_mapping(memory, answer.offset, static_cast<std::size_t>(answer.bytes)),
        m_pixelType(answer.pixelType) {
    constexpr std::size_t kMostHead = 40 + 4 * 256 + 12;  // less than a page
    if (!GetBytes()) return;
    for (std::size_t const at : {std::size_t{0}, std::min(kMostHead, m_mapping.GetLength() - 1)}) {
      unsigned char volatile& byte = m_mapping.GetData()[at];
      byte = static_cast<unsigned char>(byte);
    }
  }

  unsigned char const* GetBytes() const { return m_mapping.GetData(); }
  void const* GetInfoHeader() const override { return GetBytes(); }
  unsigned int GetByteLength() const override {
    return static_cast<unsigned int>(m_mapping.GetLength());
  }
  NPixelType GetPixelType() const override { return m_pixelType; }

 private:
  NSharedMapping const m_mapping;
  NPixelType const m_pixelType;
};

struct Free {
  void operator()(unsigned char* block) const { std::free(block); }
};
using Block = std::unique_ptr<unsigned char, Free>;

// Room at an address divisible by 16. A large one takes the system's large pages where it has them:
// taking small ones costs several times what filling them does.
Block Allocate(std::size_t length) {
  constexpr std::size_t kLargePage = std::size_t{2} << 20;
  std::size_t const alignment = length < 2 * kLargePage ? 16 : kLargePage;
  std::size_t const rounded = (length + alignment - 1) / alignment * alignment;
  Block block(static_cast<unsigned char*>(std::aligned_alloc(alignment, rounded)));
  if (!block) throw std::bad_alloc();
  if (alignment == kLargePage) madvise(block.get(), rounded, MADV_HUGEPAGE);
  return block;
}

class CopiedPicture : public NPicture {
 public:
  CopiedPicture(unsigned char const* from, NDecodeAnswer const& answer)
      : m_lead(answer.offset % 16),
        m_length(static_cast<std::size_t>(answer.bytes)),
        m_pixelType(answer.pixelType),
        m_block(Allocate(m_lead + m_length)) {
    std::memcpy(m_block.get() + m_lead, from, m_length);
  }

  unsigned char const* GetBytes() const { return m_block.get() + m_lead; }
  void const* GetInfoHeader() const override { return GetBytes(); }
  unsigned int GetByteLength() const override { return static_cast<unsigned int>(m_length); }
  NPixelType GetPixelType() const override { return m_pixelType; }

 private:
  std::size_t const m_lead;
  std::size_t const m_length;
  NPixelType const m_pixelType;
  Block const m_block;
};

}  // namespace

std::unique_ptr<NPicture const> TakePicture(NDescriptor const& memory,
                                            NSharedMapping const& mapping,
                                            NDecodeAnswer const& answer) {
  std::uint64_t const length = mapping.GetLength();
  if (answer.bytes == 0 || answer.bytes > length || answer.offset > length - answer.bytes)
    return nullptr;
  if (answer.bytes > kMostCopied) {
    auto picture = std::make_unique<SharedPicture const>(memory.Get(), answer);
    if (picture->GetBytes() && IsWhole(picture->GetBytes(), answer.bytes)) return picture;
  } else {
    auto picture = std::make_unique<CopiedPicture const>(mapping.GetData() + answer.offset, answer);
    if (IsWhole(picture->GetBytes(), answer.bytes)) return picture;
  }
  return nullptr;
}

}  // namespace corvanta::platform
