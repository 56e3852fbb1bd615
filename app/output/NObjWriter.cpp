#include "app/output/NObjWriter.h"

#include <cmath>

#include "app/output/text.h"
#include "corvanta/data/structs/convert.h"

namespace corvanta::app {

using data::structs::ToVec3;
using VX_Math::Vec3;

namespace {

std::string ToPlainName(std::string const& name) {
  std::string plain = name.empty() ? "model" : OneLine(name);
  if (plain.empty()) plain = "_";
  for (char& c : plain) {
    if (c == ' ' || c == '\\' || c == '#') c = '_';
  }
  return plain;
}

bool Mirrors(VX_Math::Matrix const& m) {
  Vec3 const x(m(0, 0), m(0, 1), m(0, 2));
  Vec3 const y(m(1, 0), m(1, 1), m(1, 2));
  Vec3 const z(m(2, 0), m(2, 1), m(2, 2));
  return x.Cross(y).Dot(z) < 0.0f;
}

}  // namespace

void NObjWriter::Begin(std::string const& name) {
  std::string const plain = ToPlainName(name);
  std::string free = plain;
  for (std::size_t number = 2; !m_names.insert(free).second; ++number) {
    free = plain + '_' + std::to_string(number);
  }
  m_out << "o " << free << '\n';
}

void NObjWriter::Add(data::domain::geometry::NSurface const& surface,
                     data::domain::material::texture_mapping::NMappedCoords const& mapped,
                     VX_Math::Matrix const& global) {
  VX_Math::Matrix const forNormals = global.Inverse().Transpose();
  for (std::size_t i = 0; i != mapped.coords.size(); ++i) {
    std::size_t const source = mapped.vertexMap.empty() ? i : mapped.vertexMap[i];
    Vec3 point;
    Vec3 normal;
    global.MultVecMatrix(ToVec3(surface.GetCoords()[source]), point);
    forNormals.MultDirMatrix(ToVec3(surface.GetNormals()[source]), normal);
    normal.Normalize();
    WriteLine("v", &point.x, 3);
    WriteLine("vt", &mapped.coords[i].u, 2);
    WriteLine("vn", &normal.x, 3);
  }
  WriteTriangles(mapped.indices.empty() ? surface.GetIndices() : mapped.indices,
                 mapped.coords.size(), Mirrors(global));
  m_written += mapped.coords.size();
}

void NObjWriter::WriteLine(char const* keyword, float const* numbers, int count) {
  m_line = keyword;
  for (int i = 0; i != count; ++i) {
    m_line += ' ';
    m_line += NumberText(std::isfinite(numbers[i]) ? numbers[i] : 0.0f);
  }
  m_out << m_line << '\n';
}

void NObjWriter::WriteTriangles(std::vector<unsigned int> const& indices, std::size_t vertexCount,
                                bool isMirrored) {
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    if (indices[i] >= vertexCount || indices[i + 1] >= vertexCount ||
        indices[i + 2] >= vertexCount) {
      continue;
    }
    m_line = "f";
    for (std::size_t const k : {i, i + (isMirrored ? 2 : 1), i + (isMirrored ? 1 : 2)}) {
      std::string const number = std::to_string(m_written + indices[k] + 1);
      m_line += ' ' + number + '/' + number + '/' + number;
    }
    m_out << m_line << '\n';
  }
}

}  // namespace corvanta::app
