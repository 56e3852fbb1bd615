#pragma once

#include <memory>

#include "corvanta/data/domain/NNode.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::domain::camera {

/// The kind of a camera; for the callers, nothing in the library reads it.
enum NCameraType : long { NCT_DEFAULT = 0 };
/// How a camera projects. Any other value gives the identity as its projection.
enum NProjectionType : long { NPT_PERSPECTIVE = 0, NPT_ORTHOGRAPHIC = 1 };

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/camera/camera_attributes.def"

/// The lens of a camera: view angles, projection, depth of field, tilts and stereo offsets.
///
/// Says nothing of position; that comes from the scene graph's camera item that refers to it.
class CORVANTA_API NCameraNode : public NNode {
 public:
  NCameraNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
              events::attribute_change::NMultiplexer const* multiplexer);
  ~NCameraNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/camera/camera_attributes.def"

  /// These are no attributes: setting them raises nothing, and CopyTo leaves them out. Moves the
  /// picture up.
  /// Units: fraction of its height.
  void SetShiftY(double shift);
  /// Moves the picture sideways, for one eye, by this much at the screen distance.
  /// Units: scene units.
  double GetStereoShiftX() const;
  void SetStereoShiftX(double shift);
  /// Where the pictures of both eyes meet.
  /// Units: scene units.
  double GetStereoScreenDistance() const;
  void SetStereoScreenDistance(double distance);

  /// The projection of a part of the view. The orthographic view has the size of the perspective
  /// one at `focusDistance`. Depth goes from 0 at `nearZ` to 1 at `farZ`; tilts, which only the
  /// perspective view has, shorten `nearZ`.
  /// Units: the rectangle and the offset that moves it are fractions of the view's width and
  /// height, from its centre, upwards; the distances are scene units.
  /// Fails: no error; a zero aspect, screen distance or `nearZ` gives a matrix that isn't finite.
  VX_Math::Matrix GetProjectionMatrix(double aspect, double nearZ, double farZ,
                                      double focusDistance, double left, double top, double right,
                                      double bottom, double offsetX, double offsetY) const;
  /// The projection of a head-mounted display's frustum; the node's own values take no part in it,
  /// nor do the last two arguments.
  /// Units: tangents of the angles from the axis to the four sides; scene units.
  VX_Math::Matrix GetProjectionMatrixHMD(double nearZ, double farZ, double tanLeft, double tanRight,
                                         double tanUp, double tanDown, double, double) const;

  /// Gives `target` this camera's name and attribute values; its id and domain stay.
  void CopyTo(NCameraNode& target) const;

 private:
  struct Block;

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::camera
