#include "corvanta/data/internal/detail/InternalGeometryStore.h"

#include "corvanta/data/internal/detail/create_node.h"

namespace corvanta::data::internal::detail {

using domain::geometry::NGeometryNode;

namespace {

struct Row {
  NPrimitive primitive;
  wchar_t const* id;
};

// In the order in which the nodes are made.
constexpr Row kRows[NP_COUNT] = {
    {NP_PLANE, L"992E0C88-0A64-40ba-9ECE-A9E44BF69690"},
    {NP_CUBE, L"DBCE9553-6164-46d3-92B4-C50A0B8EB370"},
    {NP_INWARD_CUBE, L"88E76818-2B56-4e05-BEED-A7843651C776"},
    {NP_CUBE_FLOOR, L"1BC23DCE-1E61-4e9b-958F-CFD5DBB5048A"},
    {NP_SPHERE, L"1DDD438D-3A2C-469b-8CB3-12953B875A89"},
    {NP_INWARD_SPHERE, L"78BCFC04-90F3-4765-984C-B17EC5033A7C"},
    {NP_SPHERE_FLOOR, L"E799E583-64B2-418b-857E-BCCF9E12AB9C"},
    {NP_ARROW, L"97B78198-8050-435e-A5C6-1DC6FEB4DD29"},
    {NP_RING, L"A6DBAEFA-6E97-4041-89D9-151603C41E1C"},
    {NP_MACE, L"725F84D5-C381-4571-BC16-0C3C1A3E1F8A"},
    {NP_MAP_PLANAR, L"1C8BDE8F-0EC7-41d2-B467-F25AE0B93291"},
    {NP_MAP_CYLINDER, L"133250BB-5059-4d10-B998-0572392FC581"},
    {NP_MAP_RIBBON, L"4F8C28AD-CFC6-4cf2-8B93-BA8FFADDB6EE"},
    {NP_CAMERA_OBJECT, L"A5D4EFFA-65B4-4b85-8667-FA48630F3433"},
    {NP_CONE, L"4E5A00F2-5FBD-4b00-99A3-7D31BC601B50"},
    {NP_INWARD_DOME, L"F240DF53-A9A5-46c5-B8EA-AF211B59BED6"},
    {NP_ROD, L"843F1FCB-AFB2-4a22-9EEE-4D89F41D46D8"},
};

}  // namespace

InternalGeometryStore::InternalGeometryStore(domain::geometry::NGeometryDomain& domain) {
  for (auto const& [primitive, id] : kRows) {
    nodes[primitive] = CreateNode<NGeometryNode>(domain, id);
    Require(nodes[primitive]->AddSurface(*GetPrimitiveSurface(primitive)));
  }
}

}  // namespace corvanta::data::internal::detail
