#include "corvanta/renderer/pass/NShadowPass.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "corvanta/renderer/pass/draw_models.h"

namespace corvanta::renderer {

namespace {

using VX_Math::Matrix;
using VX_Math::Vec3;

constexpr float kSpread = 0.03f;        // of the directions of a lamp with softness 1
constexpr unsigned kDirections = 12;    // of a soft shadow
constexpr std::size_t kMost = 2000000;  // triangles that are drawn for a lamp's
constexpr float kLeastShadowSlope = 0.05f;

Vec3 GetDirection(NLamps const& lamps, unsigned lamp) {
  float const* const direction = &lamps.directions[std::size_t{3} * lamp];
  return {direction[0], direction[1], direction[2]};
}

/// One of `count` directions, along a spiral of the golden angle; see NShadowPass.
Vec3 Spread(Vec3 const& direction, float radius, unsigned index, unsigned count) {
  if (count == 1) return direction;
  Vec3 across = direction.Cross(std::abs(direction.x) < 0.5f ? Vec3(1.0f, 0.0f, 0.0f)
                                                             : Vec3(0.0f, 0.0f, 1.0f));
  across.Normalize();
  Vec3 const other = direction.Cross(across);
  auto const number = static_cast<float>(index);
  float const distance = radius * std::sqrt((number + 0.5f) / static_cast<float>(count));
  float const angle = 2.3999632f * number;
  Vec3 spread =
      direction + across * (distance * std::cos(angle)) + other * (distance * std::sin(angle));
  // A lamp from below makes no shadow.
  spread.y = std::min(spread.y, -kLeastShadowSlope);
  return spread;
}

/// What moves a point along `direction` onto the floor.
Matrix MakeFlat(Vec3 const& direction, float height) {
  float const x = direction.x / direction.y, z = direction.z / direction.y;
  return {1, 0, 0, 0, -x, 0, -z, 0, 0, 0, 1, 0, height * x, height, height * z, 1};
}

std::size_t CountTriangles(NResolvedScene const& scene) {
  std::size_t corners = 0;
  for (NResolvedModel const& model : scene.GetModels()) {
    for (NMeshPart const& part : *model.parts) corners += static_cast<std::size_t>(part.count);
  }
  return corners / 3;
}

}  // namespace

void NShadowPass::Draw(NInstances& instances, NPicture const& picture, float height) const {
  m_program.Begin(picture.viewpoint);
  glEnable(GL_STENCIL_TEST);
  glEnable(GL_BLEND);
  glEnable(GL_POLYGON_OFFSET_FILL);
  glPolygonOffset(2.0f, 2.0f);
  glDepthMask(GL_FALSE);
  glStencilOp(GL_KEEP, GL_KEEP, GL_INVERT);
  std::size_t const affordable = kMost / std::max(CountTriangles(picture.scene), std::size_t{1});
  auto const most =
      static_cast<unsigned>(std::clamp(affordable, std::size_t{1}, std::size_t{kDirections}));
  for (unsigned lamp = 0; lamp != kShadowCount; ++lamp) {
    NLamps const& lamps = picture.lamps;
    if (!(lamps.shadows[lamp] > 0.0f)) continue;
    unsigned const count = lamps.softnesses[lamp] > 0.0f ? most : 1;
    glStencilMask(1u << lamp);
    glStencilFunc(GL_EQUAL, kFloorStencilBit, kFloorStencilBit | 1u << lamp);
    for (unsigned i = 0; i != count; ++i) {
      if (i != 0) glClear(GL_STENCIL_BUFFER_BIT);
      Vec3 const direction =
          Spread(GetDirection(lamps, lamp), kSpread * lamps.softnesses[lamp], i, count);
      DrawModels(instances, picture, MakeFlat(direction, height), lamps.shadows[lamp], count);
    }
  }
  glStencilMask(0xFF);
  glDepthMask(GL_TRUE);
  glDisable(GL_POLYGON_OFFSET_FILL);
  glDisable(GL_BLEND);
  glDisable(GL_STENCIL_TEST);
}

void NShadowPass::DrawModels(NInstances& instances, NPicture const& picture, Matrix const& flat,
                             float darkness, unsigned directions) const {
  auto const& models = picture.scene.GetModels();
  std::vector<NFlatInstance> flats;
  std::vector<std::size_t> indices;
  float const share = 1.0f / static_cast<float>(directions);
  for (std::size_t i = 0; i != models.size(); ++i) {
    NDrawItem const& item = picture.scene.GetItems()[i];
    if (!item.hasFiniteTransform || !item.model->DropsShadow()) continue;
    float const whole = darkness * models[i].material->opacity;
    float const own = directions == 1 ? whole : 1.0f - std::pow(1.0f - whole, share);
    flats.emplace_back(item.global * flat, std::array<float, 4>{0.0f, 0.0f, 0.0f, own});
    indices.push_back(i);
  }
  DrawFlats(instances, picture.scene, flats, indices, false);
}

}  // namespace corvanta::renderer
