#pragma once

namespace corvanta::data::events {

/// What a node refers to, one of each.
enum NReferenceKind : int {
  NRK_GEOMETRY,               // of a model
  NRK_MATERIAL,               // of a model
  NRK_TREE,                   // of a tree host
  NRK_ROOT,                   // of a tree
  NRK_ENVIRONMENT,            // of a scene
  NRK_TEXTURE_IMAGE,          // of a texture
  NRK_ENVIRONMENT_MAP_IMAGE,  // of a material or an environment
  NRK_FLOOR_IMAGE,            // of an environment, as the rest down to its model
  NRK_FLOOR_GEOMETRY,
  NRK_BACKDROP,
  NRK_ENVIRONMENT_MAP_MODEL,
  NRK_LIGHT,   // of a light item
  NRK_CAMERA,  // of a camera item
};

}  // namespace corvanta::data::events
