#include "tests/out_of_memory/world.h"

namespace corvanta::out_of_memory {

Pointer<domain::geometry::NPolygonSurface> World::MakeSurface(float size) {
  Pointer<domain::geometry::NPolygonSurface> made(new domain::geometry::NPolygonSurface);
  std::vector<float> const coords{0, 0, 0, size, 0, 0, 0, size, 0, size, size, -1};
  std::vector<data::structs::UVW> const uvws(4, {0.5f, 0.25f, 0});
  made->Assign(coords, {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2, 2, 1, 3},
               {{mapping::NUVWID_PRIMITIVE, uvws}});
  return made;
}

Pointer<data::animation::NAnimationKey> World::MakeKey(double x) {
  Pointer<data::animation::NAnimationKey> key(new data::animation::NAnimationKey);
  key->SetName(L"a key with a name that takes memory " + std::to_wstring(x));
  key->itemPath = {*group, *tree};
  key->itemTranslation = key->cameraTranslation = {x, 0, 0};
  key->cameraUp = {0, 1, 0};
  key->environment = environment;
  key->materialSwitches[0] = materials;
  key->modelSwitches[0] = models;
  key->materialIndices[0] = key->modelSetIndices[0] = x > 2 ? 1 : 0;
  key->itemIsIgnored = key->cameraIsIgnored = key->environmentIsIgnored = false;
  key->materialIsIgnored = key->modelIsIgnored = false;
  return key;
}

World::World(support::TemporaryFiles const& given) : files(given) {
  for (auto const* const observed : {&tree, &shownTree}) (*observed)->AddObserver(*neighbour);
  for (auto const* const observed : {&geometry, &sharing}) (*observed)->AddObserver(*neighbour);
  for (auto* const child : {&*group, &*shownRoot}) child->SetName(L"a group with a long name");
  shownRoot->AddChild(*shownModel);
  root->AddChild(*group);
  group->AddChild(*model);
  root->AddChild(*reference);
  root->AddChild(*lightItem);
  root->AddChild(*cameraItem);
  tree->SetRoot(*root);
  shownTree->SetRoot(*shownRoot);
  reference->SetSceneGraph(*shownTree);
  geometry->AddSurface(*surface);
  model->SetGeometryNode(*geometry);
  sharing->AddSurface(*surface);
  shownModel->SetGeometryNode(*sharing);
  model->SetMaterial(*material);
  lightItem->SetLightNode(*light);
  cameraItem->SetCameraNode(*camera);
  cameraItem->SetTranslationZ(10);
  image->SetImageLocator(core::uri::NUri::CreateFileUri(files.At("picture.png")));
  texture->SetImage(*image);
  material->AddTexture(*texture, *uvw, 0);
  scene->SetSceneGraph(*tree);
  scene->SetEnvironment(*environment);
  lightEnv->CreateLamp(L"key light with a name that takes memory");
  environment->AddLight(lightPath);
  projection->SetProjectionMethod(domain::projection::PM_CYLINDER);
  projection->AddModel(modelPath);
  projected->AddProjectionData(modelPath, *projection);
  curve->AddKey({0, 1, 0});
  curve->AddKey({10, 2, 0});
  Pointer<domain::animation::NAnimationTarget> const target(
      new domain::animation::NNodeAnimationTarget(NNodeReference<domain::NNode>(*group)));
  curves->AddAnimation({L"translation.y", target}, *curve);
  view->SetScene(*scene);
  view->SetCamera(cameraPath);
  materials->AddMaterial(*material, 0);
  materials->AddMaterial(*document.GetMaterials().CreateNode(NNodeID()), 1);
  materials->AddModel(*model);
  for (auto const& shown : {model, shownModel}) {
    Pointer<data::switches::detail::NModelSet> const set(new data::switches::detail::NModelSet);
    set->SetName(shown->GetName());
    models->AddModelSet(*set, 0);
  }
  for (double const x : {1.0, 3.0}) animation->AddKey(*MakeKey(x), static_cast<int>(10 * x));
  args.scene = scene;
  args.camera = cameraPath;
  for (auto const* const shown : {&tree, &shownTree}) GetBoundingBox(**shown);
  document.GetEvents().AddObserver(*counter);
}

void World::LetGo() {
  auto const reset = [](auto&... pointers) { (pointers.reset(), ...); };
  reset(root, group, shownRoot, loose, model, shownModel, reference, lightItem, cameraItem, tree,
        shownTree, light, camera, image, texture, material, geometry, sharing, scene, environment,
        lightEnv, projection, curves, args.scene);
  for (auto const& nodes : document) {
    for (bool isGone = true; isGone && nodes->GetNodeCount() != 0;) {
      isGone = nodes->RemoveNode(*nodes->GetNodeBegin());
    }
  }
}

namespace {

class Text {
 public:
  std::wstring text;

