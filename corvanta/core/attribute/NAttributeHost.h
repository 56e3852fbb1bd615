#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <type_traits>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute {

/// An object with named attributes. Attributes are added, never removed, and keep their address.
class CORVANTA_API NAttributeHost
    : public virtual reference_countable::NReferenceCountableWithWeakReference {
  struct Chunk;

 public:
  /// Walks the attributes in order of creation.
  template <bool kIsConst>
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = NAttribute;
    using difference_type = std::ptrdiff_t;
    using reference = std::conditional_t<kIsConst, NAttribute const&, NAttribute&>;
    using pointer = std::conditional_t<kIsConst, NAttribute const*, NAttribute*>;

    Iterator() noexcept = default;
    reference operator*() const noexcept { return *NAttributeHost::At(m_chunk, m_position); }
    pointer operator->() const noexcept { return NAttributeHost::At(m_chunk, m_position); }
    Iterator& operator++() noexcept {
      NAttributeHost::Advance(m_chunk, m_position);
      return *this;
    }
    Iterator operator++(int) noexcept {
      Iterator const before = *this;
      ++*this;
      return before;
    }
    bool operator==(Iterator const&) const noexcept = default;

   private:
    friend class NAttributeHost;
    explicit Iterator(Chunk* chunk) noexcept : m_chunk(chunk) {}

    Chunk* m_chunk = nullptr;
    std::uint16_t m_position = 0;
  };
  using AttributeIterator = Iterator<false>;
  using AttributeConstIterator = Iterator<true>;

  /// Makes an attribute without a value. `flag` says whether a writer should save it.
  /// Fails: null if there is one of that name, for a null name, or if the process has too many
  /// names.
  NAttribute* AddAttribute(wchar_t const* name, bool flag);
  NAttribute* AddAttribute(std::wstring const& name, bool flag);
  /// Fails: null if there is none of that name.
  NAttribute* QueryAttribute(wchar_t const* name) noexcept;
  NAttribute const* QueryAttribute(wchar_t const* name) const noexcept;
  NAttribute* QueryAttribute(std::wstring const& name) noexcept;
  NAttribute const* QueryAttribute(std::wstring const& name) const noexcept;
  /// The same by the number of an interned name.
  NAttribute* AddAttribute(detail::NNameIndex name, bool flag);
  NAttribute* QueryAttribute(detail::NNameIndex name) noexcept;

  AttributeIterator GetAttributeBegin() noexcept { return AttributeIterator(FirstFilled()); }
  AttributeIterator GetAttributeEnd() noexcept { return AttributeIterator(); }
  AttributeConstIterator GetAttributeBegin() const noexcept {
    return AttributeConstIterator(FirstFilled());
  }
  AttributeConstIterator GetAttributeEnd() const noexcept { return AttributeConstIterator(); }

  /// Sets each attribute that both hosts have and that holds a value here, to the value that it had
  /// when the copying began.
  /// Raises: the target's change hook for each, in order of creation.
  /// Fails: throws std::bad_alloc, without a change.
  void CopyAttributesTo(NAttributeHost& target) const;

 protected:
  NAttributeHost() noexcept = default;
  NAttributeHost(NAttributeHost const&) = delete;
  NAttributeHost& operator=(NAttributeHost const&) = delete;
  ~NAttributeHost() override;

  /// Makes room for `count` attributes, so that they are in one piece.
  void ReserveAttributes(unsigned count);

  /// Called after a value was set with notification: rules 1 to 8 of docs/events.md.
  virtual void OnAttributeChangeImpl(NAttribute const& attribute);

 private:
  friend class NAttribute;

  static NAttributeHost& HostOf(NAttribute const& attribute, std::uint16_t position) noexcept;
  static NAttribute* At(Chunk* chunk, std::uint16_t position) noexcept;
  static void Advance(Chunk*& chunk, std::uint16_t& position) noexcept;
  static void AttributeChanged(NAttribute const& attribute, std::uint16_t position);
  Chunk* FirstFilled() const noexcept;
  Chunk* AddChunk(std::size_t capacity);

  Chunk* m_first = nullptr;
};

}  // namespace corvanta::core::attribute
