#pragma once

#include <memory>
#include <string>

#include "corvanta/core/locator/NLocator.h"
#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/events/NReferenceKind.h"
#include "corvanta/data/events/detail/NModelRecorder.h"
#include "corvanta/data/history/NKept.h"

namespace corvanta::data::history {

/// The kinds of change beside those of attributes. Pairs of what comes and goes are each other's
/// inverse.
enum NChangeKind : int {
  NCK_NODE_ADDED,
  NCK_NODE_REMOVED,
  NCK_CHILD_ADDED,
  NCK_CHILD_REMOVED,
  NCK_TEXTURE_ADDED,
  NCK_TEXTURE_REMOVED,
  NCK_LIGHT_ENV_ADDED,
  NCK_LIGHT_ENV_REMOVED,
  NCK_LAMP_CREATED,
  NCK_LAMP_DELETED,
  NCK_SURFACE_ADDED,
  NCK_SURFACE_REMOVED,
  NCK_NAME,
  NCK_REFERENCE,
  NCK_ENVIRONMENT_MAP_TYPE,
  NCK_LOCATOR,
  NCK_CONTENTS,  // a surface's arrays, or a part of a node that is recorded as a whole
};

/// A change of the structure of a document: what came, went or was replaced, where, and what it was
/// before. A value, and never changed once its set is complete.
struct NChange {
  NChangeKind kind;
  events::NReferenceKind reference{};  // of NCK_REFERENCE
  /// The node that changed: the parent, material, environment, light environment, geometry, or the
  /// owner of the reference, locator or contents. For NCK_NODE_ADDED and NCK_NODE_REMOVED the
  /// domain; for NCK_NAME the object that has the name; for contents also a surface.
  NKept subject;
  /// What came or went: a node, child, lamp or surface; of a texture the mapping.
  NKept element;
  /// The node or child behind the element, null for the last one.
  NKept next;
  /// The parent that a child had before, which isn't the subject if a list was left behind.
  NKept previousParent;
  /// The place of a texture, light environment or lamp.
  unsigned int index = 0;
  long typeBefore = 0;  // of an environment map
  long typeAfter = 0;
  /// The reference before and after; of a texture or light environment that came or went `after`.
  events::detail::NAnyReference before;
  events::detail::NAnyReference after;
  /// What takes more room.
  struct Texts {
    std::wstring nameBefore;  // of a node that came or went, its name, in both
    std::wstring nameAfter;
    core::locator::NLocator locatorBefore;
    core::locator::NLocator locatorAfter;
  };
  std::shared_ptr<Texts const> texts;
  std::shared_ptr<events::detail::NContents const> contents;
};

/// "nodeAdded", "childRemoved" and the like.
CORVANTA_API char const* GetText(NChangeKind kind) noexcept;

}  // namespace corvanta::data::history
