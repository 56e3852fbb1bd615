#pragma once

#include <boost/intrusive_ptr.hpp>
#include <list>
#include <memory>
#include <utility>

#include "corvanta/core/locator/NLocator.h"
#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/material/texture_mapping/NTextureMapping.h"
#include "corvanta/data/domain/texture/NTextureNode.h"
#include "corvanta/data/environment_map/NEnvironmentMap.h"
#include "corvanta/data/events/environment_map_change/NListener.h"
#include "corvanta/data/events/material/NListener.h"

namespace corvanta::data::domain::material {

/// The kind of a material; for the renderer.
enum NMaterialType : long { NMT_DEFAULT = 0 };

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/material/material_attributes.def"

/// How a surface looks: shading values, textures in layer order with their mappings, an environment
/// map of its own, and where its BRDF texture lies.
class CORVANTA_API NMaterialNode
    : public NNode,
      public core::observer::NObservable<NMaterialNode, events::environment_map_change::NListener>,
      public core::observer::NObservable<NMaterialNode, events::material::NListener>,
      public environment_map::NEnvironmentMapListener {
 public:
  using EnvironmentMapEvents =
      core::observer::NObservable<NMaterialNode, events::environment_map_change::NListener>;
  using MaterialEvents = core::observer::NObservable<NMaterialNode, events::material::NListener>;
  using EnvironmentMapEvents::AddObserver;
  using EnvironmentMapEvents::RemoveObserver;
  using MaterialEvents::AddObserver;
  using MaterialEvents::RemoveObserver;

  /// A texture, which the material doesn't own, and how it is mapped.
  using TextureReference = core::node::NNodeReference<texture::NTextureNode>;
  using TextureList = std::list<
      std::pair<TextureReference, boost::intrusive_ptr<texture_mapping::NTextureMapping>>>;

  NMaterialNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                events::attribute_change::NMultiplexer const* multiplexer);
  ~NMaterialNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/material/material_attributes.def"

  TextureList const& GetTextures() const noexcept;
  /// Inserts before the entry now at `index`; the size of the list appends.
  /// Raises: SignalAddTexture.
  /// Fails: false, and no change, for an index beyond the size.
  bool AddTexture(TextureReference const& texture, texture_mapping::NTextureMapping& mapping,
                  unsigned int index);
  /// Gives the mapping of the first entry of `oldTexture` to `newTexture`, at the end of the list.
  /// Raises: nothing.
  /// Fails: no change if `oldTexture` isn't in the list.
  void ReplaceTexture(TextureReference const& oldTexture, TextureReference const& newTexture);
  /// Raises: SignalRemoveTexture, with null for a texture that has gone.
  /// Fails: false, and no change, for an index that isn't below the size.
  bool RemoveTexture(unsigned int index);
  /// Raises: nothing.
  void RemoveAllTextures();

  /// Its transform follows this node's rotation attributes; once the node has gone, it is the
  /// identity.
  environment_map::NEnvironmentMap& GetEnvironmentMap() const noexcept;
  /// Raises: SignalImageChange, then, with the type in place too, SignalImageTypeChange.
  void SetEnvironmentMap(core::node::NNodeReference<image::NImageNode> const& image,
                         environment_map::NEnvironmentMapImageType type);

  core::locator::NLocator const& GetBrdfTextureLocator() const noexcept;
  /// Raises: SignalSetBrdfTextureLocator.
  void SetBrdfTextureLocator(core::locator::NLocator const& locator);

  /// Gives `target` this node's name, attribute values, textures, environment map's image and BRDF
  /// locator; its id and domain stay. The mappings are shared.
  /// Raises: what the attributes, the environment map and the locator do, but nothing for textures.
  void CopyTo(NMaterialNode& target) const;

 private:
  struct Block;

  void SetBrdfTextureLocator(core::locator::NLocator&& stored, core::locator::NLocator const& told);
  void SetTextures(TextureList& textures);
  static void ApplyTextures(core::reference_countable::NReferenceCountable& material,
                            std::shared_ptr<void const> const& textures);

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
  void OnImageChange(environment_map::NEnvironmentMap const& map) override;
  void OnImageTypeChange(environment_map::NEnvironmentMap const& map) override;

  std::unique_ptr<Block> const m_block;
};

CORVANTA_API bool HasTexture(NMaterialNode const& material);
/// Whether some texture is mapped by a mapping of that type.
CORVANTA_API bool HasTexture(NMaterialNode const& material,
                             texture_mapping::NTextureMappingType type);
/// Whether a model of the material's domain manager shows it.
/// Fails: false for a material without a domain manager.
CORVANTA_API bool IsUsed(NMaterialNode const& material);

}  // namespace corvanta::data::domain::material
