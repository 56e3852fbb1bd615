#include "corvanta/renderer/scene/harmonics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace corvanta::renderer {

namespace {

using Direction = std::array<double, 3>;

constexpr unsigned kPictureSamples =
    32;  // a side; of a larger picture a smaller level of detail is read
constexpr double kPi = std::numbers::pi;

float Decode(float value) {
  return value <= 0.04045f ? value / 12.92f : std::pow((value + 0.055f) / 1.055f, 2.4f);
}

/// A sum over the directions of a sphere.
class Sum {
 public:
  void Add(Direction const& d, double solidAngle, float const* color) {
    auto const [x, y, z] = d;
    double const polynomials[9] = {1, y, z, x, x * y, y * z, 3 * z * z - 1, x * z, x * x - y * y};
    for (std::size_t i = 0; i != 9; ++i) {
      for (std::size_t c = 0; c != 3; ++c) {
        m_sums[3 * i + c] += solidAngle * polynomials[i] * static_cast<double>(color[c]);
      }
    }
    m_solidAngle += solidAngle;
  }

  NHarmonics Get() const {
    // The squares of the functions' norms, and what the cosine leaves of each order, over pi.
    constexpr double kSquares[9] = {0.0795775,
                                    0.238732,
                                    0.238732,
                                    0.238732,
                                    1.092548 * 1.092548,
                                    1.092548 * 1.092548,
                                    0.315392 * 0.315392,
                                    1.092548 * 1.092548,
                                    0.546274 * 0.546274};
    constexpr double kOrders[9] = {1, 2.0 / 3, 2.0 / 3, 2.0 / 3, 0.25, 0.25, 0.25, 0.25, 0.25};
    NHarmonics harmonics;
    for (std::size_t i = 0; i != 27; ++i) {
      // The texels' solid angles don't quite add up to the sphere's.
      double const scale = kSquares[i / 3] * kOrders[i / 3] * 4 * kPi / m_solidAngle;
      harmonics[i] = static_cast<float>(m_sums[i] * scale);
    }
    return harmonics;
  }

 private:
  std::array<double, 27> m_sums{};
  double m_solidAngle = 0;
};

/// The direction of a point of a cube's face, from -1 to 1 in both; not of length 1.
Direction GetCubeDirection(unsigned face, double s, double t) {
  switch (face) {
    case 0:
      return {1, -t, -s};
    case 1:
      return {-1, -t, s};
    case 2:
      return {s, 1, t};
    case 3:
      return {s, -1, -t};
    case 4:
      return {s, -t, 1};
    default:
      return {-s, -t, -1};
  }
}

void AddCubeTexel(Sum& sum, unsigned face, double s, double t, float const* color) {
  Direction d = GetCubeDirection(face, s, t);
  double const square = 1 + s * s + t * t;
  for (double& component : d) component /= std::sqrt(square);
  sum.Add(d, 1 / (square * std::sqrt(square)), color);
}

/// A picture of all directions by longitude and latitude.
void AddRectangularTexel(Sum& sum, double u, double v, float const* color) {
  double const longitude = (u - 0.5) * 2 * kPi, latitude = (v - 0.5) * kPi;
  double const ring = std::cos(latitude);
  sum.Add({ring * std::sin(longitude), std::sin(latitude), -ring * std::cos(longitude)}, ring,
          color);
}

/// A picture of all directions in a circle, whose middle is -z.
void AddSquareTexel(Sum& sum, double u, double v, float const* color) {
  double const x = u - 0.5, y = v - 0.5, radius = std::hypot(x, y);
  if (radius >= 0.5 || radius == 0) return;
  double const angle = radius * 2 * kPi, sine = std::sin(angle);
  sum.Add({sine * x / radius, sine * y / radius, -std::cos(angle)}, sine / angle, color);
}

void Add(bool isCube, int projection, Sum& sum, unsigned face, double u, double v,
         float const* texel) {
  float color[3];
  for (std::size_t c = 0; c != 3; ++c) color[c] = std::isfinite(texel[c]) ? texel[c] : 0.0f;
  if (isCube) {
    AddCubeTexel(sum, face, 2 * u - 1, 2 * v - 1, color);
  } else if (projection == 1) {
    AddRectangularTexel(sum, u, v, color);
  } else {
    AddSquareTexel(sum, u, v, color);
  }
}

}  // namespace

NHarmonics ComputeHarmonics(NTexture const& texture, int projection) {
  GLint level = 0;
  unsigned width = texture.width, height = texture.height;
  for (; std::max(width, height) > kPictureSamples; ++level) {
    width = std::max(width / 2, 1u);
    height = std::max(height / 2, 1u);
  }
  glActiveTexture(GL_TEXTURE0);
  glBindTexture(texture.isCube ? GL_TEXTURE_CUBE_MAP : GL_TEXTURE_2D, texture.texture.Get());
  Sum sum;
  std::vector<float> texels(std::size_t{4} * width * height);
  for (unsigned face = 0; face != (texture.isCube ? 6 : 1); ++face) {
    GLenum const target = texture.isCube ? GL_TEXTURE_CUBE_MAP_POSITIVE_X + face : GL_TEXTURE_2D;
    glGetTexImage(target, level, GL_RGBA, GL_FLOAT, texels.data());
    if (!texture.isLinear) {
      std::transform(texels.begin(), texels.end(), texels.begin(), &Decode);
    }
    for (unsigned y = 0; y != kPictureSamples; ++y) {
      for (unsigned x = 0; x != kPictureSamples; ++x) {
        std::size_t const texel =
            std::size_t{y * height / kPictureSamples} * width + x * width / kPictureSamples;
        Add(texture.isCube, projection, sum, face, (x + 0.5) / kPictureSamples,
            (y + 0.5) / kPictureSamples, &texels[4 * texel]);
      }
    }
  }
  return sum.Get();
}

}  // namespace corvanta::renderer
