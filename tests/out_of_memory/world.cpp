#include "tests/out_of_memory/world.h"

namespace corvanta::out_of_memory {

Pointer<NPolygonSurface> World::MakeSurface(float size) {
  auto made = New<NPolygonSurface>();
  std::vector<float> const coords{0, 0, 0, size, 0, 0, 0, size, 0, size, size, -1};
  std::vector<UVW> const uvws(4, {0.5f, 0.25f, 0});
  made->Assign(coords, {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2, 2, 1, 3},
               {{mapping::NUVWID_PRIMITIVE, uvws}});
  return made;
}

Pointer<NAnimationKey> World::MakeKey(double x) {
  auto key = New<NAnimationKey>();
  key->SetName(L"a key with a name that takes memory " + std::to_wstring(x));
  key->itemPath = {*group, *tree};
  key->itemTranslation = key->cameraTranslation = {x, 0, 0};
  key->cameraUp = {0, 1, 0};
  key->environment = environment;
  key->materialSwitches[0] = materialSwitch;
  key->modelSwitches[0] = modelSwitch;
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
  image->SetImageLocator(NUri::CreateFileUri(files.At("picture.png")));
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
  materialSwitch->AddMaterial(*material, 0);
  materialSwitch->AddMaterial(*materials->CreateNode(), 1);
  materialSwitch->AddModel(*model);
  for (auto const& shown : {model, shownModel}) {
    auto const made = New<data::switches::detail::NModelSet>();
    made->SetName(shown->GetName());
    modelSwitch->AddModelSet(*made, 0);
  }
  for (double const x : {1.0, 3.0}) animation->AddKey(*MakeKey(x), static_cast<int>(10 * x));
  args.scene = scene;
  args.camera = cameraPath;
  other.emplace(*this);
  other->geometry->AddSurface(*surface);
  other->model->SetMaterial(*material);
  for (auto const* const shown : {&tree, &shownTree}) GetBoundingBox(**shown);
  document.GetEvents().AddObserver(*counter);
}

void World::LetGo() {
  auto const reset = [](auto&... pointers) { (pointers.reset(), ...); };
  reset(root, group, shownRoot, loose, model, shownModel, reference, lightItem, cameraItem, tree,
        shownTree, light, camera, image, texture, material, geometry, sharing, scene, environment,
        lightEnv, projection, curves, args.scene, other);
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
  template <class T>
  requires(std::is_arithmetic_v<T> || std::is_enum_v<T>) Text& operator<<(T value) {
    return *this << std::to_wstring(static_cast<double>(value));
  }
  template <class T>
  requires(std::is_base_of_v<core::name::NNamedObject, T>) Text& operator<<(
      Pointer<T> const& named) {
    return *this << (named ? named->GetName() : L"none");
  }
  Text& operator<<(Box3 const& box) {
    return *this << box.min.x << box.min.y << box.min.z << box.max.x << box.max.y << box.max.z;
  }
  Text& operator<<(NLocator const& at) {
    return *this << at.GetUri().GetPath().ToString() << at.GetZippedPath().ToString();
  }
  template <class References>
  Text& List(References const& list) {
    *this << list.size();
    for (auto const& entry : list) *this << entry.Get();
    return *this;
  }
  Text& Attributes(NAttributeHost const& host) {
    for (auto i = host.GetAttributeBegin(); i != host.GetAttributeEnd(); ++i) {
      *this << i->GetName() << i->GetDouble() << i->GetString() << static_cast<int>(i->GetKind());
    }
    text += L'\n';
    return *this;
  }
};

/// Calls `describe` for a node of that class.
template <class Node, class Call>
void For(domain::NNode& node, Call const& describe) {
  if (auto* const typed = dynamic_cast<Node*>(&node)) describe(*typed);
}

void Describe(Text& out, domain::NNode& node) {
  out << node.GetName();
  For<NSceneGraphItemNode>(node, [&](auto& i) {
    out << i.GetParent() << i.GetTransform()(3, 0) << i.GetTransform()(3, 1);
    for (auto const& child : i.GetChildren()) out << child;
  });
  For<NSceneGraphModelNode>(node, [&](auto& i) {
    out << i.GetGeometryNode() << i.GetMaterialNode() << i.GetBoundingBoxWithoutChildren();
  });
  For<NSceneGraphLightNode>(node, [&](auto& i) { out << i.GetLightNode(); });
  For<NSceneGraphCameraNode>(node, [&](auto& i) { out << i.GetCameraNode(); });
  For<NSceneGraphTreeHost>(node, [&](auto& i) { out << i.GetSceneGraph(); });
  For<NSceneGraphTreeNode>(node, [&](auto& i) { out << i.GetRoot() << GetBoundingBox(i); });
  For<NImageNode>(node, [&](auto& i) { out << i.GetImageLocator(); });
  For<NTextureNode>(node, [&](auto& i) { out << i.GetImage(); });
  For<NMaterialNode>(node, [&](auto& i) {
    for (auto const& [texture, mapping] : i.GetTextures())
      out << texture.Get() << mapping->GetType();
    out << IsUsed(i) << i.GetBrdfTextureLocator() << i.GetEnvironmentMap().GetImageType();
    out << i.GetEnvironmentMap().GetImage();
  });
  For<NGeometryNode>(node, [&](auto& i) {
    for (auto const& s : i.GetSurfaces()) out << s->GetCoords().size() << s->GetUVWsMap().size();
  });
  For<NSceneNode>(node, [&](auto& i) { out << i.GetEnvironment(); });
  For<NEnvironmentNode>(node, [&](auto& i) {
    out << i.GetLights().size() << i.Get2DImage() << i.GetFloorImage();
    out.List(i.GetLightEnvs()) << i.GetFloorGeometry() << i.GetEnvironmentMapModel();
    out << i.GetEnvironmentMap().GetImageType() << i.GetEnvironmentMap().GetImage();
  });
  For<NLightEnvNode>(node, [&](auto& i) {
    for (auto const& lamp : i.GetLamps()) (out << lamp).Attributes(*lamp);
  });
  For<NProjectionNode>(node, [&](auto& i) {
    for (auto const& [path, frame] : i.GetTargets()) out << path.GetNode() << bool(frame);
  });
  For<NAnimationNode>(node, [&](auto& i) {
    for (auto const& [at, curve] : i.GetAnimations()) {
      out << at.attributeName << curve->GetKeyData().size();
    }
  });
  out.Attributes(node);
}

void Describe(Text& out, NAnimation& animation) {
  out << animation.GetName() << animation.GetEngine().GetTickCount()
      << animation.GetEngine().GetEndTime() << animation.GetTrigger().GetNode();
  for (auto const& [key, time] : animation.GetKeys()) {
    out << key << time << key->itemTranslation[0] << (key->GetNamespace() != nullptr);
  }
}

}  // namespace

