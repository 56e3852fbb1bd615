#include "corvanta/data/posture/NPosture3D.h"

#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

namespace corvanta::data::posture {

NPosture3D::NPosture3D(domain::scenegraph::item::NSceneGraphItemNode& object) : m_object(&object) {}

NPosture3D::NPosture3D(NPosture3D const& other) = default;

NPosture3D& NPosture3D::operator=(NPosture3D const& other) = default;

NPosture3D::~NPosture3D() = default;

void NPosture3D::AdjustTransformImpl(VX_Math::Matrix const&, VX_Math::Matrix const&) const {}

}  // namespace corvanta::data::posture
