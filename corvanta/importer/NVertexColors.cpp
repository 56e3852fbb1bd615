#include "corvanta/importer/NVertexColors.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "corvanta/core/text/message.h"

namespace corvanta::importer {

namespace {

using neutral::NTexel;

constexpr std::size_t kMostCells = std::size_t{2048} * 2048;
// So many have a border of one pixel, which smaller pictures of the picture don't cross.
constexpr std::size_t kMostWithBorder = 16384;

// Pixels of a cell. What lies beyond the third side of a triangle may be no colour, so that the
// colours along that side are the truer the finer a cell is.
std::size_t GetSide(std::size_t cellCount) {
  if (cellCount <= 1024) return 16;
  if (cellCount <= 4096) return 8;
  return cellCount <= kMostWithBorder ? 4 : 2;
}
constexpr NTexel kWhite{255, 255, 255, 255};

// Between the bytes of a picture and linear light: IEC 61966-2-1. The last is the opacity.
class Transfer {
 public:
  Transfer() {
    for (std::size_t i = 0; i != m_linear.size(); ++i) {
      double const value = static_cast<double>(i) / 255.0;
      m_linear[i] = static_cast<float>(value <= 0.04045 ? value / 12.92
                                                        : std::pow((value + 0.055) / 1.055, 2.4));
    }
    for (std::size_t i = 0; i != m_bytes.size(); ++i) {
      double const value = static_cast<double>(i) / static_cast<double>(m_bytes.size() - 1);
      double const shown =
          value <= 0.0031308 ? 12.92 * value : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
      m_bytes[i] = static_cast<unsigned char>(std::lround(255.0 * shown));
    }
  }

  // Where the plane through the colours of three corners is, at (x, y) from the first.
  NTexel Extend(std::array<NTexel, 3> const& corners, float x, float y) const {
    NTexel texel;
    for (std::size_t k = 0; k != 4; ++k) {
      bool const isLight = k != 3;
      auto const get = [&](NTexel const& corner) {
        return isLight ? m_linear[corner[k]] : static_cast<float>(corner[k]) / 255.0f;
      };
      float const first = get(corners[0]);
      float const value = first + x * (get(corners[1]) - first) + y * (get(corners[2]) - first);
      float const part = std::clamp(value, 0.0f, 1.0f);
      auto const last = static_cast<float>(m_bytes.size() - 1);
      texel[k] = isLight ? m_bytes[static_cast<std::size_t>(part * last + 0.5f)]
                         : static_cast<unsigned char>(part * 255.0f + 0.5f);
    }
    return texel;
  }

