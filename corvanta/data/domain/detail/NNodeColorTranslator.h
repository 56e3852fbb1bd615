#pragma once

#include "corvanta/data/domain/NNodeModifier.h"

namespace corvanta::core::color {
class ColorTransform;
}

namespace corvanta::data::domain::detail {

/// Puts the colours of the environments, lights and materials that it visits through a transform;
/// leaves nodes of every other kind alone.
/// Raises: the attribute changes of each colour, red, green and blue.
class CORVANTA_API NNodeColorTranslator final : public NNodeModifier {
 public:
  /// Requires: `transform` lives as long as this.
  explicit NNodeColorTranslator(core::color::ColorTransform const& transform) noexcept;
  virtual ~NNodeColorTranslator();

 private:
#define CORVANTA_KIND(SPACE, CLASS) void VisitImpl(SPACE::CLASS& node) override;
#include "corvanta/data/domain/node_kinds.def"

  core::color::ColorTransform const& m_transform;
};

}  // namespace corvanta::data::domain::detail
