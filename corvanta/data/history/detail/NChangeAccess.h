#pragma once

#include "corvanta/data/history/NChange.h"

namespace corvanta::data::history::detail {

/// Makes a change again or takes it back, through the setters of the objects.
class NChangeAccess {
 public:
  /// Raises: what the setter raises.
  /// Fails: false, and no change, if the object refuses it; passes on what listeners throw.
  static bool Apply(NChange const& change, bool isForward);

 private:
  static bool ApplyNode(NChange const& change, bool isAdded);
  static bool ApplyChild(NChange const& change, bool isAdded, bool isForward);
  static bool ApplyTexture(NChange const& change, bool isAdded);
  static bool ApplyLightEnv(NChange const& change, bool isAdded);
  static bool ApplyLamp(NChange const& change, bool isAdded);
  static bool ApplySurface(NChange const& change, bool isAdded);
  static bool ApplyName(NChange const& change, bool isForward);
  static bool ApplyReference(NChange const& change, bool isForward);
  static bool ApplyEnvironmentMapType(NChange const& change, bool isForward);
  static bool ApplyLocator(NChange const& change, bool isForward);
};

}  // namespace corvanta::data::history::detail