  Text& operator<<(std::wstring const& value) {
    text += value + L' ';
    return *this;
  }
  Text& operator<<(double value) { return *this << std::to_wstring(value); }
  template <class T>
  requires(std::is_base_of_v<core::name::NNamedObject, T>) Text& operator<<(
      Pointer<T> const& named) {
    return *this << (named ? named->GetName() : L"none");
  }
  Text& operator<<(Box3 const& box) {
    return *this << box.min.x << box.min.y << box.min.z << box.max.x << box.max.y << box.max.z;
  }
  Text& operator<<(core::locator::NLocator const& at) {
    return *this << at.GetUri().GetPath().ToString() << at.GetZippedPath().ToString();
  }
  template <class References>
  Text& List(References const& list) {
    *this << static_cast<double>(list.size());
    for (auto const& entry : list) *this << entry.Get();
    return *this;
  }
  Text& Attributes(core::attribute::NAttributeHost const& host) {
    for (auto i = host.GetAttributeBegin(); i != host.GetAttributeEnd(); ++i) {
      *this << i->GetName() << i->GetDouble() << i->GetString()
            << static_cast<double>(i->GetKind());
    }
    text += L'\n';
    return *this;
  }
};

void Describe(Text& out, domain::NNode& node) {
  out << node.GetName();
  if (auto* const i = dynamic_cast<item::NSceneGraphItemNode*>(&node)) {
    out << i->GetParent() << i->GetTransform()(3, 0) << i->GetTransform()(3, 1);
    for (auto const& child : i->GetChildren()) out << child;
  }
  if (auto* const i = dynamic_cast<item::NSceneGraphModelNode*>(&node)) {
    out << i->GetGeometryNode() << i->GetMaterialNode() << i->GetBoundingBoxWithoutChildren();
  }
  if (auto* const i = dynamic_cast<item::NSceneGraphLightNode*>(&node)) out << i->GetLightNode();
  if (auto* const i = dynamic_cast<item::NSceneGraphCameraNode*>(&node)) out << i->GetCameraNode();
  if (auto* const i = dynamic_cast<domain::scenegraph::tree::NSceneGraphTreeHost*>(&node)) {
    out << i->GetSceneGraph();
  }
  if (auto* const i = dynamic_cast<domain::scenegraph::tree::NSceneGraphTreeNode*>(&node)) {
    out << i->GetRoot() << GetBoundingBox(*i);
  }
  if (auto* const i = dynamic_cast<domain::image::NImageNode*>(&node)) out << i->GetImageLocator();
  if (auto* const i = dynamic_cast<domain::texture::NTextureNode*>(&node)) out << i->GetImage();
  if (auto* const i = dynamic_cast<domain::material::NMaterialNode*>(&node)) {
    for (auto const& entry : i->GetTextures()) out << entry.first.Get() << entry.second->GetType();
    out << IsUsed(*i) << i->GetBrdfTextureLocator() << i->GetEnvironmentMap().GetImageType();
    out << i->GetEnvironmentMap().GetImage();
  }
  if (auto* const i = dynamic_cast<domain::geometry::NGeometryNode*>(&node)) {
    for (auto const& s : i->GetSurfaces()) {
      out << static_cast<double>(s->GetCoords().size())
          << static_cast<double>(s->GetUVWsMap().size());
    }
  }
  if (auto* const i = dynamic_cast<domain::scene::NSceneNode*>(&node)) out << i->GetEnvironment();
  if (auto* const i = dynamic_cast<domain::environment::NEnvironmentNode*>(&node)) {
    out << static_cast<double>(i->GetLights().size()) << i->Get2DImage() << i->GetFloorImage();
    out.List(i->GetLightEnvs()) << i->GetFloorGeometry() << i->GetEnvironmentMapModel();
    out << i->GetEnvironmentMap().GetImageType() << i->GetEnvironmentMap().GetImage();
  }
  if (auto* const i = dynamic_cast<domain::light_env::NLightEnvNode*>(&node)) {
    for (auto const& lamp : i->GetLamps()) (out << lamp).Attributes(*lamp);
  }
  if (auto* const i = dynamic_cast<domain::projection::NProjectionNode*>(&node)) {
    for (auto const& [path, frame] : i->GetTargets()) out << path.GetNode() << bool(frame);
  }
  if (auto* const i = dynamic_cast<domain::animation::NAnimationNode*>(&node)) {
    for (auto const& [context, curve] : i->GetAnimations()) {
      out << context.attributeName << static_cast<double>(curve->GetKeyData().size());
    }
  }
  out.Attributes(node);
}

void Describe(Text& out, data::animation::NAnimation& animation) {
  out << animation.GetName() << animation.GetEngine().GetTickCount()
      << animation.GetEngine().GetEndTime() << animation.GetTrigger().GetNode();
  for (auto const& [key, time] : animation.GetKeys()) {
    out << key << time << key->itemTranslation[0] << (key->GetNamespace() != nullptr);
  }
}

}  // namespace

std::wstring Describe(World& world) {
  Text out;
  Counter const& told = *world.counter;
  out << told.attributes << told.lamps << told.structure << told.content << L"\n";
  for (auto const& nodes : world.document) {
    out << static_cast<double>(nodes->GetNodeCount());
    for (auto i = nodes->GetNodeBegin(); i != nodes->GetNodeEnd(); ++i) {
      EXPECT_EQ(nodes->QueryNode(i->GetID()), &*i);
      Describe(out, dynamic_cast<domain::NNode&>(*i));
    }
  }
  out << static_cast<double>(
      std::distance(world.document.GetManager().begin(), world.document.GetManager().end()));
  for (auto const& [path, node] : world.projected->GetModelToProjectionMap()) {
    out << path.GetNode() << node.Get();
  }
  out.Attributes(*world.view) << world.view->GetScene() << world.view->GetCamera().GetNode();
  out << static_cast<double>(world.views->GetViews().size());
  out.List(world.materials->GetMaterials()).List(world.materials->GetModels());
  for (auto const& set : world.models->GetModelSets()) {
    out << set << static_cast<double>(set->GetNodes().size());
  }
  for (auto const& [handle, key] : world.curve->GetKeyData())
    out << handle << key.time << key.value;
  Describe(out, *world.animation);
  if (world.copy) Describe(out, *world.copy);
  for (auto const& animation : world.animations.GetAnimations()) out << animation;
  out << static_cast<double>(world.timelines.GetTimeLines().size());
  out << static_cast<double>(world.files.GetLeftovers().size());
  out << bool(data::internal::GetPlane(world.document.GetManager()));
  for (float const value : world.result) out << value;
  for (auto const& path : world.paths) out << path.GetNode();
  for (Vec3 const& point : world.points) out << point.x;
  // Who is told of a surface, and whether the curves and the presentation play.
  for (auto& geometry :
       std::vector(world.geometry->GetSurfaces().begin(), world.geometry->GetSurfaces().end())) {
    int const before = world.counter->content;
    geometry->Assign({0, 0, 0}, {0, 0, 1}, {}, {});
    out << world.counter->content - before;
  }
  world.curves->SetFrame(5);
  world.animation->GetEngine().Update(world.args, 2);
  out << world.group->GetTransform()(3, 0) << world.group->GetTransform()(3, 1)
      << GetBoundingBox(*world.tree);
  return out.text;
}

}  // namespace corvanta::out_of_memory
