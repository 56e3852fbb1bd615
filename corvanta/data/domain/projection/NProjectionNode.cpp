#include "corvanta/data/domain/projection/NProjectionNode.h"

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/detail/attribute_effects.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/projection/NProjectionChangeListener.h"
#include "corvanta/data/domain/projection/NProjectionDomain.h"
#include "corvanta/data/domain/projection/NProjectionNodeError.h"
#include "corvanta/data/error_code/error_code.h"
#include "corvanta/data/events/detail/NModelRecorder.h"
#include "corvanta/vx_math/euler_angles.h"

namespace corvanta::data::domain::projection {

namespace {

using VX_Math::Matrix;
using VX_Math::Vec3;

constexpr unsigned kAttributeCount = 0
#define CORVANTA_ROWS_COUNT
#include "corvanta/data/domain/projection/projection_attributes.def"
    ;

}  // namespace

struct NProjectionNode::Block {
  core::attribute::NAttributeHost& host;
  using enum domain::detail::NAttributeEffect;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/projection/projection_attributes.def"

  TargetMap targets{};
  Matrix transform{};
  bool isTransformDirty = true;
};

#define CORVANTA_ROWS_BODIES NProjectionNode
#include "corvanta/data/domain/projection/projection_attributes.def"

NProjectionNode::NProjectionNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                                 events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_PROJECTION)),
      m_block((ReserveAttributes(kAttributeCount), new Block{*this})) {}

NProjectionNode::~NProjectionNode() = default;

bool NProjectionNode::AddModel(ModelPath const& path) {
  return m_block->targets.emplace(path, boost::none).second;
}

bool NProjectionNode::AddModelForDeserialization(ModelPath const& path, Matrix const& frame) {
  return m_block->targets.emplace(path, frame).second;
}

bool NProjectionNode::RemoveModel(ModelPath const& path) {
  return m_block->targets.erase(path) != 0;
}

void NProjectionNode::ReplaceModel(ModelPath const& oldPath, ModelPath const& newPath) {
  auto& targets = m_block->targets;
  auto const old = targets.find(oldPath);
  if (old == targets.end() || oldPath == newPath) return;
  // The arguments may be keys of the map, so the erasure comes last.
  targets.emplace(newPath, old->second);
  targets.erase(old);
}

bool NProjectionNode::Targets(ModelPath const& path) const {
  return m_block->targets.count(path) != 0;
}

NProjectionNode::TargetMap const& NProjectionNode::GetTargets() const { return m_block->targets; }

Matrix NProjectionNode::GetModelToProjectionTransform(ModelPath const& path) const {
  auto& targets = m_block->targets;
  auto found = targets.find(path);
  if (found == targets.end()) throw NProjectionNodeError();
  if (found->second) return *found->second;
  // Asking the path may reach listeners, which may drop this node or the target.
  auto const held = core::reference_countable::Hold(*this);
  ModelPath const target = path;
  Matrix const frame = target.GetGlobalTransform();
  found = targets.find(target);
  if (found == targets.end()) throw NProjectionNodeError();
  if (!found->second) found->second = frame;
  return *found->second;
}

Matrix const& NProjectionNode::GetTransform() const {
  Block& block = *m_block;
  if (block.isTransformDirty) {
    block.transform.SetScale(VX_Math::Narrow(GetScaleX(), GetScaleY(), GetScaleZ()));
    block.transform *= Matrix(VX_Math::CreateQuaternion(
        VX_Math::Narrow(GetRotationX(), GetRotationY(), GetRotationZ()), false));
    Matrix translation;
    translation.SetTranslate(
        VX_Math::Narrow(GetTranslationX(), GetTranslationY(), GetTranslationZ()));
    block.transform *= translation;
    block.isTransformDirty = false;
  }
  return block.transform;
}

NCoordAdjustment NProjectionNode::GetCoordAdjustment(float scale) const {
  Block const& block = *m_block;
  return {{block.AN_FLIP_U.Get(), block.AN_FLIP_V.Get(), block.AN_FLIP_W.Get()},
          block.AN_UVW_ORDER.Get() == NUVWO_VUW,
          {block.AN_REPEAT_U.Get() * scale, block.AN_REPEAT_V.Get() * scale,
           block.AN_REPEAT_W.Get() * scale},
          {block.AN_OFFSET_U.Get(), block.AN_OFFSET_V.Get(), block.AN_OFFSET_W.Get()}};
}

void NProjectionNode::ConvertTextureCoord(float u, float v, float w, float& outU, float& outV,
                                          float& outW, float scale) const {
  GetCoordAdjustment(scale).AdjustCoord(u, v, w, outU, outV, outW);
}

void NProjectionNode::ConvertTangent(float& tx, float& ty, float& tz, float& bx, float& by,
                                     float& bz) const {
  GetCoordAdjustment(1.0f).AdjustTangent(tx, ty, tz, bx, by, bz);
}

void NProjectionNode::OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) {
  auto const held = core::reference_countable::Hold(*this);
  core::detail::NChangeScope const change(GetRecorder());
  auto const effects = core::attribute::detail::GetNameEffects(attribute.GetNameIndex());
  {
    // Listeners run before the cache is marked, and the marking happens also when one throws.
    core::detail::ScopeExit const mark([this, effects] {
      if (effects & domain::detail::NAE_PROJECTOR) m_block->isTransformDirty = true;
    });
    NNode::OnAttributeChangeImpl(attribute);
  }
  if (effects & domain::detail::NAE_METHOD) {
    NotifyObservers([this](auto& listener) { listener.OnProjectionChange(*this); });
  }
}

Matrix GetGlobalTransform(NProjectionNode const& projection,
                          NProjectionNode::ModelPath const& path) {
  NProjectionNode::ModelPath const target = path;  // it may be a key of the node's map
  Matrix const frame = projection.GetModelToProjectionTransform(target);
  return frame.Inverse() * target.GetGlobalTransform();
}

NProjectionChangeListener::~NProjectionChangeListener() = default;

NProjectionNodeError::~NProjectionNodeError() = default;

wchar_t const* NProjectionNodeError::GetErrorCodeImpl() const {
  return error_code::NE_PROJECTION_NODE;
}

NProjectionDomain::NProjectionDomain(core::domain::NDomainManager const* manager,
                                     events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_PROJECTION)) {}

NProjectionDomain::~NProjectionDomain() = default;

wchar_t const* NProjectionDomain::GetTypeImpl() const { return DT_PROJECTION; }

}  // namespace corvanta::data::domain::projection
