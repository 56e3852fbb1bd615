#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <memory>
#include <vector>

#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/events/NEventMultiplexer.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NDrawItem.h"
#include "corvanta/renderer/NEye.h"
#include "corvanta/renderer/NTarget.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::renderer {

/// The rectangle of a target that a view takes, in pixels from the upper left corner.
struct NViewport {
  unsigned left, top, width, height;
};

/// What was uploaded to the graphics processor so far.
struct NUploads {
  std::size_t meshes = 0;    // places, normals and indices of a surface
  std::size_t coords = 0;    // texture coordinates or tangents of a surface
  std::size_t textures = 0;  // pictures
};

/// Draws a scene as the library says it stands: it takes matrices, places, visibility, boxes,
/// texture coordinates, pictures and lamps from there, and computes none of them. It hears the
/// events of the scene's nodes, and takes over again only what an event named.
class CORVANTA_API NRenderer {
 public:
  /// Requires: the context is current, and outlives this.
  /// Fails: throws NRenderError for a driver that refuses the shaders.
  NRenderer(NContext const& context, data::events::NEventMultiplexer& events);
  NRenderer(NRenderer const&) = delete;
  NRenderer& operator=(NRenderer const&) = delete;
  ~NRenderer();

  /// Takes over what changed since the last call, without drawing.
  void Update(data::domain::scene::NSceneNode const& scene);
  /// What is drawn, by its number less 1; see DrawNumbers. Of the last Update.
  std::vector<NDrawItem> const& GetItems() const;
  /// The box of what is drawn, without vertices that aren't finite. Of the last Update.
  VX_Math::Box3 GetBox() const;

  /// Updates, clears a part of the target and draws the scene there: its surroundings, its floor,
  /// its models.
  void DrawPicture(data::domain::scene::NSceneNode const& scene, NEye const& eye,
                   NTarget const& target, NViewport const& viewport);
  /// Updates, clears a part of the target to 0 and gives each pixel the number of the model that is
  /// seen at its middle, 1 for the first of GetItems. All is drawn whole: no wires, nothing
  /// transparent.
  void DrawNumbers(data::domain::scene::NSceneNode const& scene, NEye const& eye,
                   NTarget const& target, NViewport const& viewport);
  /// Waits until all is drawn.
  void Finish() const;

  NUploads GetUploads() const;

 private:
  struct Block;

  std::unique_ptr<Block> m_block;
};

}  // namespace corvanta::renderer
