#include "corvanta/data/domain/light_env/NLightEnvNode.h"

#include <algorithm>

#include "corvanta/core/attribute/NAttributeValues.h"
#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/light_env/NLightEnvDomain.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain::light_env {

using events::light_env::NLampEventType;

struct NLightEnvNode::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/light_env/light_env_attributes.def"
  std::vector<boost::intrusive_ptr<NLamp>> lamps{};
};

#define CORVANTA_ROWS_BODIES NLightEnvNode
#include "corvanta/data/domain/light_env/light_env_attributes.def"

NLightEnvNode::NLightEnvNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                             events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_LIGHT_ENV)),
      m_block(new Block{*this}) {
  AddNameListener(*this);
}

NLightEnvNode::~NLightEnvNode() {
  for (auto const& lamp : m_block->lamps) lamp->ClearOwner();
}

boost::intrusive_ptr<NLamp> NLightEnvNode::CreateLamp(std::wstring const& name) {
  auto const held = core::reference_countable::Hold(*this);
  boost::intrusive_ptr<NLamp> const lamp = PrepareLamp(name, 0);
  Enter(lamp);
  return lamp;
}

/// Makes a lamp and room for it and for `others` more after it.
boost::intrusive_ptr<NLamp> NLightEnvNode::PrepareLamp(std::wstring const& name,
                                                       std::size_t others) {
  boost::intrusive_ptr<NLamp> lamp(new NLamp(this));
  lamp->SetName(name);
  PrepareFreeName(*lamp, others);
  auto& lamps = m_block->lamps;
  std::size_t const size = lamps.size() + 1 + others;
  if (size > lamps.capacity()) lamps.reserve(std::max(size, 2 * lamps.capacity()));
  return lamp;
}

/// Needs no memory where all that was prepared is entered. Once it has its name, only listeners can
/// throw, and the lamp stays.
void NLightEnvNode::Enter(boost::intrusive_ptr<NLamp> const& lamp) {
  m_block->lamps.push_back(lamp);
  try {
    AddUnderFreeName(*lamp);
  } catch (...) {
    TakeOut(*lamp);
    throw;
  }
  core::detail::NChangeScope const change(GetRecorder());
  Record(true, *lamp);
  lamp->SetName(lamp->GetName());
  if (lamp->GetOwner() == this) SignalLampChange(*lamp, events::light_env::NLET_LAMP_CREATED);
}

/// Takes in a lamp that was here, at the place that it had.
/// Raises: its creation.
void NLightEnvNode::PutBack(NLamp& lamp, unsigned int index) {
  auto const held = core::reference_countable::Hold(*this);
  boost::intrusive_ptr<NLamp> const entry(&lamp);
  auto& lamps = m_block->lamps;
  auto const place = static_cast<std::ptrdiff_t>(std::min<std::size_t>(index, lamps.size()));
  lamps.insert(lamps.begin() + place, entry);
  try {
    AddUnderFreeName(lamp);
  } catch (...) {
    TakeOut(lamp);
    throw;
  }
  lamp.m_owner = this;
  core::detail::NChangeScope const change(GetRecorder());
  Record(true, lamp);
  SignalLampChange(lamp, events::light_env::NLET_LAMP_CREATED);
}

void NLightEnvNode::Record(bool isAdded, NLamp& lamp) {
  auto* const recorder = GetRecorder();
  if (recorder == nullptr) return;
  auto const& lamps = m_block->lamps;
  auto const index = std::find(lamps.begin(), lamps.end(), &lamp) - lamps.begin();
  recorder->OnLamp(isAdded, *this, lamp, static_cast<unsigned int>(index));
}

bool NLightEnvNode::DeleteLamp(boost::intrusive_ptr<NLamp> const& lamp) {
  // The argument may be the entry itself.
  boost::intrusive_ptr<NLamp> const deleted(lamp);
  auto const& lamps = m_block->lamps;
  if (std::find(lamps.begin(), lamps.end(), deleted) == lamps.end()) return false;
  auto const held = core::reference_countable::Hold(*this);
  core::detail::NChangeScope const change(GetRecorder());
  Record(false, *deleted);
  core::detail::ScopeExit const takeOut([&] { TakeOut(*deleted); });
  SignalLampChange(*deleted, events::light_env::NLET_LAMP_DELETED);
  return true;
}

