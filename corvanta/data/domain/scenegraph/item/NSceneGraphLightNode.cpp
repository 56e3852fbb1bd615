#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"

#include <utility>

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain::scenegraph::item {

using core::node::NNodeReference;
using light::NLightNode;

NSceneGraphLightNode::NSceneGraphLightNode(
    core::node::NNodeID const& id, core::domain::NDomainBase* domain,
    events::attribute_change::NMultiplexer const* multiplexer)
    : NSceneGraphItemNode(id, domain, multiplexer,
                          core::string_table::GetString(core::string_table::DATA_LIGHT)) {}

NSceneGraphLightNode::~NSceneGraphLightNode() = default;

boost::intrusive_ptr<NLightNode> NSceneGraphLightNode::GetLightNode() const {
  return m_light.Get();
}

NNodeReference<NLightNode> const& NSceneGraphLightNode::GetLightRef() const { return m_light; }

void NSceneGraphLightNode::SetLightNode(NNodeReference<NLightNode> const& light) {
  NNodeReference<NLightNode> const previous = m_light;
  m_light = light;
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnReference(*this, events::NRK_LIGHT, previous, m_light);
}

wchar_t const* NSceneGraphLightNode::GetSceneGraphItemTypeImpl() const { return SGIT_LIGHT; }

}  // namespace corvanta::data::domain::scenegraph::item
