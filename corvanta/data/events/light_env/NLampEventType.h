#pragma once

namespace corvanta::data::events::light_env {

/// What happened to a lamp of a light environment.
enum NLampEventType : int {
  NLET_LAMP_CREATED = 0,  // the lamp is complete
  NLET_LAMP_DELETED = 1,  // the lamp is still in the list
  NLET_LAMP_RENAMED = 2,
  NLET_LAMP_ATTRIBUTE_CHANGED = 3,  // read the lamp for what changed
};

}  // namespace corvanta::data::events::light_env
