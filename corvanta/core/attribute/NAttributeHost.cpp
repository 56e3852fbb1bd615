#include "corvanta/core/attribute/NAttributeHost.h"

#include <algorithm>
#include <new>

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/attribute/NAttributeContainerError.h"
#include "corvanta/core/attribute/NAttributeValues.h"
#include "corvanta/core/reference_countable/hold.h"

namespace corvanta::core::attribute {

/// A run of attributes in one allocation: this head, then `capacity` places.
struct NAttributeHost::Chunk {
  NAttributeHost* host;
  Chunk* next;
  std::uint16_t count;
  std::uint16_t capacity;
  std::uint32_t nameBits;  // NameBit of every name in here: most names that aren't in fail on it

  static std::uint32_t NameBit(detail::NNameIndex name) noexcept { return 1u << name % 32; }
  NAttribute* Places() noexcept { return reinterpret_cast<NAttribute*>(this + 1); }
};

namespace {
constexpr std::size_t kSmallestChunk = 4;
constexpr std::size_t kLargestChunk = 0xFFFF;
}  // namespace

NAttributeHost::~NAttributeHost() {
  while (m_first != nullptr) {
    Chunk* const chunk = m_first;
    m_first = chunk->next;
    for (std::uint16_t i = 0; i != chunk->count; ++i) chunk->Places()[i].~NAttribute();
    ::operator delete(chunk);
  }
}

NAttributeHost& NAttributeHost::HostOf(NAttribute const& attribute,
                                       std::uint16_t position) noexcept {
  static_assert(sizeof(Chunk) % alignof(NAttribute) == 0);
  return *(reinterpret_cast<Chunk const*>(&attribute - position) - 1)->host;
}

NAttribute* NAttributeHost::At(Chunk* chunk, std::uint16_t position) noexcept {
  return chunk->Places() + position;
}

void NAttributeHost::Advance(Chunk*& chunk, std::uint16_t& position) noexcept {
  if (++position == chunk->count) {
    chunk = chunk->next;
    position = 0;
  }
}

/// A chunk may be reserved and still empty.
NAttributeHost::Chunk* NAttributeHost::FirstFilled() const noexcept {
  return m_first != nullptr && m_first->count != 0 ? m_first : nullptr;
}

NAttributeHost::Chunk* NAttributeHost::AddChunk(std::size_t capacity) {
  void* const memory = ::operator new(sizeof(Chunk) + capacity * sizeof(NAttribute));
  auto* const chunk = new (memory) Chunk{this, nullptr, 0, static_cast<std::uint16_t>(capacity), 0};
  Chunk** end = &m_first;
  while (*end != nullptr) end = &(*end)->next;
  *end = chunk;
  return chunk;
}

void NAttributeHost::ReserveAttributes(unsigned count) {
  if (m_first == nullptr && count != 0 && count <= kLargestChunk) AddChunk(count);
}

NAttribute* NAttributeHost::AddAttribute(wchar_t const* name, bool flag) {
  return name == nullptr ? nullptr : AddAttribute(detail::InternName(name), flag);
}

NAttribute* NAttributeHost::AddAttribute(std::wstring const& name, bool flag) {
  return AddAttribute(detail::InternName(name), flag);
}

NAttribute* NAttributeHost::AddAttribute(detail::NNameIndex name, bool flag) {
  if (name == detail::kNoName || QueryAttribute(name) != nullptr) return nullptr;
  Chunk* last = m_first;
  while (last != nullptr && last->next != nullptr) last = last->next;
  if (last == nullptr) {
    last = AddChunk(kSmallestChunk);
  } else if (last->count == last->capacity) {
    last = AddChunk(std::min<std::size_t>(kLargestChunk, kSmallestChunk + last->capacity / 2));
  }
  auto* const attribute = new (last->Places() + last->count) NAttribute(name, flag, last->count);
  ++last->count;
  last->nameBits |= Chunk::NameBit(name);
  return attribute;
}

NAttribute* NAttributeHost::QueryAttribute(detail::NNameIndex name) noexcept {
  for (Chunk* chunk = m_first; chunk != nullptr; chunk = chunk->next) {
    if ((chunk->nameBits & Chunk::NameBit(name)) == 0) continue;
    for (std::uint16_t i = 0; i != chunk->count; ++i) {
      if (chunk->Places()[i].m_name == name) return chunk->Places() + i;
    }
  }
  return nullptr;
}

NAttribute* NAttributeHost::QueryAttribute(wchar_t const* name) noexcept {
  return name == nullptr ? nullptr : QueryAttribute(detail::FindName(name));
}

NAttribute* NAttributeHost::QueryAttribute(std::wstring const& name) noexcept {
  return QueryAttribute(detail::FindName(name));
}

NAttribute const* NAttributeHost::QueryAttribute(wchar_t const* name) const noexcept {
  return const_cast<NAttributeHost*>(this)->QueryAttribute(name);
}

NAttribute const* NAttributeHost::QueryAttribute(std::wstring const& name) const noexcept {
  return const_cast<NAttributeHost*>(this)->QueryAttribute(name);
}

void NAttributeHost::CopyAttributesTo(NAttributeHost& target) const {
  NAttributeValues(*this).MoveTo(target);
}

void NAttributeHost::AttributeChanged(NAttribute const& attribute, std::uint16_t position) {
  NAttributeHost& host = HostOf(attribute, position);
  // A handler may drop the last reference of the host.
  auto const held = reference_countable::Hold(host);
  host.OnAttributeChangeImpl(attribute);
}

void NAttributeHost::OnAttributeChangeImpl(NAttribute const&) {}

NAttributeContainerError::~NAttributeContainerError() = default;

wchar_t const* NAttributeContainerError::GetErrorCodeImpl() const {
  return L"Attribute Container Error";
}

}  // namespace corvanta::core::attribute
