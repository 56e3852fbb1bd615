#include "corvanta/data/domain/animation/NAnimationNode.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/animation/NAnimationContext.h"
#include "corvanta/data/domain/animation/NAnimationDomain.h"
#include "corvanta/data/domain/animation/NAnimationTarget.h"
#include "corvanta/data/domain/animation/NNodeAnimationTarget.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain::animation {

using operators::animation::NKeyFrameAnimation;

namespace {

/// An entry of the map, ready to be played.
struct Part {
  boost::intrusive_ptr<NAnimationTarget> target;
  core::attribute::detail::NNameIndex name;
  boost::intrusive_ptr<NKeyFrameAnimation> curve;
};
using Parts = std::vector<Part>;

constexpr std::size_t kAhead = 6;

}  // namespace

struct NAnimationNode::Block {
  std::shared_ptr<Parts const> const& GetParts();

  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/animation/animation_attributes.def"
  Animations animations{};
  // What SetFrame walks. Null after a change of the map; a running step keeps the one it has.
  std::shared_ptr<Parts const> parts{};
};

#define CORVANTA_ROWS_BODIES NAnimationNode
#include "corvanta/data/domain/animation/animation_attributes.def"

std::shared_ptr<Parts const> const& NAnimationNode::Block::GetParts() {
  if (!parts) {
    auto made = std::make_shared<Parts>();
    made->reserve(animations.size());
    for (auto const& [context, curve] : animations) {
      if (!context.target) continue;
      auto const name = core::attribute::detail::InternName(context.attributeName.c_str());
      made->push_back({context.target, name, curve});
    }
    parts = std::move(made);
  }
  return parts;
}

NAnimationNode::NAnimationNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                               events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_ANIMATION)),
      m_block(new Block{*this}) {}

NAnimationNode::~NAnimationNode() = default;

void NAnimationNode::CopyTo(NAnimationNode& target) const {
  auto const held = core::reference_countable::Hold(*this);
  auto const heldTarget = core::reference_countable::Hold(target);
  Animations animations;
  if (&target != this) animations = m_block->animations;
  core::detail::NChangeGroup const group(target.GetRecorder());
  CopyNodeTo(target);
  if (&target != this) target.SetAnimations(animations);
}

/// The old ones are the caller's then, and end with them.
void NAnimationNode::SetAnimations(Animations& animations) {
  events::detail::NContentsChange change(GetRecorder(), m_block->animations);
  m_block->animations.swap(animations);
  m_block->parts.reset();
  change.Record(*this, m_block->animations, &ApplyAnimations,
                (m_block->animations.size() + animations.size()) * sizeof(Animations::value_type));
}

void NAnimationNode::ApplyAnimations(core::reference_countable::NReferenceCountable& node,
                                     std::shared_ptr<void const> const& animations) {
  Animations copy = *static_cast<Animations const*>(animations.get());
  dynamic_cast<NAnimationNode&>(node).SetAnimations(copy);
}

void NAnimationNode::SetFrame(double frame) const {
  auto const held = m_block->GetParts();
  Parts const& parts = *held;
  for (std::size_t i = 0; i != parts.size(); ++i) {
    // The curves lie far apart in memory: they are sent for some way ahead.
    __builtin_prefetch(parts[std::min(i + kAhead, parts.size() - 1)].curve.get());
    Part const& part = parts[i];
    auto const host = part.target->GetTarget();
    if (!host) continue;
    core::attribute::NAttribute* const attribute = host->QueryAttribute(part.name);
    if (attribute == nullptr) continue;
    attribute->SetValue(part.curve->CalculateValue(frame), true);
  }
}

bool NAnimationNode::AddAnimation(NAnimationContext const& context, NKeyFrameAnimation& curve) {
  auto& animations = m_block->animations;
  if (animations.count(context) != 0) return false;
  events::detail::NContentsChange change(GetRecorder(), animations);
  animations.try_emplace(context, &curve);
  m_block->parts.reset();
  change.Record(*this, animations, &ApplyAnimations,
                2 * animations.size() * sizeof(Animations::value_type));
  return true;
}

void NAnimationNode::ClearAnimations() {
  // The curves and targets may end here: the map is empty by then.
  Animations none;
  SetAnimations(none);
}

NAnimationNode::Animations const& NAnimationNode::GetAnimations() const noexcept {
  return m_block->animations;
}

NAnimationContext::NAnimationContext() = default;

NAnimationContext::NAnimationContext(std::wstring attribute,
                                     boost::intrusive_ptr<NAnimationTarget> actedOn)
    : attributeName(std::move(attribute)), target(std::move(actedOn)) {}

NAnimationContext::NAnimationContext(NAnimationContext const&) = default;
NAnimationContext& NAnimationContext::operator=(NAnimationContext const&) = default;
NAnimationContext::~NAnimationContext() = default;

bool operator<(NAnimationContext const& a, NAnimationContext const& b) noexcept {
  if (a.target != b.target) {
    return b.target && (!a.target || a.target->GetCreationNumber() < b.target->GetCreationNumber());
  }
  return a.attributeName < b.attributeName;
}

namespace {
std::atomic<std::uint64_t> g_lastCreationNumber{0};
}  // namespace

NAnimationTarget::NAnimationTarget() noexcept : m_creationNumber(++g_lastCreationNumber) {}

NAnimationTarget::NAnimationTarget(NAnimationTarget const& other) noexcept
    : NReferenceCountable(other), m_creationNumber(++g_lastCreationNumber) {}

NAnimationTarget::~NAnimationTarget() = default;

NNodeAnimationTarget::NNodeAnimationTarget(core::node::NNodeReference<NNode> const& target)
    : m_target(target) {}

NNodeAnimationTarget::NNodeAnimationTarget(NNodeAnimationTarget const& other) = default;
NNodeAnimationTarget& NNodeAnimationTarget::operator=(NNodeAnimationTarget const& other) = default;
NNodeAnimationTarget::~NNodeAnimationTarget() = default;

boost::intrusive_ptr<core::attribute::NAttributeHost> NNodeAnimationTarget::GetTargetImpl() const {
  return m_target.Get();
}

NAnimationDomain::NAnimationDomain(core::domain::NDomainManager const* manager,
                                   events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_ANIMATION)) {}

NAnimationDomain::~NAnimationDomain() = default;

wchar_t const* NAnimationDomain::GetTypeImpl() const { return DT_ANIMATION; }

}  // namespace corvanta::data::domain::animation
