#include "corvanta/data/domain/light_env/NLamp.h"

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/attribute/NAttributeValues.h"
#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"

namespace corvanta::data::domain::light_env {

namespace {
constexpr unsigned kAttributeCount = 0
#define CORVANTA_ROWS_COUNT
#include "corvanta/data/domain/light_env/lamp_attributes.def"
    ;

}  // namespace

struct NLamp::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/light_env/lamp_attributes.def"
};

#define CORVANTA_ROWS_BODIES NLamp
#include "corvanta/data/domain/light_env/lamp_attributes.def"

NLamp::NLamp(NLightEnvNode* owner) : m_owner(owner) {
  ReserveAttributes(kAttributeCount);
  m_block.reset(new Block{*this});
}

NLamp::~NLamp() = default;

VX_Math::Matrix NLamp::GetTransform() const {
  VX_Math::Matrix translation;
  translation.SetTranslate(VX_Math::Narrow(GetPositionX(), GetPositionY(), GetPositionZ()));
  VX_Math::Vec3 const direction =
      VX_Math::Narrow(GetDirectionX(), GetDirectionY(), GetDirectionZ());
  VX_Math::Matrix rotation;
  rotation.SetRotate(VX_Math::Quaternion(VX_Math::Vec3(0.0f, 0.0f, -1.0f), direction));
  VX_Math::Matrix const own = rotation * translation;
  return m_owner == nullptr ? own : own * m_owner->GetTransform();
}

void NLamp::CopyTo(NLamp& target) const {
  auto const held = core::reference_countable::Hold(*this);
  auto const heldTarget = core::reference_countable::Hold(target);
  core::attribute::NAttributeValues values(*this);
  target.SetName(GetName());
  values.MoveTo(target);
}

void NLamp::OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) {
  if (m_owner != nullptr) m_owner->LampAttributeChanged(this, attribute);
}

}  // namespace corvanta::data::domain::light_env
