#include "corvanta/core/node/NNodeID.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cstring>
#include <new>
#include <optional>

namespace corvanta::core::node {

namespace {

std::optional<std::uint8_t> HexDigit(wchar_t digit) noexcept {
  if (digit >= L'0' && digit <= L'9') return static_cast<std::uint8_t>(digit - L'0');
  if (digit >= L'a' && digit <= L'f') return static_cast<std::uint8_t>(digit - L'a' + 10);
  if (digit >= L'A' && digit <= L'F') return static_cast<std::uint8_t>(digit - L'A' + 10);
  return std::nullopt;
}

/// 8-4-4-4-12 hexadecimal digits with hyphens between, in braces or not.
std::optional<boost::uuids::uuid> ParseGuid(std::wstring const& text) noexcept {
  constexpr std::size_t kLength = 36;
  std::size_t at = 0;
  if (text.size() == kLength + 2 && text.front() == L'{' && text.back() == L'}') {
    at = 1;
  } else if (text.size() != kLength) {
    return std::nullopt;
  }
  boost::uuids::uuid uuid;
  for (std::size_t byte = 0; byte != 16; ++byte) {
    if (byte == 4 || byte == 6 || byte == 8 || byte == 10) {
      if (text[at++] != L'-') return std::nullopt;
    }
    auto const high = HexDigit(text[at]);
    auto const low = HexDigit(text[at + 1]);
    if (!high || !low) return std::nullopt;
    uuid.data[byte] = static_cast<std::uint8_t>(*high << 4 | *low);
    at += 2;
  }
  return uuid;
}

std::atomic<unsigned> g_forks{0};  // in the line of processes down to this one

/// A thread's source of ids, made of the system's entropy, and again in the child of a fork.
class Generator {
 public:
  boost::uuids::uuid Next() {
    unsigned const forks = g_forks.load(std::memory_order_relaxed);
    if (!m_generator || m_forks != forks) {
      static bool const isCounting = pthread_atfork(nullptr, nullptr, [] {
                                       g_forks.fetch_add(1, std::memory_order_relaxed);
                                     }) == 0;
      if (!isCounting) throw std::bad_alloc();
      m_generator.emplace();
      m_forks = forks;
    }
    return (*m_generator)();
  }

 private:
  std::optional<boost::uuids::random_generator_mt19937> m_generator;
  unsigned m_forks = 0;
};

}  // namespace

NNodeID::NNodeID() {
  thread_local Generator generator;
  m_uuid = generator.Next();
}

NNodeID::NNodeID(std::wstring const& text) : m_uuid{} {
  if (auto const uuid = ParseGuid(text)) {
    m_uuid = *uuid;
  } else {
    m_text = std::make_unique<std::wstring>(text);
  }
}

NNodeID::NNodeID(wchar_t const* text) : NNodeID(std::wstring(text == nullptr ? L"" : text)) {}

NNodeID::NNodeID(NNodeID const& other)
    : m_uuid(other.m_uuid),
      m_text(other.m_text ? std::make_unique<std::wstring>(*other.m_text) : nullptr) {}

NNodeID& NNodeID::operator=(NNodeID const& other) {
  if (this != &other) *this = NNodeID(other);
  return *this;
}

std::wstring NNodeID::ToString() const {
  if (m_text) return *m_text;
  std::wstring text = boost::uuids::to_wstring(m_uuid);
  std::transform(text.begin(), text.end(), text.begin(), [](wchar_t digit) {
    return digit >= L'a' && digit <= L'f' ? static_cast<wchar_t>(digit - L'a' + L'A') : digit;
  });
  return text;
}

std::size_t NNodeID::GetHash() const noexcept {
  if (m_text) return std::hash<std::wstring>()(*m_text);
  std::size_t words[2];
  std::memcpy(words, m_uuid.data, sizeof words);
  return words[0] ^ (words[1] * 0x9E3779B97F4A7C15u);
}

bool NNodeID::operator==(NNodeID const& other) const noexcept {
  if (!m_text != !other.m_text) return false;
  return m_text ? *m_text == *other.m_text : m_uuid == other.m_uuid;
}

bool NNodeID::operator<(NNodeID const& other) const noexcept {
  if (!m_text != !other.m_text) return !m_text;
  return m_text ? *m_text < *other.m_text : m_uuid < other.m_uuid;
}

}  // namespace corvanta::core::node
