#pragma once

#include <chrono>
#include <ostream>
#include <unordered_map>

#include "app/output/record.h"
#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/core/variant/NVariant.h"
#include "corvanta/data/events/NEventListener.h"

namespace corvanta::app {

/// Prints each event that it hears as a line. An event doesn't carry the value from before, so the
/// printer keeps the values of the hosts that it was shown.
class NEventPrinter : public data::events::NEventListener {
 public:
  NEventPrinter(std::ostream& out, bool asJson) : m_out(out), m_asJson(asJson) {}

  /// Keeps the values of a host's attributes, as old values of their next events.
  void Remember(core::attribute::NAttributeHost const& host);
  /// The microseconds of the events to come count from now.
  void StartClock();

 private:
  using Clock = std::chrono::steady_clock;

  ~NEventPrinter() override;

  void OnAttributeChange(core::attribute::NAttributeHost& host,
                         core::attribute::NAttribute const& attribute) override;
  void OnFloorImageChange(data::domain::environment::NEnvironmentNode const& environment) override;
  void OnFloorGeometryChange(
      data::domain::environment::NEnvironmentNode const& environment) override;
  void OnAddLightEnv(data::domain::environment::NEnvironmentNode const& environment,
                     data::domain::light_env::NLightEnvNode const& lightEnv) override;
  void OnRemoveLightEnv(data::domain::environment::NEnvironmentNode const& environment,
                        data::domain::light_env::NLightEnvNode const& lightEnv) override;
  void OnEnvironmentMapImageChange(data::domain::material::NMaterialNode const& material) override;
  void OnEnvironmentMapImageChange(
      data::domain::environment::NEnvironmentNode const& environment) override;
  void OnEnvironmentMapImageTypeChange(
      data::domain::material::NMaterialNode const& material) override;
  void OnEnvironmentMapImageTypeChange(
      data::domain::environment::NEnvironmentNode const& environment) override;
  void OnGeometryChange(
      data::domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<data::domain::geometry::NGeometryNode> const& oldGeometry) override;
  void OnGeometryChange(data::domain::geometry::NGeometryNode const& geometry,
                        data::domain::geometry::NSurface const& surface,
                        data::domain::geometry::NGeometryChangeType type) override;
  void OnAddTexture(data::domain::material::NMaterialNode const& material,
                    unsigned int index) override;
  void OnRemoveTexture(
      data::domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<data::domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<data::domain::material::texture_mapping::NTextureMapping> const& mapping)
      override;
  void OnSetBrdfTextureLocator(data::domain::material::NMaterialNode const& material,
                               core::locator::NLocator const& locator) override;
  void OnMaterialChange(
      data::domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<data::domain::material::NMaterialNode> const& oldMaterial) override;
  void OnAddChild(data::domain::scenegraph::item::NSceneGraphItemNode const& parent,
                  data::domain::scenegraph::item::NSceneGraphItemNode const& child) override;
  void OnRemoveChild(data::domain::scenegraph::item::NSceneGraphItemNode const& parent,
                     data::domain::scenegraph::item::NSceneGraphItemNode const& child) override;
  void OnSceneGraphTreeChange(
      data::domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree)
      override;
  void OnSceneGraphTreeRootChange(
      data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot)
      override;
  void OnSceneGraphTreeRootChange(
      data::domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot)
      override;
  void OnTextureImageChange(data::domain::texture::NTextureNode const& texture) override;
  void OnEnvironmentChange(data::domain::scene::NSceneNode const& scene,
                           boost::intrusive_ptr<data::domain::environment::NEnvironmentNode> const&
                               oldEnvironment) override;
  void OnLampChange(data::domain::light_env::NLightEnvNode const& lightEnv,
                    data::domain::light_env::NLamp const& lamp,
                    data::events::light_env::NLampEventType type) override;

  /// Prints an event of `subject`, which may be null; `details` stand between it and the time.
  void Print(char const* kind, core::node::NNode const* subject,
             NRecord const& details = NRecord::object());

  std::ostream& m_out;
  bool const m_asJson;
  Clock::time_point m_start = Clock::now();
  std::unordered_map<core::attribute::NAttribute const*, core::variant::NVariant> m_values;
};

}  // namespace corvanta::app
