#include "corvanta/renderer/pass/NNumberPass.h"

#include "corvanta/renderer/pass/draw_models.h"

namespace corvanta::renderer {

void NNumberPass::Draw(NResolvedScene const& scene, NViewpoint const& viewpoint) const {
  auto const getByte = [](std::size_t number, unsigned shift) {
    return static_cast<float>(number >> shift & 255) / 255.0f;
  };
  m_program.Begin(viewpoint);
  for (std::size_t i = 0; i != scene.GetModels().size(); ++i) {
    NDrawItem const& item = scene.GetItems()[i];
    if (!item.hasFiniteTransform) continue;
    std::size_t const number = i + 1;
    m_program.SetColor({getByte(number, 16), getByte(number, 8), getByte(number, 0), 1.0f});
    m_program.SetTransform(GetDrawnTransform(item, viewpoint));
    DrawParts(scene.GetModels()[i].parts);
  }
}

}  // namespace corvanta::renderer
