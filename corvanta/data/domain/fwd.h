#pragma once

#define CORVANTA_KIND(SPACE, CLASS)         \
  namespace corvanta::data::domain::SPACE { \
  class CLASS;                              \
  }
#include "corvanta/data/domain/node_kinds.def"

namespace corvanta::data::domain {
class NNode;
class NNodeModifier;
class NNodeWatcher;
}  // namespace corvanta::data::domain

namespace corvanta::data::domain::geometry {
class NSurface;
}
namespace corvanta::data::domain::light_env {
class NLamp;
}
namespace corvanta::data::domain::material::texture_mapping {
class NTextureMapping;
}
namespace corvanta::data::domain::scenegraph::item {
class NSceneGraphItemNode;
}
namespace corvanta::data::domain::scenegraph::tree {
class NSceneGraphTreeHost;
}
