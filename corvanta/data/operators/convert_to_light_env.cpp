#include "corvanta/data/operators/convert_to_light_env.h"

#include <new>

#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/light_env/NLightEnvDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"

namespace corvanta::data::operators {

using domain::environment::NEnvironmentNode;
using domain::light::NLightNode;
using domain::light_env::NLamp;
using domain::light_env::NLightEnvDomain;
using domain::light_env::NLightEnvNode;

namespace {

void Place(NLamp& lamp, VX_Math::Matrix const& transform) {
  lamp.SetPositionX(transform(3, 0));
  lamp.SetPositionY(transform(3, 1));
  lamp.SetPositionZ(transform(3, 2));
  VX_Math::Vec3 direction;
  transform.MultDirMatrix(VX_Math::Vec3(0.0f, 0.0f, -1.0f), direction);
  direction.Normalize();
  lamp.SetDirectionX(direction.x);
  lamp.SetDirectionY(direction.y);
  lamp.SetDirectionZ(direction.z);
}

void CopyLight(NLightNode const& light, NLamp& lamp) {
  lamp.SetType(light.GetType());
  lamp.SetColorR(light.GetColorR());
  lamp.SetColorG(light.GetColorG());
  lamp.SetColorB(light.GetColorB());
  lamp.SetEmitMinus(light.GetExtension() == domain::light::NET_EMIT_MINUS);
  lamp.SetMakesShadow(light.MakesShadow());
  lamp.SetMakesSelfShadow(light.MakesSelfShadow());
  lamp.SetShadowDarkness(light.GetShadowDarkness());
  lamp.SetShadowSoftness(light.GetShadowSoftness());
  lamp.SetAttenuationType(
      static_cast<domain::light_env::NAttenuationType>(light.GetAttenuationType()));
  lamp.SetAttenuationRange(light.GetAttenuationRange());
  lamp.SetSpreadAngle(light.GetSpreadAngle());
  lamp.SetFalloffAngle(light.GetFallOffAngle());
}

/// Makes `node` the lights of `environment` as lamps, and gives it to that.
bool Fill(NLightEnvNode& node, NEnvironmentNode& environment) {
  node.SetName(L"converted " + environment.GetName() + L"'s lights");

  // Listeners may change the set.
  auto const paths = environment.GetLights();
  for (auto const& path : paths) {
    auto const item = path.GetNode();
    if (!item) continue;
    boost::intrusive_ptr<NLightNode> const light = item->GetLightNode();
    if (!light) continue;
    VX_Math::Matrix const transform = path.GetGlobalTransform();
    boost::intrusive_ptr<NLamp> const lamp = node.CreateLamp(item->GetName());
    Place(*lamp, transform);
    CopyLight(*light, *lamp);
  }
  return environment.AddLightEnv(node);
}

}  // namespace

bool ConvertToLightEnv(NEnvironmentNode& environment, NLightEnvDomain& domain) {
  if (!environment.GetLightEnvs().empty() || environment.GetLights().empty()) return false;
  if (domain.QueryNode(environment.GetID())) return true;
  auto const held = core::reference_countable::Hold(environment);
  boost::intrusive_ptr<NLightEnvNode> const node = domain.CreateNode(environment.GetID());
  if (!node) return false;
  try {
    return Fill(*node, environment);
  } catch (std::bad_alloc const&) {
    domain.RemoveNode(*node);
    throw;
  }
}

}  // namespace corvanta::data::operators