std::wstring Describe(World& world) {
  Text out;
  for (int const count : world.counter->counts) out << count;
  for (auto const& nodes : world.document) {
    out << nodes->GetNodeCount();
    for (auto i = nodes->GetNodeBegin(); i != nodes->GetNodeEnd(); ++i) {
      EXPECT_EQ(nodes->QueryNode(i->GetID()), &*i);
      Describe(out, dynamic_cast<domain::NNode&>(*i));
    }
  }
  out << std::distance(world.manager.begin(), world.manager.end());
  for (auto const& [path, node] : world.projected->GetModelToProjectionMap()) {
    out << path.GetNode() << node.Get();
  }
  out.Attributes(*world.view) << world.view->GetScene() << world.view->GetCamera().GetNode();
  out << world.views->GetViews().size();
  out.List(world.materialSwitch->GetMaterials()).List(world.materialSwitch->GetModels());
  for (auto const& set : world.modelSwitch->GetModelSets()) out << set << set->GetNodes().size();
  out << (world.set->GetNamespace() != nullptr);
  for (auto const& [handle, key] : world.curve->GetKeyData())
    out << handle << key.time << key.value;
  Describe(out, *world.animation);
  if (world.copy) Describe(out, *world.copy);
  for (auto const& animation : world.presentations.GetAnimations()) out << animation;
  out << world.timelines.GetTimeLines().size() << world.files.GetLeftovers().size()
      << bool(data::internal::GetPlane(world.manager));
  for (float const value : world.result) out << value;
  for (auto const& path : world.paths) out << path.GetNode();
  for (Vec3 const& point : world.points) out << point.x;
  // Who is told of a surface, and whether the curves and the presentation play.
  int const& told = world.counter->counts[data::events::NSK_SURFACE_CHANGE];
  for (auto& geometry :
       std::vector(world.geometry->GetSurfaces().begin(), world.geometry->GetSurfaces().end())) {
    int const before = told;
    geometry->Assign({0, 0, 0}, {0, 0, 1}, {}, {});
    out << told - before;
  }
  world.curves->SetFrame(5);
  world.animation->GetEngine().Update(world.args, 2);
  out << world.group->GetTransform()(3, 0) << world.group->GetTransform()(3, 1)
      << GetBoundingBox(*world.tree);
  return out.text;
}

