// A logo is projected onto the side of a van. A projection node is the projector in the scene; a
// projection mapping says which node serves which model, and computes the texture coordinates of
// its vertices: 0 to 1 across the logo. The logo keeps its place on the van when that drives off.
#include <iostream>
#include <vector>

#include "scene.h"

using namespace example;
using domain::material::texture_mapping::NProjectionMapping;

namespace {

constexpr unsigned int kColumns = 5;
constexpr unsigned int kRows = 3;

// A flat side of 4 by 2 m in the plane z = 0, seen from the front.
Pointer<domain::geometry::NSurface> CreateSide() {
  std::vector<float> coords;
  std::vector<float> normals;
  std::vector<unsigned int> indices;
  for (unsigned int i = 0; i != kColumns * kRows; ++i) {
    unsigned int const column = i % kColumns;
    unsigned int const row = i / kColumns;
    coords.insert(coords.end(), {static_cast<float>(column), static_cast<float>(row), 0.0f});
    normals.insert(normals.end(), {0.0f, 0.0f, 1.0f});
    if (column + 1 == kColumns || row + 1 == kRows) continue;
    unsigned int const above = i + kColumns;
    indices.insert(indices.end(), {i, i + 1, above + 1, i, above + 1, above});
  }
  Pointer<domain::geometry::NSurface> const surface(new domain::geometry::NPolygonSurface);
  surface->Assign(coords, normals, indices, {});
  return surface;
}

void Print(char const* what, NProjectionMapping const& mapping,
           NProjectionMapping::ModelPath const& path, domain::geometry::NSurface const& surface) {
  std::vector<data::structs::UVW> coords;
  std::vector<unsigned int> newIndices;  // a plane has no seam: these two stay empty
  std::vector<unsigned int> vertexMap;
  auto const count = static_cast<unsigned int>(surface.GetCoords().size());
  mapping.ComputeTextureCoords(
      path, {count, &surface.GetCoords().front().x, &surface.GetNormals().front().x},
      {static_cast<unsigned int>(surface.GetIndices().size()), surface.GetIndices().data()}, coords,
      newIndices, vertexMap);
  int covered = 0;
  std::cout << what;
  for (unsigned int i = 0; i != count; ++i) {
    // The upper row first, as the side is seen.
    auto const& [u, v, w] = coords[(kRows - 1 - i / kColumns) * kColumns + i % kColumns];
    bool const isInside = u >= 0.0f && u <= 1.0f && v >= 0.0f && v <= 1.0f;
    covered += isInside;
    std::cout << (i % kColumns == 0 ? "\n  " : "   ") << (isInside ? '*' : ' ') << Text(u) << ' '
              << Text(v);
  }
  std::cout << "\n  " << covered << " of " << count << " vertices lie on the logo\n";
}

}  // namespace

int main() {
  Document document;
  auto const van = CreateTree(document, L"van");
  auto const geometry = document.GetGeometries().CreateNode();
  auto const surface = CreateSide();
  geometry->AddSurface(*surface);
  auto const side = document.GetItems().CreateNode<item::NSceneGraphModelNode>();
  side->SetGeometryNode(geometry);
  van->GetRoot()->AddChild(*side);
  NProjectionMapping::ModelPath const path(side, van);

  // A plane projector projects along its y axis, u along x and v along z: turned towards the
  // side.
  auto const projector = document.GetProjections().CreateNode();
  projector->SetProjectionMethod(domain::projection::PM_PLANE);
  projector->SetRotationX(-90.0);
  projector->SetTranslationX(0.75);
  projector->SetTranslationY(0.7);
  projector->SetScaleX(2.5);
  projector->AddModel(path);
  Pointer<NProjectionMapping> const mapping(new NProjectionMapping);
  mapping->AddProjectionData(path, *projector);
  auto const paint = document.GetMaterials().CreateNode();
  paint->AddTexture(document.GetTextures().CreateNode(), *mapping, 0);
  side->SetMaterial(paint);
  Print("u and v on the side of the van:", *mapping, path, *surface);

  van->GetRoot()->SetTranslationX(100.0);
  Print("100 m down the road:", *mapping, path, *surface);
  projector->SetScaleX(5.0);
  projector->SetScaleZ(2.0);
  Print("with the logo twice as large:", *mapping, path, *surface);
}
