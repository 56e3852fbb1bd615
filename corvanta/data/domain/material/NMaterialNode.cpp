#include "corvanta/data/domain/material/NMaterialNode.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/material/detail/usage.h"
#include "corvanta/data/environment_map/detail/NRotationTransform.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

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
  auto const entry = textures.emplace(std::next(textures.begin(), index), texture, &mapping);
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnTexture(true, *this, index, entry->first, &mapping);
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
  events::detail::NContentsChange change(GetRecorder(), textures);
  found->first = newTexture;
  textures.splice(textures.end(), textures, found);
  change.Record(*this, textures, &ApplyTextures,
                2 * textures.size() * sizeof(TextureList::value_type));
}

bool NMaterialNode::RemoveTexture(unsigned int index) {
  TextureList& textures = m_block->textures;
  if (index >= textures.size()) return false;
  TextureList removed;
  removed.splice(removed.begin(), textures, std::next(textures.begin(), index));
  boost::intrusive_ptr<texture::NTextureNode> const texture = removed.front().first.Get();
  auto const& mapping = removed.front().second;
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnTexture(false, *this, index, removed.front().first, mapping.get());
  MaterialEvents::NotifyObservers([&](events::material::NListener& listener) {
    listener.SignalRemoveTexture(*this, texture, mapping);
  });
  return true;
}

void NMaterialNode::RemoveAllTextures() {
  TextureList none;
  SetTextures(none);
}

/// The old ones are the caller's then.
void NMaterialNode::SetTextures(TextureList& textures) {
  events::detail::NContentsChange change(GetRecorder(), m_block->textures);
  m_block->textures.swap(textures);
  change.Record(*this, m_block->textures, &ApplyTextures,
                (m_block->textures.size() + textures.size()) * sizeof(TextureList::value_type));
}

void NMaterialNode::ApplyTextures(core::reference_countable::NReferenceCountable& material,
                                  std::shared_ptr<void const> const& textures) {
  TextureList copy = *static_cast<TextureList const*>(textures.get());
  dynamic_cast<NMaterialNode&>(material).SetTextures(copy);
}

NEnvironmentMap& NMaterialNode::GetEnvironmentMap() const noexcept {
  return *m_block->environmentMap;
}

void NMaterialNode::SetEnvironmentMap(core::node::NNodeReference<image::NImageNode> const& image,
                                      environment_map::NEnvironmentMapImageType type) {
  auto const held = core::reference_countable::Hold(*this);
  core::detail::NChangeGroup const group(GetRecorder());
  m_block->environmentMap->SetImage(image);
  m_block->environmentMap->SetImageType(type);
}

void NMaterialNode::OnImageChange(NEnvironmentMap const& map) {
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) {
    recorder->OnReference(*this, events::NRK_ENVIRONMENT_MAP_IMAGE, map.GetPreviousImageRef(),
                          map.GetImageRef());
  }
  EnvironmentMapEvents::NotifyObservers([&](events::environment_map_change::NListener& listener) {
    listener.SignalImageChange(*this);
  });
}

void NMaterialNode::OnImageTypeChange(NEnvironmentMap const& map) {
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) {
    recorder->OnEnvironmentMapType(*this, map.GetPreviousImageType(), map.GetImageType());
  }
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
  stored = std::exchange(m_block->brdfTextureLocator, std::move(stored));
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnLocator(*this, stored, told);
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
  core::detail::NChangeGroup const group(target.GetRecorder());
  CopyNodeTo(target);
  if (&target != this) target.SetTextures(textures);
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
