#pragma once

#include "tests/support/test.h"

/// The mapping of a mesh written down a second time: vertex by vertex, in plain arithmetic.
namespace corvanta::mapping::oracle {

using data::structs::UVW;
using data::structs::XYZ;

struct Mesh {
  std::vector<float> coords;
  std::vector<float> normals;
  std::vector<unsigned int> indices;

  unsigned int GetCount() const { return static_cast<unsigned int>(coords.size() / 3); }
};

struct Setup {
  std::wstring method;
  Matrix frame;
  Matrix transform;
  bool flip[3];
  bool isExchanged;
  double repeat[3];
  double offset[3];
  float unit;
};

inline Vec3 Point(std::vector<float> const& values, unsigned int i, Matrix const& m) {
  Vec3 out(values[3 * i], values[3 * i + 1], values[3 * i + 2]);
  m.MultVecMatrix(out, out);
  return out;
}

inline Vec3 Direction(Vec3 v, Matrix const& m) {
  m.MultDirMatrix(v, v);
  v.Normalize();
  return v;
}

inline Vec3 Normal(Mesh const& mesh, unsigned int i, Matrix const& m) {
  return Direction({mesh.normals[3 * i], mesh.normals[3 * i + 1], mesh.normals[3 * i + 2]}, m);
}

inline float AngleOf(float y, float x) {
  return static_cast<float>(std::atan2(static_cast<double>(y), static_cast<double>(x)));
}

inline char GetAxis(Vec3 const& n) {
  char axis = 'x';
  float largest = std::fabs(n.x);
  if (std::fabs(n.y) >= largest) {
    axis = 'y';
    largest = std::fabs(n.y);
  }
  return std::fabs(n.z) >= largest ? 'z' : axis;
}

inline UVW Project(std::wstring const& method, Vec3 const& p, Vec3 const& n) {
  constexpr float kPi = 3.1415927f;
  float const r = std::sqrt(p.x * p.x + p.z * p.z);
  if (method == L"plane") return {p.x, p.z, 0};
  if (method == L"cylinder") return {(AngleOf(-p.x, p.z) + kPi) / kPi * 0.5f, p.y - 0.5f, r};
  if (method == L"sphere") {
    return {(AngleOf(-p.x, p.z) + kPi) / kPi * 0.5f, 1 - AngleOf(r, p.y) / kPi,
            std::sqrt(r * r + p.y * p.y)};
  }
  bool const isBox = method == L"box";
  switch (GetAxis(n)) {
    case 'x':
      return {p.z, isBox ? -p.y : p.y, std::fabs(p.x)};
    case 'y':
      return {p.x, p.z, std::fabs(p.y)};
    default:
      return isBox ? UVW{p.x, -p.y, std::fabs(p.z)} : UVW{p.y, p.x, std::fabs(p.z)};
  }
}

/// Corner by corner, through the list that is being made.
inline void CutSeam(Mesh const& mesh, std::vector<UVW>& coords, std::vector<unsigned int>& indices,
                    std::vector<unsigned int>& vertexMap) {
  indices = mesh.indices;
  for (unsigned int i = 0; i != mesh.GetCount(); ++i) vertexMap.push_back(i);
  for (std::size_t first = 0; first + 3 <= indices.size(); first += 3) {
    bool isThere = true;
    for (std::size_t k = 0; k != 3; ++k) isThere &= mesh.indices[first + k] < mesh.GetCount();
    for (std::size_t k = 0; !isThere && k != 3; ++k) indices[first + k] = 0xFFFFFFFF;
    for (std::size_t k = 0; isThere && k != 3; ++k) {
      std::size_t const at[2] = {first + k, first + (k + 1) % 3};
      float const u[2] = {coords[indices[at[0]]].u, coords[indices[at[1]]].u};
      bool const isOutside = u[0] < 0 || u[0] > 1 || u[1] < 0 || u[1] > 1;
      if (isOutside || !(std::fabs(u[0] - u[1]) > 0.5f)) continue;
      unsigned int& corner = indices[at[u[0] < u[1] ? 0 : 1]];
      coords.push_back({coords[corner].u + 1, coords[corner].v, coords[corner].w});
      vertexMap.push_back(corner);
      corner = static_cast<unsigned int>(vertexMap.size()) - 1;
    }
  }
}

inline void Convert(Setup const& setup, UVW& c) {
  UVW const in = c;
  for (unsigned int k = 0; k != 3; ++k) {
    double const repeat = setup.repeat[k] * setup.unit;
    unsigned int const from = setup.isExchanged && k != 2 ? 1 - k : k;
    float const value = setup.flip[from] ? 1 - in[from] : in[from];
    if (repeat != 0) c[k] = static_cast<float>(repeat * value);
    c[k] = static_cast<float>(c[k] + setup.offset[k]);
  }
}

inline void ComputeCoords(Setup const& setup, Mesh const& mesh, std::vector<UVW>& coords,
                          std::vector<unsigned int>& indices,
                          std::vector<unsigned int>& vertexMap) {
  Matrix scale;
  setup.transform.GetScale(scale);
  Matrix const toProjector = setup.frame * setup.transform.Inverse();
  Matrix const forNormals = (toProjector * scale).Inverse().Transpose();
  for (unsigned int i = 0; i != mesh.GetCount(); ++i) {
    coords.push_back(
        Project(setup.method, Point(mesh.coords, i, toProjector), Normal(mesh, i, forNormals)));
  }
  if (setup.method == L"cylinder" || setup.method == L"sphere") {
    CutSeam(mesh, coords, indices, vertexMap);
  }
  for (UVW& c : coords) Convert(setup, c);
}

/// The direction of growing u; `isRound` for cylinder and sphere.
inline Vec3 GetAlong(std::wstring const& method, bool isRound, Vec3 const& p, Vec3 const& n) {
  if (isRound)
    return n.Cross({-p.z, 0, p.x}).Dot(n.Cross({-p.z, 0, p.x})) == 0 ? Vec3(0, 1, 0)
                                                                     : Vec3(-p.z, 0, p.x);
  if (method == L"plane") return n.y == 0 && n.z == 0 ? Vec3(0, 0, 1) : Vec3(1, 0, 0);
  switch (GetAxis(n)) {
    case 'x':
      return {0, 0, 1};
    case 'y':
      return {1, 0, 0};
    default:
      return method == L"box" ? Vec3(1, 0, 0) : Vec3(0, 1, 0);
  }
}

inline void ComputeTangents(Setup const& setup, Mesh const& mesh, std::vector<XYZ>& tangents,
                            std::vector<XYZ>& binormals) {
  Matrix const toProjector = setup.frame * setup.transform.Inverse();
  Matrix const toModel = toProjector.Inverse();
  bool const isRound = setup.method == L"cylinder" || setup.method == L"sphere";
  for (unsigned int i = 0; i != mesh.GetCount(); ++i) {
    Vec3 const p = Point(mesh.coords, i, toProjector);
    Vec3 const n = Normal(mesh, i, toProjector.Inverse().Transpose());
    Vec3 b = n.Cross(GetAlong(setup.method, isRound, p, n));
    if (isRound) b.Normalize();
    Vec3 t = b.Cross(n);
    t.Normalize();
    char const axis = GetAxis(n);
    float const largest = axis == 'x' ? n.x : axis == 'y' ? n.y : n.z;
    bool const isTurned = isRound                    ? b.y > 0
                          : setup.method == L"plane" ? n.y < 0
                                                     : setup.method == L"triplanar" && largest < 0;
    t = Direction(t, toModel);
    b = Direction(isTurned ? -b : b, toModel);
    if (setup.flip[0]) t = -t;
    if (setup.flip[1]) b = -b;
    tangents.push_back(setup.isExchanged ? XYZ{-b.x, -b.y, -b.z} : XYZ{t.x, t.y, t.z});
    binormals.push_back(setup.isExchanged ? XYZ{-t.x, -t.y, -t.z} : XYZ{b.x, b.y, b.z});
  }
}

}  // namespace corvanta::mapping::oracle
