// A machine hall is looked at from above with its roof cut away: in the from-plane mode of the
// picker only what lies beyond the cutting plane can be hit, and in the area mode only what lies in
// a box. The same ray tells different things in each.
#include <iostream>

#include "scene.h"

using namespace example;
using data::operators::ray_picker::NRayPicker;

namespace {

void Pick(char const* what, NRayPicker& picker, domain::scene::NSceneNode const& scene) {
  scene.Accept(picker);       // collects the models whose boxes the ray meets,
  picker.SortWithDistance();  // the nearest first,
  picker.CheckDetail();       // and keeps those with a triangle that it hits
  std::cout << what << ": " << picker.GetPickCount() << " hit\n";
  for (unsigned long i = 0; i != picker.GetPickCount(); ++i) {
    std::cout << "  " << Name(*picker.GetModelNode(i)) << " at height "
              << Text(picker.GetAbsHitPoint(i).y) << '\n';
  }
}

}  // namespace

int main() {
  Document document;
  auto const hall = CreateTree(document, L"hall");
  item::NSceneGraphItemNode& root = *hall->GetRoot();
  AddBox(document, root, L"roof", {0, 9.9f, 0}, {30, 0.2f, 20});
  AddBox(document, root, L"crane", {2, 7, 0}, {1, 1, 20});
  AddBox(document, root, L"press", {2, 2, 1}, {4, 4, 3});
  AddBox(document, root, L"stack", {2, 4.5f, -4}, {1, 8, 1});
  AddBox(document, root, L"floor", {0, -0.1f, 0}, {30, 0.2f, 20});
  auto const scene = document.GetScenes().CreateNode();
  scene->SetSceneGraph(hall);

  VX_Math::Line const down({2.2f, 50, 0.7f}, {2.2f, 0, 0.7f});
  {
    NRayPicker picker;  // serves one pick
    picker.SetRay(down);
    Pick("the closed hall", picker, *scene);
  }
  {
    NRayPicker picker;
    picker.SetRay(down);
    picker.SetPlane(VX_Math::Plane(Vec3(0, 1, 0), 6.0));
    picker.SetPickFromPlane(true);
    Pick("cut at 6 m", picker, *scene);
    std::cout << "  the ray meets the plane at " << Text(picker.GetPlaneHit()) << '\n';
  }
  {
    NRayPicker picker;
    picker.SetRay(down);
    picker.SetSpace(VX_Math::Box3(Vec3(-15, 5, -10), Vec3(15, 9, 10)));
    picker.SetPickInArea(true);
    Pick("only from 5 to 9 m", picker, *scene);
  }
  {
    // What the plane cuts through is hit from inside: on the face beyond the plane.
    NRayPicker picker;
    picker.SetRay(VX_Math::Line(Vec3(2.2f, 50, -4.1f), Vec3(2.2f, 0, -4.1f)));
    picker.SetPlane(VX_Math::Plane(Vec3(0, 1, 0), 6.0));
    picker.SetPickFromPlane(true);
    Pick("above the stack, cut at 6 m", picker, *scene);
  }
}
