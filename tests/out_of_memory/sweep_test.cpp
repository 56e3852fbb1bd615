#include "tests/out_of_memory/failing_allocations.h"
#include "tests/out_of_memory/world.h"
#include "tests/support/zip_archive.h"

namespace corvanta::out_of_memory {
namespace {

struct Operation {
  char const* name;
  std::function<void(World&)> run;
  std::function<void(World&)> prepare = [](World&) {};
  bool isRepeated = false;      // what failed half way is made whole by a second call
  bool leavesOldBoxes = false;  // by the rules of what marks nothing
};

/// What an operation has left in a document of its own.
struct Outcome {
  std::wstring state;
  bool hasFailed = false;
  std::size_t leaked = 0;
};

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

Outcome Run(support::TemporaryFiles const& files, Operation const& operation, bool runs,
            std::size_t successes = kNever, bool failsOnce = false) {
  Outcome outcome;
  outcome.state.reserve(1 << 16);
  std::size_t const before = CountAlive();
  {
    World world(files);
    operation.prepare(world);
    FailAfter(successes, failsOnce);
    try {
      if (runs) operation.run(world);
    } catch (std::bad_alloc const&) {
    }
    NeverFail();
    outcome.hasFailed = HasFailed();
    if (operation.isRepeated && outcome.hasFailed) operation.run(world);
    if (operation.isRepeated) *world.counter = {};
    outcome.state.assign(Describe(world));
  }
  outcome.leaked = CountAlive() - before;
  return outcome;
}

/// Where two texts part.
std::string Difference(std::wstring const& a, std::wstring const& b) {
  auto const at = static_cast<std::size_t>(
      std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
  std::size_t const from = at < 60 ? 0 : at - 60;
  return core::text::ToNarrow(a.substr(from, 120)) + "\n---\n" +
         core::text::ToNarrow(b.substr(from, 120));
}

enum class Reaction { kNone, kThrow, kLetGo };

/// Runs `operation` with a listener that reacts to one of the calls, then compares every cache with
/// one that is computed anew. Where the hosts have lost their trees before, reads meet them anew.
/// Fails: false if there were no more than `callsBefore` calls.
bool React(support::TemporaryFiles const& files, Operation const& operation, Reaction reaction,
           int callsBefore, bool isLate) {
  World world(files);
  operation.prepare(world);
  MakePickIndexes(world);
  if (isLate) {
    world.shownTree->RemoveObserver(*world.reference);
    world.tree->RemoveObserver(*world.scene);
    world.reference->SetTranslationZ(1);
  }
  Counter& counter = *world.counter;
  counter.react = [&] {
    if (reaction == Reaction::kThrow) throw Thrown();
    if (reaction == Reaction::kLetGo) world.LetGo();
  };
  counter.callsBefore = callsBefore;
  try {
    operation.run(world);
  } catch (Thrown const&) {
  } catch (...) {
    EXPECT_EQ(reaction, Reaction::kLetGo) << "the path that was asked has gone";
  }
  bool const hasReacted = counter.callsBefore < 0;
  counter.callsBefore = -1;
  if (reaction == Reaction::kLetGo && hasReacted) return true;
  Caches const kept = ReadCaches(world);
  MarkCaches(world);
  Caches const made = ReadCaches(world);
  EXPECT_TRUE(kept.others == made.others) << "call " << callsBefore;
  if (!operation.leavesOldBoxes) {
    EXPECT_TRUE(kept.boxes == made.boxes) << "call " << callsBefore;
  } else if (reaction == Reaction::kNone && !isLate) {
    EXPECT_FALSE(kept.boxes == made.boxes) << "the rule is another one";
  }
  return hasReacted;
}

/// Lets a listener throw, then let every node go, at each call of each operation.
void SweepListeners(support::TemporaryFiles const& files, Operation const& operation) {
  for (bool const isLate : {false, true}) {
    SCOPED_TRACE(isLate ? "late" : "met");
    React(files, operation, Reaction::kNone, 0, isLate);
    for (Reaction const reaction : {Reaction::kThrow, Reaction::kLetGo}) {
      int call = 0;
      while (React(files, operation, reaction, call, isLate) && !testing::Test::HasFailure()) {
        ++call;
      }
    }
  }
}

/// Lets each allocation of each operation fail, alone and with all after it: what is left is the
/// state before or the one after, and nothing leaks.
void Sweep(std::vector<Operation> const& operations) {
  support::TemporaryFiles const files;
  files.Write("picture.png", "no picture");
  files.Write("other.jpg", "none either");
  support::WriteZip(files.At("archive.zip"), {{"inside.tif", "packed"}});
  for (Operation const& operation : operations) {
    SCOPED_TRACE(operation.name);
    Run(files, operation, true);  // what is made once in a process is made now
    SweepListeners(files, operation);
    std::wstring const before = Run(files, operation, false).state;
    Outcome const whole = Run(files, operation, true);
    std::wstring const& after = whole.state;
    // A surface that all documents share keeps the references of nodes that have gone.
    std::size_t const kept = whole.leaked * (operation.isRepeated ? 2 : 1);
    for (bool const failsOnce : {false, true}) {
      for (std::size_t i = 0;; ++i) {
        Outcome outcome = Run(files, operation, true, i, failsOnce);
        // What a failure makes once in a process isn't made again.
        if (outcome.leaked > kept) outcome = Run(files, operation, true, i, failsOnce);
        bool const isWhole =
            outcome.state == after ||
            (outcome.hasFailed && !operation.isRepeated && outcome.state == before);
        EXPECT_TRUE(isWhole) << "allocation " << i << (failsOnce ? " alone" : " and all after it")
                             << "\n"
                             << Difference(outcome.state, before) << "\n===\n"
                             << Difference(outcome.state, after);
        EXPECT_LE(outcome.leaked, kept) << "allocation " << i;
        if (!outcome.hasFailed || !isWhole || outcome.leaked > kept) break;
      }
    }
  }
}

/// A second node of a kind, which `MakeOther` has made.
template <class Nodes>
auto& Other(Nodes& nodes) {
  return static_cast<std::remove_reference_t<decltype(*nodes.GetTypedNodeBegin())>&>(
      *nodes.QueryNode(L"other"));
}
void MakeOther(World& w) {
  w.document.GetTrees().CreateNode(L"other");
  w.document.GetCameras().CreateNode(L"other");
  w.document.GetLights().CreateNode(L"other");
  w.document.GetImages().CreateNode(L"other");
  w.document.GetTextures().CreateNode(L"other");
  w.document.GetMaterials().CreateNode(L"other");
  w.document.GetGeometries().CreateNode(L"other")->AddSurface(*w.surface);
  w.document.GetEnvironments().CreateNode(L"other");
  w.document.GetLightEnvs().CreateNode(L"other")->CreateLamp(L"a lamp that was there before");
  w.document.GetProjections().CreateNode(L"other");
  w.document.GetAnimations().CreateNode(L"other");
  w.document.GetItems().CreateNode<item::NSceneGraphModelNode>(L"other")->SetMaterial(*w.material);
}

TEST(Sweep, Creation) {
  auto const make = [](auto get) {
    return [get](World& w) {
      (w.document.*get)().CreateNode(NNodeID(L"an id that is kept as a text"));
    };
  };
  using Document = data::document::NDocument;
  Sweep(
      {{"light", make(&Document::GetLights)},
       {"camera", make(&Document::GetCameras)},
       {"image", make(&Document::GetImages)},
       {"texture", make(&Document::GetTextures)},
       {"sound", make(&Document::GetSounds)},
       {"movie", make(&Document::GetMovies)},
       {"material", make(&Document::GetMaterials)},
       {"geometry", make(&Document::GetGeometries)},
       {"scene", make(&Document::GetScenes)},
       {"tree", make(&Document::GetTrees)},
       {"projection", make(&Document::GetProjections)},
       {"environment", make(&Document::GetEnvironments)},
       {"light environment", make(&Document::GetLightEnvs)},
       {"curves", make(&Document::GetAnimations)},
       {"group", [](World& w) { w.Make<item::NSceneGraphGroupNode>(); }},
       {"model", [](World& w) { w.Make<item::NSceneGraphModelNode>(); }},
       {"reference", [](World& w) { w.Make<item::NSceneGraphReferenceNode>(); }},
       {"light item", [](World& w) { w.Make<item::NSceneGraphLightNode>(); }},
       {"camera item", [](World& w) { w.Make<item::NSceneGraphCameraNode>(); }},
       {"document", [](World&) { Document(); }},
       {"event system",
        [](World&) {
          Pointer<data::events::NEventMultiplexer>(new data::events::NEventMultiplexer);
        }},
       {"surface", [](World& w) { w.geometry->AddSurface(*w.MakeSurface(2)); }},
       {"view",
        [](World& w) { w.views->AddView(*Pointer<data::view::NView>(new data::view::NView), 0); }},
       {"lamp",
        [](World& w) { w.lightEnv->CreateLamp(L"key light with a name that takes memory"); }},
       {"key", [](World& w) { w.MakeKey(4); }},
       {"free surface", [](World& w) {
          Pointer<domain::geometry::NNurbsSurface> const made(new domain::geometry::NNurbsSurface);
          Pointer<VX_Tess::NurbsCurve2d> const loop(new VX_Tess::NurbsCurve2d);
          made->AddTrimCurve(made->AddTrimLoop(), *loop);
          w.geometry->AddSurface(*made);
        }}});
}

TEST(Sweep, Items) {
  auto const fill = [](World& w) {
    for (int i = 0; i != 31; ++i) w.loose->AddChild(*w.Make<item::NSceneGraphGroupNode>());
  };
  auto const nothing = [](World&) {};
  auto const through = [](World& w) {
    return Path<item::NSceneGraphItemNode>(*w.shownModel, *w.tree, {*w.reference});
  };
  auto const hang = [](World& w) { w.group->AddChild(*w.loose); };
  auto const move = [](World& w) { w.group->AddChild(*w.shownRoot->GetChildren().front(), 0); };
  Sweep(
      {{"add child", hang},
       {"add child first", [](World& w) { w.group->AddChild(*w.loose, 0); }},
       {"add a child of another", move},
       {"remove child", [](World& w) { w.root->RemoveChild(*w.group); }},
       {"add the 32nd child", hang, fill},
       {"add to 32", [](World& w) { w.loose->AddChild(*w.group); }, fill},
       {"add a branch below", [](World& w) { w.model->AddChild(*w.loose); }, fill},
       {"remove from 33", [](World& w) { w.loose->RemoveChild(*w.loose->GetChildren().front()); },
        [fill](World& w) {
          fill(w);
          fill(w);
        }},
       {"rename", [](World& w) { w.group->SetName(L"another name that takes some memory"); }},
       {"rename to a taken name", [](World& w) { w.loose->SetName(w.group->GetName()); }},
       {"text attribute",
        [](World& w) {
          w.group->QueryAttribute(item::AN_SCALE_X)
              ->SetValue(L"a text that takes some memory", true);
        }},
       {"move", [](World& w) { w.group->SetTranslationX(3); }},
       {"move what is shown", [](World& w) { w.shownModel->SetTranslationX(3); }},
       {"move with a stale box", [](World& w) { w.group->SetTranslationY(1); },
        [](World& w) { w.root->SetTranslationX(2); }},
       {"hide", [](World& w) { w.model->SetIsVisibleFlag(false); }},
       {"absolute", [](World& w) { w.model->SetTransformIsAbsoluteFlag(true); }},
       {"transform",
        [](World& w) {
          SetTransform(*w.group, Matrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 5, 6, 1));
        }},
       {"try transform",
        [](World& w) {
          w.group->TryTransform(Matrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 5, 6, 1));
        }},
       {"new attribute",
        [](World& w) {
          w.group->AddAttribute(L"an attribute of the program", true)->SetValue(1.0, true);
        }},
       {"root", [](World& w) { w.tree->SetRoot(*w.loose); }},
       {"root that shows", [](World& w) { w.shownTree->SetRoot(*w.loose); }, nothing, false, true},
       {"unit", [](World& w) { w.shownTree->SetUnit(0.5); }},
       {"conversion",
        [](World& w) { w.tree->SetCoordConversion(domain::scenegraph::tree::CCV_ZUP_TO_YUP); },
        nothing, false, true},
       {"show another tree",
        [](World& w) { w.reference->SetSceneGraph(Other(w.document.GetTrees())); }, MakeOther,
        false, true},
       {"show no tree", [](World& w) { w.reference->SetSceneGraph({}); }, nothing, false, true},
       {"node goes", [](World& w) { w.document.GetItems().RemoveNode(*w.loose); }},
       {"group copy", [](World& w) { w.group->CopyTo(*w.loose); }, nothing, false, true},
       {"tree copy", [](World& w) { w.tree->CopyTo(*w.shownTree); }},
       {"camera node",
        [](World& w) { w.cameraItem->SetCameraNode(Other(w.document.GetCameras())); }, MakeOther},
       {"verify", [](World& w) { w.reference->VerifyReference(); }},
       {"is referred from", [](World& w) { w.shownRoot->IsReferredFrom(*w.reference); }},
       {"traverse",
        [](World& w) {
          struct Walk : domain::scenegraph::NSceneGraphTraverser {};
          Walk().Start(*w.tree, nullptr);
        }},
       {"box of a path", [=](World& w) { through(w).GetGlobalBoundingBox(); }},
       {"relation of paths", [=](World& w) { GetPathRelation(through(w), through(w)); }},
       {"clip distances", [](World& w) { GetClipDistances(w.view->GetCamera(), *w.view); }},
       {"box", [](World& w) { GetBoundingBox(*w.tree); },
        [](World& w) { w.model->SetTranslationX(1); }},
       {"first box", [](World& w) { w.loose->GetBoundingBox({}, {}); },
        [](World& w) {
          w.loose->AddChild(*w.Make<item::NSceneGraphModelNode>());
          auto const shows = w.Make<item::NSceneGraphReferenceNode>();
          shows->SetSceneGraph(*w.shownTree);
          w.loose->AddChild(*shows);
        }}});
}

TEST(Sweep, Content) {
  auto const model = [](World& w) -> item::NSceneGraphModelNode& {
    return static_cast<item::NSceneGraphModelNode&>(*w.document.GetItems().QueryNode(L"other"));
  };
  auto const at = [](World& w, char const* name) {
    return core::locator::NLocator(core::uri::NUri::CreateFileUri(w.files.At(name)));
  };
  Sweep(
      {{"set material", [](World& w) { w.model->SetMaterial(Other(w.document.GetMaterials())); },
        MakeOther},
       {"first material",
        [](World& w) { w.shownModel->SetMaterial(Other(w.document.GetMaterials())); }, MakeOther},
       {"no material", [](World& w) { w.model->SetMaterial({}); }},
       {"set geometry",
        [](World& w) { w.model->SetGeometryNode(Other(w.document.GetGeometries())); }, MakeOther},
       {"model copy", [=](World& w) { w.model->CopyTo(model(w)); }, MakeOther},
       {"copy of a model that had none", [=](World& w) { model(w).CopyTo(*w.shownModel); },
        MakeOther},
       {"model goes", [=](World& w) { w.document.GetItems().RemoveNode(model(w)); }, MakeOther},
       {"add shared surface",
        [](World& w) { Other(w.document.GetGeometries()).AddSurface(*World::MakeSurface(3)); },
        MakeOther},
       {"remove surface", [](World& w) { w.geometry->RemoveSurface(*w.surface); }, MakeOther},
       {"assign",
        [](World& w) {
          w.surface->Assign({1, 2, 3}, {0, 0, 1}, {0}, {});
        },
        MakeOther},
       {"assign arrays",
        [](World& w) {
          float const values[6] = {1, 2, 3, 0, 0, 1};
          unsigned long const index = 0;
          w.surface->Assign(values, values, 2, &index, 1, values);
        },
        MakeOther},
       {"geometry copy", [](World& w) { w.geometry->CopyTo(Other(w.document.GetGeometries())); },
        MakeOther},
       {"add texture",
        [](World& w) { w.material->AddTexture(Other(w.document.GetTextures()), *w.projected, 0); },
        MakeOther},
       {"replace texture",
        [](World& w) { w.material->ReplaceTexture(*w.texture, Other(w.document.GetTextures())); },
        MakeOther},
       {"remove texture", [](World& w) { w.material->RemoveTexture(0); }},
       {"material copy", [](World& w) { w.material->CopyTo(Other(w.document.GetMaterials())); },
        [=](World& w) {
          MakeOther(w);
          w.material->SetBrdfTextureLocator(at(w, "picture.png"));
        }},
       {"brdf", [=](World& w) { w.material->SetBrdfTextureLocator(at(w, "picture.png")); }},
       {"material's environment",
        [](World& w) {
          w.material->SetEnvironmentMap(*w.image, data::environment_map::NEMIT_SQUARE);
        }},
       {"texture's image", [](World& w) { w.texture->SetImage(Other(w.document.GetImages())); },
        MakeOther},
       {"texture copy", [](World& w) { w.texture->CopyTo(Other(w.document.GetTextures())); },
        MakeOther},
       {"image copy", [](World& w) { w.image->CopyTo(Other(w.document.GetImages())); }, MakeOther},
       {"light copy", [](World& w) { w.light->CopyTo(Other(w.document.GetLights())); }, MakeOther},
       {"camera copy", [](World& w) { w.camera->CopyTo(Other(w.document.GetCameras())); },
        MakeOther},
       {"curves copy", [](World& w) { w.curves->CopyTo(Other(w.document.GetAnimations())); },
        MakeOther},
       {"light environment copy",
        [](World& w) { w.lightEnv->CopyTo(Other(w.document.GetLightEnvs())); }, MakeOther},
       {"lamp copy",
        [](World& w) {
          w.lightEnv->GetLamps()[0]->CopyTo(*Other(w.document.GetLightEnvs()).GetLamps()[0]);
        },
        MakeOther},
       {"lamp goes", [](World& w) { w.lightEnv->DeleteLamp(w.lightEnv->GetLamps()[0]); }},
       {"environment copy",
        [](World& w) { w.environment->CopyTo(Other(w.document.GetEnvironments())); },
        [](World& w) {
          MakeOther(w);
          w.environment->SetSceneGraph(*w.tree);
          w.environment->AddLightEnv(*w.lightEnv);
        }},
       {"add light", [](World& w) { Other(w.document.GetEnvironments()).AddLight(w.lightPath); },
        MakeOther},
       {"add light environment", [](World& w) { w.environment->AddLightEnv(*w.lightEnv); }},
       {"remove light environment", [](World& w) { w.environment->RemoveLightEnv(*w.lightEnv); },
        [](World& w) { w.environment->AddLightEnv(*w.lightEnv); }},
       {"environment's tree", [](World& w) { w.environment->SetSceneGraph(*w.tree); }},
       {"scene's tree", [](World& w) { w.scene->SetSceneGraph(*w.shownTree); }},
       {"scene's environment",
        [](World& w) { w.scene->SetEnvironment(Other(w.document.GetEnvironments())); }, MakeOther},
       {"lights to lamps",
        [](World& w) {
          data::operators::ConvertToLightEnv(*w.environment, w.document.GetLightEnvs());
        },
        [](World&) {}, true}});
}

TEST(Sweep, ProjectionsAndSwitches) {
  auto const coords = [](World& w) {
    float const c[] = {0.1f, 0, -1, -0.1f, 0, -1, 0, 1, -1}, n[] = {0, 0, 1, 0, 0, 1, 0, 0, 1};
    unsigned int const indices[] = {0, 1, 2};
    std::vector<data::structs::UVW> uvw;
    std::vector<unsigned int> made, map;
    w.projected->ComputeTextureCoords(w.modelPath, {3, c, n}, {3, indices}, uvw, made, map);
    w.result.clear();
    for (auto const& entry : uvw) w.result.push_back(entry.u);
  };
  auto const tangents = [](World& w) {
    std::vector<data::structs::XYZ> t, b;
    float const c[] = {0.1f, 0, -1}, n[] = {0, 0, 1};
    w.projected->ComputeTangents(w.modelPath, {1, c, n}, t, b);
    w.uvw->ComputeTangents(*w.surface, t, b);
    w.result.assign(1, t[0].x);
  };
  auto const reserve = [](World& w) { w.result.reserve(64); };
  auto const shown = [](World& w) {
    return Path<item::NSceneGraphModelNode>(*w.shownModel, *w.shownTree);
  };
  Sweep(
      {{"texture coordinates", coords, reserve, true},
       {"tangents", tangents, reserve, true},
       {"method",
        [](World& w) { w.projection->SetProjectionMethod(domain::projection::PM_TRIPLANAR); }},
       {"add target", [=](World& w) { w.projection->AddModel(shown(w)); }},
       {"replace target", [=](World& w) { w.projection->ReplaceModel(w.modelPath, shown(w)); }},
       {"add mapping", [=](World& w) { w.projected->AddProjectionData(shown(w), *w.projection); }},
       {"replace mapping", [=](World& w) { w.projected->ReplaceModel(w.modelPath, shown(w)); }},
       {"replace mapping and projection",
        [=](World& w) {
          w.projected->ReplaceModel(w.modelPath, shown(w), Other(w.document.GetProjections()));
        },
        MakeOther},
       {"switch: add material", [](World& w) { w.materials->AddMaterial(*w.material, 1); }},
       {"switch: remove material", [](World& w) { w.materials->RemoveMaterial(0); }},
       {"switch: add model", [](World& w) { w.materials->AddModel(*w.shownModel); }},
       {"switch: add set",
        [](World& w) {
          w.models->AddModelSet(
              *Pointer<data::switches::detail::NModelSet>(new data::switches::detail::NModelSet),
              1);
        }},
       {"switch: rename set",
        [](World& w) {
          w.models->GetModelSets().front()->SetName(w.models->GetModelSets().back()->GetName());
        }},
       {"switch: add to set",
        [](World& w) { w.models->GetModelSets().front()->AddNode(*w.shownModel); }},
       {"view's scene", [](World& w) { w.view->SetScene({}); }},
       {"view's camera", [](World& w) {
          w.view->SetCamera({*w.cameraItem, *w.shownTree});
        }}});
}

TEST(Sweep, Animations) {
  auto const play = [](World& w) { w.animation->GetEngine().Update(w.args, 15); };
  Sweep({{"add key", [](World& w) { w.animation->AddKey(*w.MakeKey(5), 50); }},
         {"add keys",
          [](World& w) {
            w.animation->AddKeys({{w.MakeKey(5), 50}, {w.MakeKey(6), 60}});
          }},
         {"remove key",
          [](World& w) { w.animation->RemoveKey(*w.animation->GetKeys().begin()->first); }},
         {"time of a key",
          [](World& w) { w.animation->SetTime(*w.animation->GetKeys().begin()->first, 20); }},
         {"modification", [](World& w) { w.animation->SignalModification(); },
          [](World& w) { w.animation->GetKeys().begin()->first->itemTranslation[0] = 9; }},
         {"trigger",
          [](World& w) {
            w.animation->SetTrigger({*w.group, *w.tree, {*w.reference}});
          }},
         {"copy", [](World& w) { w.copy.reset(new data::animation::NAnimation(*w.animation)); }},
         {"play", play},
         {"add presentation", [](World& w) { w.animations.AddAnimation(*w.animation); }},
         {"remove presentation", [](World& w) { w.animations.RemoveAnimation(*w.animation); },
          [](World& w) { w.animations.AddAnimation(*w.animation); }},
         {"clear presentations", [](World& w) { w.animations.Clear(); },
          [](World& w) { w.animations.AddAnimation(*w.animation); }},
         {"curve's key",
          [](World& w) {
            w.curve->AddKey({20, 5, 0});
          }},
         {"curve's key elsewhere",
          [](World& w) {
            w.curve->ModifyKey(1, {5, 7, 0});
          }},
         {"add curve",
          [](World& w) {
            w.curves->AddAnimation({L"a name of some length", nullptr}, *w.curve);
          }},
         {"frame", [](World& w) { w.curves->SetFrame(7); }},
         {"timeline", [](World& w) {
            w.timelines.AddTimeLine(
                *Pointer<data::timeline::NTimeLine>(new data::timeline::NTimeLine(*w.curves)));
          }}});
}

TEST(Sweep, PicturesPicksAndPresets) {
  auto const set = [](char const* name, wchar_t const* inside) {
    return [=](World& w) {
      w.image->SetImageLocator(
          {core::uri::NUri::CreateFileUri(w.files.At(name)), core::uri::NPath(inside)});
    };
  };
  auto const load = [](World& w) {
    w.result.assign(1, static_cast<float>(w.image->GetImage()->GetDataByteLength()));
  };
  auto const reserve = [](World& w) { w.result.reserve(64); };
  auto const pick = [](World& w) {
    VX_Math::Line line;
    line.SetValue(Vec3(0.2f, 0.2f, 10), Vec3(0.2f, 0.2f, 0));
    std::vector<item::NSceneGraphModelNode const*> models;
    data::operators::ray_picker::PickModel(*w.root, &line, models);
    w.result.push_back(static_cast<float>(models.size()));
  };
  auto const hits = [](World& w) {
    Matrix view;
    view.SetTranslate(Vec3(-0.2f, -0.2f, 0.5f));
    Vec2 const centre(0.5f, 0.5f);
    data::operators::ray_picker::PickDetail(*w.scene, &centre, &view, w.paths, w.points);
  };
  auto const reach = [](World& w) { w.result.push_back(w.modelPath.GetGlobalTransform()(3, 0)); };
  using namespace data::preset;
  auto const initialize = [](World& w) {
    data::internal::Initialize(w.document.GetManager(), w.document.GetEvents());
  };
  Sweep({{"locator", set("picture.png", L"")},
         {"packed locator", set("archive.zip", L"inside.tif"), [](World&) {}, true},
         {"picture", load, reserve, true},
         {"missing picture", load,
          [=](World& w) {
            reserve(w);
            set("nothing.png", L"")(w);
          },
          true},
         {"packed picture", load,
          [=](World& w) {
            reserve(w);
            set("archive.zip", L"inside.tif")(w);
          },
          true},
         {"pick", pick, reserve},
         {"pick with a stale box", pick,
          [=](World& w) {
            reserve(w);
            w.shownModel->SetTranslationX(-0.1);
          }},
         {"hits", hits,
          [=](World& w) {
            hits(w);
            EXPECT_FALSE(w.paths.empty());
          }},
         {"path", reach, reserve},
         {"camera", [](World& w) { PresetSceneGraphCamera(w.cameraItem, w.view, w.tree, true); }},
         {"lights",
          [](World& w) { PresetSceneGraphLight(std::vector{w.lightItem}, w.view, w.tree, true); }},
         {"environment",
          [](World& w) {
            PresetEnvironment(w.environment, w.view,
                              Pointer<item::NSceneGraphItemDomain>(&w.document.GetItems()),
                              Pointer<domain::image::NImageDomain>(&w.document.GetImages()));
          },
          initialize},
         {"built-in nodes", initialize, [](World&) {}, true},
         {"built-in nodes go",
          [](World& w) { data::internal::Uninitialize(w.document.GetManager()); }, initialize}});
}

}  // namespace
}  // namespace corvanta::out_of_memory
