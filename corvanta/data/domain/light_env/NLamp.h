#pragma once

#include <memory>
#include <string>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::domain::light_env {

/// The kinds of lamp: the texts of the kinds of light.
inline std::wstring const LAMP_TYPE_POINT = L"point";
inline std::wstring const LAMP_TYPE_DIRECTIONAL = L"directional";
inline std::wstring const LAMP_TYPE_SPOT = L"spot";

/// How a lamp falls off with distance; for the renderer.
enum NAttenuationType : long { NAT_DEFAULT = 0 };

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/light_env/lamp_attributes.def"

/// A lamp of a light environment: a light source with a place of its own, and a name that is unique
/// within its light environment.
///
/// Made by NLightEnvNode::CreateLamp alone, and no node: its owner tells of its changes. Held by
/// `boost::intrusive_ptr`, it outlives its owner, and then tells nobody.
class CORVANTA_API NLamp : public core::name::NNamedObject, public core::attribute::NAttributeHost {
 public:
#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/light_env/lamp_attributes.def"

  /// Turns and moves a lamp that rests at the origin, shining along -z, to its direction and
  /// position, and then by its owner's transform; without an owner by nothing more.
  VX_Math::Matrix GetTransform() const;
  /// Null once the lamp was deleted, and when its light environment has gone.
  NLightEnvNode* GetOwner() const noexcept { return m_owner; }

  /// Gives `target` this lamp's name and attribute values. Where the name is another lamp's, it
  /// gets a number behind it.
  /// Raises: the target's signals for each.
  void CopyTo(NLamp& target) const;

 private:
  friend class NLightEnvNode;
  struct Block;

  explicit NLamp(NLightEnvNode* owner);
  ~NLamp() override;

  /// Tells the owner.
  void OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) override;

  void ClearOwner() noexcept { m_owner = nullptr; }

  NLightEnvNode* m_owner;
  std::unique_ptr<Block> m_block;
};

}  // namespace corvanta::data::domain::light_env
