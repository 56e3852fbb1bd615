#include "corvanta/data/domain/camera/NCameraNode.h"

#include <cmath>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/camera/NCameraDomain.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/platform/d3dx9.h"

namespace corvanta::data::domain::camera {

namespace {

// pi / 180 in single precision, as the view angles have always been converted.
constexpr double kRadiansPerDegree = 0.01745329238474369;
constexpr double kFullTurn = 6.283185307179586;

float Narrow(double value) { return static_cast<float>(value); }

// The tangent of half of a view angle; the angle is rounded before and the tangent after.
float HalfTangent(double degrees) {
  double const half = Narrow(degrees * kRadiansPerDegree * 0.5);
  return Narrow(std::tan(half));
}

// A rectangle in the near plane.
struct Rectangle {
  double left;
  double top;
  double right;
  double bottom;
};

// Turns the picture plane at `distance` about one of its axes: gives the two sides that move their
// new places, and returns the distance that the plane then has.
double Tilt(double angle, double distance, double& first, double& second) {
  double const tangent = std::tan(angle);
  double const stretch = std::sqrt(tangent * tangent + 1.0);
  double const shift = std::sin(angle) * distance;
  first = distance * first * stretch / (distance - first * tangent) + shift;
  second = distance * second * stretch / (distance - second * tangent) + shift;
  return std::cos(angle) * distance;
}

}  // namespace

struct NCameraNode::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/camera/camera_attributes.def"
  double shiftY = 0.0;
  double stereoShiftX = 0.0;
  double stereoScreenDistance = 1.0;
};

#define CORVANTA_ROWS_BODIES NCameraNode
#include "corvanta/data/domain/camera/camera_attributes.def"

NCameraNode::NCameraNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                         events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_CAMERA)),
      m_block(new Block{*this}) {}

NCameraNode::~NCameraNode() = default;

void NCameraNode::SetShiftY(double shift) { m_block->shiftY = shift; }

double NCameraNode::GetStereoShiftX() const { return m_block->stereoShiftX; }
void NCameraNode::SetStereoShiftX(double shift) { m_block->stereoShiftX = shift; }

double NCameraNode::GetStereoScreenDistance() const { return m_block->stereoScreenDistance; }
void NCameraNode::SetStereoScreenDistance(double distance) {
  m_block->stereoScreenDistance = distance;
}

VX_Math::Matrix NCameraNode::GetProjectionMatrix(double aspect, double nearZ, double farZ,
                                                 double focusDistance, double left, double top,
                                                 double right, double bottom, double offsetX,
                                                 double offsetY) const {
  NProjectionType const type = GetProjectionType();

  double width;
  double height;
  if (UsesVerticalViewAngle()) {
    height = Narrow(HalfTangent(GetVerticalViewAngle()) * (nearZ + nearZ));
    width = Narrow(aspect * height);
  } else {
    width = Narrow(HalfTangent(GetHorizontalViewAngle()) * (nearZ + nearZ));
    height = Narrow(width / aspect);
  }

  double const stereo = Narrow(nearZ * (m_block->stereoShiftX / m_block->stereoScreenDistance));
  Rectangle view{left * width + stereo, (m_block->shiftY + top) * height, right * width + stereo,
                 (m_block->shiftY + bottom) * height};

  if (type == NPT_PERSPECTIVE) {
    nearZ = Tilt(GetVerticalTiltAngle() / 360.0 * kFullTurn, nearZ, view.top, view.bottom);
    nearZ = Tilt(GetHorizontalTiltAngle() / 360.0 * -kFullTurn, nearZ, view.left, view.right);
  }

  view.left += width * offsetX;
  view.right += width * offsetX;
  view.top += height * offsetY;
  view.bottom += height * offsetY;

  switch (type) {
    case NPT_PERSPECTIVE:
      return platform::MatrixPerspectiveOffCenterRH(Narrow(view.left), Narrow(view.right),
                                                    Narrow(view.bottom), Narrow(view.top),
                                                    Narrow(nearZ), Narrow(farZ));
    case NPT_ORTHOGRAPHIC: {
      double const scale = focusDistance / nearZ;
      return platform::MatrixOrthoOffCenterRH(Narrow(view.left * scale), Narrow(view.right * scale),
                                              Narrow(view.bottom * scale), Narrow(view.top * scale),
                                              Narrow(nearZ), Narrow(farZ));
    }
    default:
      return VX_Math::Matrix::Identity();
  }
}

VX_Math::Matrix NCameraNode::GetProjectionMatrixHMD(double nearZ, double farZ, double tanLeft,
                                                    double tanRight, double tanUp, double tanDown,
                                                    double, double) const {
  float const scaleX = Narrow(2.0 / (tanLeft + tanRight));
  float const scaleY = Narrow(2.0 / (tanUp + tanDown));
  VX_Math::Matrix m;
  m(0, 0) = scaleX;
  m(1, 1) = scaleY;
  m(2, 0) = Narrow(0.5 * scaleX * (tanRight - tanLeft));
  m(2, 1) = Narrow(0.5 * scaleY * (tanUp - tanDown));
  m(2, 2) = Narrow(farZ / (nearZ - farZ));
  m(2, 3) = -1.0f;
  m(3, 2) = Narrow(nearZ * farZ / (nearZ - farZ));
  m(3, 3) = 0.0f;
  return m;
}

void NCameraNode::CopyTo(NCameraNode& target) const { CopyNodeTo(target); }

NCameraDomain::NCameraDomain(core::domain::NDomainManager const* manager,
                             events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_CAMERA)) {}

NCameraDomain::~NCameraDomain() = default;

wchar_t const* NCameraDomain::GetTypeImpl() const { return DT_CAMERA; }

}  // namespace corvanta::data::domain::camera
