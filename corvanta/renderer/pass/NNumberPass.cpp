#include "corvanta/renderer/pass/NNumberPass.h"

#include "corvanta/renderer/pass/draw_models.h"

namespace corvanta::renderer {

void NNumberPass::Draw(NInstances& instances, NResolvedScene const& scene,
                       NViewpoint const& viewpoint) const {
  auto const getByte = [](std::size_t number, unsigned shift) {
    return static_cast<float>(number >> shift & 255) / 255.0f;
  };
  std::vector<NFlatInstance> flats;
  std::vector<std::size_t> models;
  for (std::size_t i = 0; i != scene.GetModels().size(); ++i) {
    NDrawItem const& item = scene.GetItems()[i];
    if (!item.hasFiniteTransform) continue;
    std::size_t const number = i + 1;
    flats.emplace_back(
        GetDrawnTransform(item, viewpoint),
        std::array<float, 4>{getByte(number, 16), getByte(number, 8), getByte(number, 0), 1.0f});
    models.push_back(i);
  }
  m_program.Begin(viewpoint);
  DrawFlats(instances, scene, flats, models, true);
}

}  // namespace corvanta::renderer
