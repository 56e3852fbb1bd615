#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvanta::core::detail {

/// A hash table whose links are in its objects. It owns nothing, and nothing but its growth
/// allocates.
///
/// `Traits` has for an object `Next` (its link, by reference) and `Hash`, and for a key `Hash` and
/// `Matches(object, key)`.
template <class Object, class Traits>
class NIntrusiveTable {
 public:
  std::size_t GetSize() const noexcept { return m_size; }

  /// Requires: an object that isn't in it.
  /// Fails: throws std::bad_alloc, without a change, if it must grow: never straight after a
  /// Remove.
  void Insert(Object& object) {
    if (m_size >= kLoad * m_buckets.size()) Grow();
    Link(object);
    ++m_size;
  }
  /// Makes Insert need no memory up to `size` objects.
  void Reserve(std::size_t size) {
    while (size > kLoad * m_buckets.size()) Grow();
  }
  /// Requires: an object that is in it, with the hash that it had when it came.
  void Remove(Object& object) noexcept {
    Object** link = &BucketOf(Traits::Hash(object));
    while (*link != &object) link = &Traits::Next(**link);
    *link = Traits::Next(object);
    --m_size;
  }
  /// Fails: null if no object has that key; any of them where several have it.
  template <class Key>
  Object* Find(Key const& key) const noexcept {
    if (m_size == 0) return nullptr;
    Object* object = m_buckets[IndexOf(Traits::Hash(key))];
    while (object != nullptr && !Traits::Matches(*object, key)) object = Traits::Next(*object);
    return object;
  }
  template <class Call>
  void ForEach(Call const& call) const {
    for (Object* object : m_buckets) {
      for (; object != nullptr; object = Traits::Next(*object)) call(*object);
    }
  }
  void Clear() noexcept {
    m_buckets.clear();
    m_size = 0;
  }

 private:
  static constexpr std::size_t kLoad = 2;  // objects a bucket

  // The high bits of a product depend on every bit of the hash.
  std::size_t IndexOf(std::uint64_t hash) const noexcept {
    return static_cast<std::size_t>((hash * 0x9E3779B97F4A7C15u) >> m_shift);
  }
  Object*& BucketOf(std::uint64_t hash) noexcept { return m_buckets[IndexOf(hash)]; }
  void Link(Object& object) noexcept {
    Object*& bucket = BucketOf(Traits::Hash(object));
    Traits::Next(object) = bucket;
    bucket = &object;
  }
  void Grow() {
    std::vector<Object*> old(m_buckets.empty() ? 8 : 2 * m_buckets.size(), nullptr);
    m_shift = m_buckets.empty() ? 61 : m_shift - 1;
    old.swap(m_buckets);
    for (Object* object : old) {
      while (object != nullptr) {
        Object* const next = Traits::Next(*object);
        Link(*object);
        object = next;
      }
    }
  }

  std::vector<Object*> m_buckets;  // a power of two of them
  std::size_t m_size = 0;
  unsigned m_shift = 61;
};

}  // namespace corvanta::core::detail