 private:
  std::array<float, 256> m_linear{};
  std::array<unsigned char, 16384> m_bytes{};
};

std::uint32_t ToKey(NTexel const& texel) { return std::bit_cast<std::uint32_t>(texel); }

bool IsFlat(std::array<NTexel, 3> const& cell) { return cell[0] == cell[1] && cell[0] == cell[2]; }

}  // namespace

NVertexColors::NVertexColors(neutral::NSceneView const& scene)
    : m_scene(scene), m_firsts(scene.Get<neutral::NMesh>().size(), kNone) {
  for (std::size_t i = 0; i != m_firsts.size(); ++i) {
    auto const& mesh = scene.Get<neutral::NMesh>()[i];
    auto const colors = scene.Get(mesh.colors);
    bool const isWhite = std::all_of(colors.begin(), colors.end(),
                                     [](NTexel const& color) { return color == kWhite; });
    if (isWhite || mesh.triangles.count == 0) continue;
    std::size_t const first = m_numbers.size();
    if (AddMesh(mesh)) {
      m_firsts[i] = first;
    } else {
      ++m_leftOutCount;
      m_numbers.resize(first);
    }
  }
  m_side = GetSide(m_cells.size());
  m_border = m_side > 2 ? 1 : 0;
  while (m_columns * m_columns < m_cells.size()) m_columns *= 2;
}

// Fails: false where there is no room for all its colours.
bool NVertexColors::AddMesh(neutral::NMesh const& mesh) {
  auto const colors = m_scene.Get(mesh.colors);
  std::size_t const before = m_cells.size();
  for (neutral::NTriangle const& triangle : m_scene.Get(mesh.triangles)) {
    Cell const cell{colors[triangle[0]], colors[triangle[1]], colors[triangle[2]]};
    auto number = static_cast<std::uint32_t>(m_cells.size());
    if (IsFlat(cell)) number = m_flats.try_emplace(ToKey(cell[0]), number).first->second;
    if (number == m_cells.size()) m_cells.push_back(cell);
    m_numbers.push_back(number);
    if (m_cells.size() <= kMostCells) continue;
    m_cells.resize(before);
    std::erase_if(m_flats, [before](auto const& entry) { return entry.second >= before; });
    return false;
  }
  return true;
}

std::size_t NVertexColors::GetHeight() const {
  return (m_cells.size() + m_columns - 1) / m_columns * m_side;
}

NCornerColors NVertexColors::GetCornerColors(std::size_t mesh) const {
  if (!Has(mesh)) return {};
  return [this, mesh](std::size_t corner) { return GetCoords(mesh, corner); };
}

std::array<float, 2> NVertexColors::GetCoords(std::size_t mesh, std::size_t corner) const {
  std::uint32_t const number = m_numbers[m_firsts[mesh] + corner / 3];
  Cell const& cell = m_cells[number];
  // The ends of a line stay two.
  std::size_t const k =
      IsFlat(cell) ? 0 : std::min(corner % 3, std::size_t{cell[1] == cell[2] ? 1u : 2u});
  std::size_t const length = GetLength();
  auto const column =
      static_cast<float>(number % m_columns * m_side + m_border + (k == 1 ? length : 0));
  auto const row =
      static_cast<float>(number / m_columns * m_side + m_border + (k == 2 ? length : 0));
  return {(column + 0.5f) / static_cast<float>(m_columns * m_side),
          1.0f - (row + 0.5f) / static_cast<float>(GetHeight())};
}

std::vector<unsigned char> NVertexColors::MakePicture() const {
  if (m_cells.empty()) return {};
  Transfer const transfer;
  std::size_t const width = m_columns * m_side, height = GetHeight();
  auto const low = [](std::size_t size) { return static_cast<unsigned char>(size & 0xFF); };
  // 32 bits a pixel, rows from the top.
  std::vector<unsigned char> bytes{0,           0,
                                   2,           0,
                                   0,           0,
                                   0,           0,
                                   0,           0,
                                   0,           0,
                                   low(width),  low(width >> 8),
                                   low(height), low(height >> 8),
                                   32,          0x28};
  std::size_t const head = bytes.size();
  bytes.resize(head + 4 * width * height);
  auto const place = [this](std::size_t pixel) {
    return (static_cast<float>(pixel) - static_cast<float>(m_border)) /
           static_cast<float>(GetLength());
  };
  for (std::size_t i = 0; i != m_cells.size(); ++i) {
    bool const isFlat = IsFlat(m_cells[i]);
    for (std::size_t y = 0; y != m_side; ++y) {
      for (std::size_t x = 0; x != m_side; ++x) {
        NTexel const texel =
            isFlat ? m_cells[i][0] : transfer.Extend(m_cells[i], place(x), place(y));
        std::size_t const row = i / m_columns * m_side + y, column = i % m_columns * m_side + x;
        unsigned char* const to = &bytes[head + 4 * (row * width + column)];
        to[0] = texel[2];
        to[1] = texel[1];
        to[2] = texel[0];
        to[3] = texel[3];
      }
    }
  }
  return bytes;
}

std::vector<std::string> NVertexColors::GetNotes() const {
  if (m_leftOutCount == 0) return {};
  return {core::text::Plural(m_leftOutCount,
                             "mesh has too many vertex colours, which were left out",
                             "meshes have too many vertex colours, which were left out")};
}

}  // namespace corvanta::importer
