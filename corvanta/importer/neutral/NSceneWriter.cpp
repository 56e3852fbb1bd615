#include "corvanta/importer/neutral/NSceneWriter.h"

#include <algorithm>

namespace corvanta::importer::neutral {

namespace {

constexpr std::size_t RoundUp(std::size_t size) { return (size + 7) / 8 * 8; }

}  // namespace

std::pair<NHeader, std::size_t> NSceneWriter::Lay() const {
  NHeader header;
  header.up = m_up;
  header.unit = m_unit;
  std::size_t size = RoundUp(sizeof(NHeader));
  auto const lay = [&]<class T>(std::vector<T> const& stored) {
    auto& array = header.arrays[kKind<T>];
    array = {size, stored.size() + std::get<Late<T>>(m_late).count};
    size = RoundUp(size + array.count * sizeof(T));
  };
  std::apply([&](auto const&... stored) { (lay(stored), ...); }, m_stored);
  return {header, size};
}

void NSceneWriter::Write(std::byte* to) const {
  NHeader const header = Lay().first;
  std::memcpy(to, &header, sizeof(header));
  auto const write = [&]<class T>(std::vector<T> const& stored) {
    T* out = reinterpret_cast<T*>(to + header.arrays[kKind<T>].offset);
    out = std::copy(stored.begin(), stored.end(), out);
    for (auto const& [count, fill] : std::get<Late<T>>(m_late).fills) {
      fill(out);
      out += count;
    }
  };
  std::apply([&](auto const&... stored) { (write(stored), ...); }, m_stored);
}

}  // namespace corvanta::importer::neutral
