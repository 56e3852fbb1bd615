#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/fwd.h"

namespace corvanta::data::posture {

/// The base of a posture: a 3D handle tied to one item, its object, which it keeps alive. Hold it
/// by `boost::intrusive_ptr`.
class CORVANTA_API NPosture3D : public core::reference_countable::NReferenceCountable {
 public:
  domain::scenegraph::item::NSceneGraphItemNode& GetObjectW() const noexcept { return *m_object; }

  /// Starts true; for the renderer.
  bool IsTopMost() const noexcept { return m_isTopMost; }
  /// Raises: nothing.
  void SetIsTopMostFlag(bool isTopMost) noexcept { m_isTopMost = isTopMost; }

  /// What the matrices stand for is between a derived class and its caller.
  void AdjustTransform(VX_Math::Matrix const& a, VX_Math::Matrix const& b) const {
    AdjustTransformImpl(a, b);
  }

 protected:
  explicit NPosture3D(domain::scenegraph::item::NSceneGraphItemNode& object);
  NPosture3D(NPosture3D const& other);
  NPosture3D& operator=(NPosture3D const& other);
  ~NPosture3D() override = 0;

 private:
  /// Does nothing here.
  virtual void AdjustTransformImpl(VX_Math::Matrix const& a, VX_Math::Matrix const& b) const;

  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> m_object;
  bool m_isTopMost = true;
};

}  // namespace corvanta::data::posture