namespace {

template <class Node, class Call>
void ForEach(World& world, Call const& call) {
  for (auto const& nodes : world.document) {
    for (auto i = nodes->GetNodeBegin(); i != nodes->GetNodeEnd(); ++i) {
      if (auto* const node = dynamic_cast<Node*>(&*i)) call(*node);
    }
  }
}

std::size_t CountHits(NSceneGraphItemNode const& item, float x) {
  Line line;
  line.SetValue(Vec3(x, 0.2f, 10), Vec3(x, 0.2f, 0));
  std::vector<NSceneGraphModelNode const*> models;
  data::operators::ray_picker::PickModel(item, &line, models);
  return models.size();
}

class Bytes {
 public:
  std::string text;

  template <class T>
  Bytes& operator<<(T const& value) {
    text.append(reinterpret_cast<char const*>(&value), sizeof value);
    return *this;
  }
};

}  // namespace

Caches ReadCaches(World& world) {
  Bytes boxes, others;
  ForEach<NSceneGraphTreeNode>(world, [&](auto const& tree) {
    others << tree.GetControlTransform();
    boxes << GetBoundingBox(tree);
  });
  ForEach<NSceneGraphItemNode>(world, [&](auto const& node) {
    others << node.GetTransform();
    boxes << node.GetBoundingBox({}, {});
    for (float const x : {0.2f, 0.9f}) boxes << CountHits(node, x);
    ForEach<NSceneGraphReferenceNode>(world, [&](auto const& reference) {
      auto const shown = reference.GetSceneGraph();
      EXPECT_EQ(node.IsReferredFrom(reference), shown && shown->GetRoot() == &node);
    });
  });
  ForEach<NSceneGraphModelNode>(
      world, [&](auto const& model) { others << model.GetBoundingBoxWithoutChildren(); });
  ForEach<NMaterialNode>(world, [&](auto const& used) {
    bool isUsed = false;
    ForEach<NSceneGraphModelNode>(
        world, [&](auto const& model) { isUsed = isUsed || model.GetMaterialNode() == &used; });
    EXPECT_EQ(IsUsed(used), isUsed);
  });
  others << world.projection->GetTransform();
  return {boxes.text, others.text};
}

void MarkCaches(World& world) {
  ForEach<NSceneGraphItemNode>(world, [](auto& node) { node.SetScaleX(node.GetScaleX()); });
  ForEach<NSceneGraphTreeNode>(world, [](auto& tree) { tree.SetUnit(tree.GetUnit()); });
  ForEach<NGeometryNode>(world, [](auto& node) {
    auto const surfaces = node.GetSurfaces();
    for (auto const& surface : surfaces) node.RemoveSurface(*surface);
    for (auto const& surface : surfaces) node.AddSurface(*surface);
  });
  world.projection->SetScaleX(world.projection->GetScaleX());
}

void MakePickIndexes(World& world) {
  std::vector<float> coords, normals;
  std::vector<unsigned> indices;
  for (unsigned i = 0; i != 300; ++i) {
    float const x = static_cast<float>(i) / 300;
    coords.insert(coords.end(), {x, 0, 0, x + 0.01f, 0, 0, x, 1, 0});
    indices.insert(indices.end(), {3 * i, 3 * i + 1, 3 * i + 2});
  }
  world.surface->Assign(coords, coords, indices, {});
  for (int i = 0; i != 12; ++i) {
    for (auto const* const root : {&world.root, &world.shownRoot}) CountHits(**root, 0.9f);
  }
}

}  // namespace corvanta::out_of_memory
