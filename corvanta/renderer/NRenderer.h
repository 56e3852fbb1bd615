#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <memory>
#include <vector>

#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/events/NEventMultiplexer.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NDrawItem.h"
#include "corvanta/renderer/NTarget.h"
#include "corvanta/renderer/NViewpoint.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::renderer {

/// The rectangle of a target that a view takes, in pixels from the upper left corner.
struct NViewport {
  unsigned left, top, width, height;
};

/// How often something was uploaded to the graphics processor so far.
struct NUploads {
  std::size_t meshes = 0;    ///< positions, normals and indices of a surface
  std::size_t coords = 0;    ///< texture coordinates or tangents of a surface
  std::size_t textures = 0;  ///< pictures
};

/// Draws scenes: it reads matrices, visibility, boxes, texture coordinates, pictures and lamps from
/// their nodes, and computes none of these itself. It listens to the events of the nodes, so that a
/// picture shows the scene as it is then, and only what an event named is read and uploaded again.
class CORVANTA_API NRenderer {
 public:
  /// Requires: the context outlives this; of NCS_CURRENT it is current.
  /// Fails: throws NRenderError for a driver that refuses the shaders.
  NRenderer(NContext const& context, data::events::NEventMultiplexer& events);
  NRenderer(NRenderer const&) = delete;
  NRenderer& operator=(NRenderer const&) = delete;
  ~NRenderer();

  /// Takes over what changed since the last call, without drawing. What changes while the scene has
  /// no tree is taken over with its next one.
  void Update(data::domain::scene::NSceneNode const& scene);
  /// What the last Update found to draw, in the order of the numbers of DrawNumbers.
  std::vector<NDrawItem> const& GetItems() const;
  /// The box of that, without vertices that aren't finite.
  VX_Math::Box3 GetBox() const;

  /// Updates, clears a part of the target and draws the scene there: its background, its floor and
  /// its models.
  /// Fails: throws NRenderError if the context can't be made current.
  void DrawPicture(data::domain::scene::NSceneNode const& scene, NViewpoint const& viewpoint,
                   NTarget const& target, NViewport const& viewport);
  /// Updates, clears a part of the target to 0 and gives each pixel the number of the model that is
  /// seen at its middle, 1 for the first of GetItems. All is drawn solid: no wireframe, nothing
  /// transparent.
  /// Fails: as DrawPicture.
  void DrawNumbers(data::domain::scene::NSceneNode const& scene, NViewpoint const& viewpoint,
                   NTarget const& target, NViewport const& viewport);
  /// Waits until all is drawn.
  void Finish() const;

  /// Whether the pictures from now on show the edges of all triangles as dark lines.
  void SetShowsEdgesFlag(bool showsEdges);
  /// Whether the environment is drawn behind the models. Without it, the alpha of a pixel of a
  /// picture is how much of it is covered, and nothing glows.
  void SetHasBackgroundFlag(bool hasBackground);

  NUploads GetUploads() const;
  /// The nodes of the pictures that were needed so far and can't be read; the library's placeholder
  /// is drawn in their places.
  std::vector<boost::intrusive_ptr<data::domain::image::NImageNode const>> GetBrokenImages() const;

 private:
  struct Block;

  std::unique_ptr<Block> m_block;
};

}  // namespace corvanta::renderer