/// Does nothing for a lamp that a listener has deleted meanwhile.
void NLightEnvNode::TakeOut(NLamp& lamp) noexcept {
  auto& lamps = m_block->lamps;
  auto const found = std::find(lamps.begin(), lamps.end(), &lamp);
  if (found == lamps.end()) return;
  lamp.ClearOwner();
  RemoveNamedObject(lamp);
  lamps.erase(found);
}

std::vector<boost::intrusive_ptr<NLamp>> const& NLightEnvNode::GetLamps() const noexcept {
  return m_block->lamps;
}

VX_Math::Matrix NLightEnvNode::GetTransform() const {
  float const angle = static_cast<float>(GetLampsRotationY()) / 360.0f * 2.0f * 3.1415927f;
  VX_Math::Matrix rotation;
  rotation.SetRotate(VX_Math::Quaternion(VX_Math::Vec3(0.0f, 1.0f, 0.0f), angle));
  VX_Math::Matrix scale;
  scale.SetScale(static_cast<float>(GetLampsScale()));
  return rotation * scale;
}

void NLightEnvNode::CopyTo(NLightEnvNode& target) const {
  auto const held = core::reference_countable::Hold(*this);
  auto const heldTarget = core::reference_countable::Hold(target);
  // All that takes memory comes before the first change.
  struct Copied {
    boost::intrusive_ptr<NLamp> lamp;
    std::wstring name;
    core::attribute::NAttributeValues values;
  };
  std::vector<Copied> copies;
  auto const lamps = m_block->lamps;  // the target may be this node
  for (auto const& lamp : lamps) {
    std::wstring const& name = lamp->GetName();
    copies.push_back(
        {target.PrepareLamp(name, copies.size()), name, core::attribute::NAttributeValues(*lamp)});
  }
  core::detail::NChangeGroup const group(target.GetRecorder());
  CopyNodeTo(target);
  for (auto& [lamp, name, values] : copies) {
    target.Enter(lamp);
    lamp->SetName(name);
    values.MoveTo(*lamp);
  }
}

void NLightEnvNode::OnSetName(core::name::NNamespace const&,
                              core::name::NNamedObject const& object) {
  // Others may have entered an object of their own.
  auto const* const lamp = dynamic_cast<NLamp const*>(&object);
  if (lamp != nullptr && lamp->GetOwner() == this) LampNameChanged(lamp);
}

void NLightEnvNode::LampNameChanged(NLamp const* lamp) {
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder != nullptr && lamp->GetPreviousName() != lamp->GetName()) {
    recorder->OnSetName(const_cast<NLamp&>(*lamp), lamp->GetPreviousName());
  }
  SignalLampChange(*lamp, events::light_env::NLET_LAMP_RENAMED);
}

void NLightEnvNode::LampAttributeChanged(NLamp const* lamp,
                                         core::attribute::NAttribute const& attribute) {
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder != nullptr) recorder->OnAttribute(const_cast<NLamp&>(*lamp), attribute);
  SignalLampChange(*lamp, events::light_env::NLET_LAMP_ATTRIBUTE_CHANGED);
}

void NLightEnvNode::SignalLampChange(NLamp const& lamp, NLampEventType type) {
  NotifyObservers([&](events::light_env::NListener& listener) {
    listener.SignalLampChange(*this, lamp, type);
  });
}

NLightEnvDomain::NLightEnvDomain(core::domain::NDomainManager const* manager,
                                 events::attribute_change::NMultiplexer const* multiplexer,
                                 events::light_env::NMultiplexer* lightEnvs)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_LIGHT_ENV)),
      m_lightEnvs(lightEnvs) {}

NLightEnvDomain::~NLightEnvDomain() = default;

wchar_t const* NLightEnvDomain::GetTypeImpl() const { return DT_LIGHT_ENV; }

bool NLightEnvDomain::InitializeNode(NLightEnvNode& node) const {
  return Attach<events::light_env::NListener>(m_lightEnvs, node);
}

}  // namespace corvanta::data::domain::light_env
