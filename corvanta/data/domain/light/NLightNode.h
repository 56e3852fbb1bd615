#pragma once

#include <memory>
#include <string>

#include "corvanta/data/domain/NNode.h"

namespace corvanta::data::domain::light {

/// The kinds of light.
inline std::wstring const LT_DIRECTIONAL = L"directional";
inline std::wstring const LT_POINT = L"point";
inline std::wstring const LT_SPOT = L"spot";

/// How a light reaches beyond the plain; 1 also emits to its back.
enum NExtensionType : long { NET_DEFAULT = 0, NET_EMIT_MINUS = 1 };
/// How a light falls off with distance; for the renderer.
enum NAttenuationType : long { NAT_DEFAULT = 0 };

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/light/light_attributes.def"

/// A light source as data: kind, colour, shadow, attenuation and cone.
///
/// Says nothing of position; that comes from the scene graph's light item that refers to it.
class CORVANTA_API NLightNode : public NNode {
 public:
  NLightNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
             events::attribute_change::NMultiplexer const* multiplexer);
  ~NLightNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/light/light_attributes.def"

  /// Gives `target` this light's name and attribute values; its id and domain stay.
  void CopyTo(NLightNode& target) const;

 private:
  struct Block;

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::light
