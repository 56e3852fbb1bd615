#include "corvanta/core/attribute/detail/interned_name.h"

#include <array>
#include <atomic>
#include <boost/thread/mutex.hpp>
#include <functional>
#include <memory>
#include <vector>

namespace corvanta::core::attribute::detail {

namespace {

constexpr std::size_t kChunkSize = 1024;
constexpr std::size_t kChunkCount = 1024;

struct Record {
  std::wstring text;
  std::size_t hash = 0;
  std::atomic<NNameEffects> effects{0};
};

/// An open-addressed table of name numbers. It is replaced, never changed in place, when it grows,
/// and the old ones stay: a reader may still be in one.
struct Buckets {
  explicit Buckets(std::size_t size) : slots(size) {}
  std::vector<std::atomic<NNameIndex>> slots;
};

class NameTable {
 public:
  static NameTable& Get() {
    static NameTable& table = *new NameTable;  // outlives every object that has attributes
    return table;
  }

  Record& At(NNameIndex index) noexcept {
    return m_chunks[index / kChunkSize].load(std::memory_order_acquire)[index % kChunkSize];
  }

  NNameIndex Find(std::wstring_view name, std::size_t hash) noexcept {
    Buckets const& buckets = *m_buckets.load(std::memory_order_acquire);
    std::size_t const mask = buckets.slots.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
      NNameIndex const index = buckets.slots[i].load(std::memory_order_acquire);
      if (index == kNoName) return kNoName;
      Record const& record = At(index);
      if (record.hash == hash && record.text == name) return index;
    }
  }

  NNameIndex Intern(std::wstring_view name) {
    std::size_t const hash = std::hash<std::wstring_view>()(name);
    if (NNameIndex const found = Find(name, hash)) return found;
    boost::mutex::scoped_lock const lock(m_mutex);
    if (NNameIndex const found = Find(name, hash)) return found;
    if (m_count == kChunkSize * kChunkCount) return kNoName;
    auto& chunk = m_chunks[m_count / kChunkSize];
    if (chunk.load(std::memory_order_relaxed) == nullptr) {
      chunk.store(new Record[kChunkSize], std::memory_order_release);
    }
    if (2 * (m_count + 1) > m_buckets.load(std::memory_order_relaxed)->slots.size()) Grow();
    Record& record = At(static_cast<NNameIndex>(m_count));
    record.text = name;
    record.hash = hash;
    Enter(*m_buckets.load(std::memory_order_relaxed), static_cast<NNameIndex>(m_count), hash);
    return static_cast<NNameIndex>(m_count++);
  }

 private:
  NameTable() {
    m_tables.push_back(std::make_unique<Buckets>(1024));
    m_buckets.store(m_tables.back().get(), std::memory_order_release);
    m_chunks[0].store(new Record[kChunkSize], std::memory_order_release);
  }

  static void Enter(Buckets& buckets, NNameIndex index, std::size_t hash) noexcept {
    std::size_t const mask = buckets.slots.size() - 1;
    std::size_t i = hash & mask;
    while (buckets.slots[i].load(std::memory_order_relaxed) != kNoName) i = (i + 1) & mask;
    buckets.slots[i].store(index, std::memory_order_release);
  }

  void Grow() {
    Buckets const& old = *m_tables.back();
    auto grown = std::make_unique<Buckets>(2 * old.slots.size());
    for (auto const& slot : old.slots) {
      NNameIndex const index = slot.load(std::memory_order_relaxed);
      if (index != kNoName) Enter(*grown, index, At(index).hash);
    }
    m_tables.push_back(std::move(grown));
    m_buckets.store(m_tables.back().get(), std::memory_order_release);
  }

  boost::mutex m_mutex;
  std::array<std::atomic<Record*>, kChunkCount> m_chunks{};
  std::size_t m_count = 1;  // 0 is kNoName
  std::vector<std::unique_ptr<Buckets>> m_tables;
  std::atomic<Buckets*> m_buckets{nullptr};
};

}  // namespace

NNameIndex InternName(std::wstring_view name, NNameEffects effects) {
  NameTable& table = NameTable::Get();
  NNameIndex const index = table.Intern(name);
  if (effects != 0 && index != kNoName) {
    table.At(index).effects.fetch_or(effects, std::memory_order_relaxed);
  }
  return index;
}

NNameIndex FindName(std::wstring_view name) noexcept {
  return NameTable::Get().Find(name, std::hash<std::wstring_view>()(name));
}

std::wstring const& GetNameText(NNameIndex index) noexcept {
  return NameTable::Get().At(index).text;
}

NNameEffects GetNameEffects(NNameIndex index) noexcept {
  return NameTable::Get().At(index).effects.load(std::memory_order_relaxed);
}

}  // namespace corvanta::core::attribute::detail
