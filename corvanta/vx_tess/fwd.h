#pragma once

/// Free-form surfaces and their trim curves, as data. What tessellates them derives from
/// NurbsSurface.
namespace VX_Tess {

class NurbsCurve2d;
class NurbsSurface;
class TessNode;
struct NurbsBasis;

}  // namespace VX_Tess

namespace corvanta {

namespace VX_Tess = ::VX_Tess;

}  // namespace corvanta
