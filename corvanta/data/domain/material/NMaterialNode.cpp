#include "corvanta/data/domain/material/NMaterialNode.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/material/detail/usage.h"
#include "corvanta/data/environment_map/detail/NRotationTransform.h"

namespace corvanta::data::domain::material {

using environment_map::NEnvironmentMap;

namespace {

constexpr unsigned kAttributeCount = 0
#define CORVANTA_ROWS_COUNT
#include "corvanta/data/domain/material/material_attributes.def"
    ;

}  // namespace

struct NMaterialNode::Block {
  // In an aggregate or a default initializer, g++ would leak what was made before a failure.
  explicit Block(core::attribute::NAttributeHost& node)
      : host(node), environmentMap(new NEnvironmentMap) {}

  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/material/material_attributes.def"
  TextureList textures{};
  boost::intrusive_ptr<NEnvironmentMap> environmentMap;
  boost::intrusive_ptr<environment_map::detail::NRotationTransform> transform{
      new environment_map::detail::NRotationTransform(host, material::AN_ENVIRONMENT_MAP_ROTATION_X,
                                                      material::AN_ENVIRONMENT_MAP_ROTATION_Y,
                                                      material::AN_ENVIRONMENT_MAP_ROTATION_Z)};
  core::locator::NLocator brdfTextureLocator{};
};

#define CORVANTA_ROWS_BODIES NMaterialNode
#include "corvanta/data/domain/material/material_attributes.def"

NMaterialNode::NMaterialNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                             events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_MATERIAL)),
      m_block((ReserveAttributes(kAttributeCount), new Block(*this))) {
  m_block->environmentMap->SetTransform(*m_block->transform);
  m_block->environmentMap->AddObserver(*this);
}

NMaterialNode::~NMaterialNode() { m_block->transform->ClearOwner(); }

NMaterialNode::TextureList const& NMaterialNode::GetTextures() const noexcept {
  return m_block->textures;
}

bool NMaterialNode::AddTexture(TextureReference const& texture,
                               texture_mapping::NTextureMapping& mapping, unsigned int index) {
  TextureList& textures = m_block->textures;
  if (index > textures.size()) return false;
  textures.emplace(std::next(textures.begin(), index), texture, &mapping);
  MaterialEvents::NotifyObservers(
      [&](events::material::NListener& listener) { listener.SignalAddTexture(*this, index); });
  return true;
}

void NMaterialNode::ReplaceTexture(TextureReference const& oldTexture,
                                   TextureReference const& newTexture) {
  TextureList& textures = m_block->textures;
  auto const found = std::find_if(textures.begin(), textures.end(),
                                  [&](auto const& entry) { return entry.first == oldTexture; });
  if (found == textures.end()) return;
  found->first = newTexture;
  textures.splice(textures.end(), textures, found);
}

bool NMaterialNode::RemoveTexture(unsigned int index) {
  TextureList& textures = m_block->textures;
  if (index >= textures.size()) return false;
  TextureList removed;
  removed.splice(removed.begin(), textures, std::next(textures.begin(), index));
  boost::intrusive_ptr<texture::NTextureNode> const texture = removed.front().first.Get();
  auto const& mapping = removed.front().second;
  MaterialEvents::NotifyObservers([&](events::material::NListener& listener) {
    listener.SignalRemoveTexture(*this, texture, mapping);
  });
  return true;
}

void NMaterialNode::RemoveAllTextures() { m_block->textures.clear(); }

NEnvironmentMap& NMaterialNode::GetEnvironmentMap() const noexcept {
  return *m_block->environmentMap;
}

void NMaterialNode::SetEnvironmentMap(core::node::NNodeReference<image::NImageNode> const& image,
                                      environment_map::NEnvironmentMapImageType type) {
  auto const held = core::reference_countable::Hold(*this);
  m_block->environmentMap->SetImage(image);
  m_block->environmentMap->SetImageType(type);
}

void NMaterialNode::OnImageChange(NEnvironmentMap const&) {
  EnvironmentMapEvents::NotifyObservers([&](events::environment_map_change::NListener& listener) {
    listener.SignalImageChange(*this);
  });
}

void NMaterialNode::OnImageTypeChange(NEnvironmentMap const&) {
  EnvironmentMapEvents::NotifyObservers([&](events::environment_map_change::NListener& listener) {
    listener.SignalImageTypeChange(*this);
  });
}

core::locator::NLocator const& NMaterialNode::GetBrdfTextureLocator() const noexcept {
  return m_block->brdfTextureLocator;
}

void NMaterialNode::SetBrdfTextureLocator(core::locator::NLocator const& locator) {
  core::locator::NLocator const told = locator;
  SetBrdfTextureLocator(core::locator::NLocator(told), told);
}

void NMaterialNode::SetBrdfTextureLocator(core::locator::NLocator&& stored,
                                          core::locator::NLocator const& told) {
  m_block->brdfTextureLocator = std::move(stored);
  MaterialEvents::NotifyObservers([&](events::material::NListener& listener) {
    listener.SignalSetBrdfTextureLocator(*this, told);
  });
}

void NMaterialNode::CopyTo(NMaterialNode& target) const {
  auto const held = core::reference_countable::Hold(target);
  TextureList textures = m_block->textures;
  auto const image = m_block->environmentMap->GetImageRef();
  auto const imageType = m_block->environmentMap->GetImageType();
  auto const locator = m_block->brdfTextureLocator;
  auto stored = locator;
  CopyNodeTo(target);
  if (&target != this) target.m_block->textures.swap(textures);
  target.m_block->environmentMap->SetImageType(imageType);
  target.m_block->environmentMap->SetImage(image);
  target.SetBrdfTextureLocator(std::move(stored), locator);
}

bool HasTexture(NMaterialNode const& material) { return !material.GetTextures().empty(); }

bool HasTexture(NMaterialNode const& material, texture_mapping::NTextureMappingType type) {
  auto const& textures = material.GetTextures();
  return std::any_of(textures.begin(), textures.end(), [type](auto const& entry) {
    return entry.second && entry.second->GetType() == type;
  });
}

bool IsUsed(NMaterialNode const& material) {
  core::domain::NDomainManager const* const manager = material.GetDomainManager();
  return manager != nullptr && detail::HasUse(*manager, material);
}

}  // namespace corvanta::data::domain::material
