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
    if (operation.isRepeated) world.counter->counts = {};
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
    if (reaction == Reaction::kThrow) throw ListenerError();
    if (reaction == Reaction::kLetGo) world.LetGo();
  };
  counter.callsBefore = callsBefore;
  try {
    operation.run(world);
  } catch (ListenerError const&) {
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

/// What a row does, or what it needs to be there.
#define RUN(...) [=]([[maybe_unused]] World& w) { __VA_ARGS__; }

/// A second call, after one that has failed, makes what the first would have made.
TEST(Sweep, Creation) {
  auto const make = [](auto get) {
    return [get](World& w) {
      (w.document.*get)().CreateNode(NNodeID(L"an id that is kept as a text"));
    };
  };
  // So many that the tables grow while they fail; what is there by then is refused.
  auto const makeFree = [](World& w) {
    for (int i = 0; i != 30; ++i) w.free.push_back(New<NLightNode>(NNodeID(), nullptr, nullptr));
  };
  auto const many = [](World& w) {
    auto const light = w.other->light;
    auto const lightEnv = w.lightEnv;
    for (int i = 0; i != 30; ++i) {
      std::wstring const text = L"a text that takes memory " + std::to_wstring(i);
      w.lights->CreateNode(NNodeID(text));
      w.lights->AddNode(*w.free[static_cast<std::size_t>(i)], 0);
      light->AddAttribute(text, true);
      if (lightEnv->QueryNamedObject(text) == nullptr) lightEnv->CreateLamp(text);
    }
  };
  using Document = NDocument;
  std::vector<Operation> rows{
      {"light", make(&Document::GetLights)},
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
      {"free node", RUN(w.lights->AddNode(*w.free[0], 0)), makeFree},
      {"group", RUN(w.Make<NSceneGraphGroupNode>())},
      {"model", RUN(w.Make<NSceneGraphModelNode>())},
      {"reference", RUN(w.Make<NSceneGraphReferenceNode>())},
      {"light item", RUN(w.Make<NSceneGraphLightNode>())},
      {"camera item", RUN(w.Make<NSceneGraphCameraNode>())},
      {"document", RUN(Document())},
      {"event system", RUN(New<NEventMultiplexer>())},
      {"surface", RUN(w.geometry->AddSurface(*w.MakeSurface(2)))},
      {"view", RUN(w.views->AddView(*New<NView>(), 0))},
      {"lamp", RUN(w.lightEnv->CreateLamp(L"key light with a name that takes memory"))},
      {"nameless lamp", RUN(w.lightEnv->CreateLamp(L""))},
      {"key", RUN(w.MakeKey(4))},
      {"free surface", [](World& w) {
         auto const made = New<NNurbsSurface>();
         auto const loop = New<VX_Tess::NurbsCurve2d>();
         made->AddTrimCurve(made->AddTrimLoop(), *loop);
         w.geometry->AddSurface(*made);
       }}};
  Sweep(rows);
  for (Operation& row : rows) row.isRepeated = true;
  rows.push_back({"many", many, makeFree, true});
  Sweep(rows);
}

TEST(Sweep, Items) {
  auto const fill = [](World& w) {
    for (int i = 0; i != 31; ++i) w.loose->AddChild(*w.Make<NSceneGraphGroupNode>());
  };
  auto const nothing = [](World&) {};
  auto const through = [](World& w) {
    return Path<NSceneGraphItemNode>(*w.shownModel, *w.tree, {*w.reference});
  };
  auto const hang = [](World& w) { w.group->AddChild(*w.loose); };
  auto const move = [](World& w) { w.group->AddChild(*w.shownRoot->GetChildren().front(), 0); };
  Sweep(
      {{"add child", hang},
       {"add child first", RUN(w.group->AddChild(*w.loose, 0))},
       {"add a child of another", move},
       {"remove child", RUN(w.root->RemoveChild(*w.group))},
       {"add the 32nd child", hang, fill},
       {"add to 32", RUN(w.loose->AddChild(*w.group)), fill},
       {"add a branch below", RUN(w.model->AddChild(*w.loose)), fill},
       {"remove from 33", RUN(w.loose->RemoveChild(*w.loose->GetChildren().front())),
        [fill](World& w) {
          fill(w);
          fill(w);
        }},
       {"rename", RUN(w.group->SetName(L"another name that takes some memory"))},
       {"rename to a taken name", RUN(w.loose->SetName(w.group->GetName()))},
       {"text attribute",
        RUN(w.group->QueryAttribute(item::AN_SCALE_X)->SetValue(L"a text that takes some memory", true))},
       {"move", RUN(w.group->SetTranslationX(3))},
       {"move what is shown", RUN(w.shownModel->SetTranslationX(3))},
       {"move with a stale box", RUN(w.group->SetTranslationY(1)),
        RUN(w.root->SetTranslationX(2))},
       {"hide", RUN(w.model->SetIsVisibleFlag(false))},
       {"absolute", RUN(w.model->SetTransformIsAbsoluteFlag(true))},
       {"transform",
        RUN(SetTransform(*w.group, Matrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 5, 6, 1)))},
       {"try transform",
        RUN(w.group->TryTransform(Matrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 5, 6, 1)))},
       {"new attribute",
        RUN(w.group->AddAttribute(L"an attribute of the program", true)->SetValue(1.0, true))},
       {"root", RUN(w.tree->SetRoot(*w.loose))},
       {"root that shows", RUN(w.shownTree->SetRoot(*w.loose)), nothing, false, true},
       {"unit", RUN(w.shownTree->SetUnit(0.5))},
       {"conversion",
        RUN(w.tree->SetCoordConversion(domain::scenegraph::tree::CCV_ZUP_TO_YUP)),
        nothing, false, true},
       {"show another tree", RUN(w.reference->SetSceneGraph(*w.other->tree)), nothing, false, true},
       {"show no tree", RUN(w.reference->SetSceneGraph({})), nothing, false, true},
       {"node goes", RUN(w.items->RemoveNode(*w.loose))},
       {"group copy", RUN(w.group->CopyTo(*w.loose)), nothing, false, true},
       {"tree copy", RUN(w.tree->CopyTo(*w.shownTree))},
       {"camera node", RUN(w.cameraItem->SetCameraNode(*w.other->camera))},
       {"verify", RUN(w.reference->VerifyReference())},
       {"is referred from", RUN(w.shownRoot->IsReferredFrom(*w.reference))},
       {"traverse",
        [](World& w) {
          struct Walk : NSceneGraphTraverser {};
          Walk().Start(*w.tree, nullptr);
        }},
       {"box of a path", RUN(through(w).GetGlobalBoundingBox())},
       {"relation of paths", RUN(GetPathRelation(through(w), through(w)))},
       {"clip distances", RUN(GetClipDistances(w.view->GetCamera(), *w.view))},
       {"box", RUN(GetBoundingBox(*w.tree)),
        RUN(w.model->SetTranslationX(1))},
       {"first box", RUN(w.loose->GetBoundingBox({}, {})),
        [](World& w) {
          w.loose->AddChild(*w.Make<NSceneGraphModelNode>());
          auto const shows = w.Make<NSceneGraphReferenceNode>();
          shows->SetSceneGraph(*w.shownTree);
          w.loose->AddChild(*shows);
        }}});
}

TEST(Sweep, Content) {
  auto const at = [](World& w, char const* name) {
    return NLocator(NUri::CreateFileUri(w.files.At(name)));
  };
  Sweep({{"set material", RUN(w.model->SetMaterial(*w.other->material))},
         {"first material", RUN(w.shownModel->SetMaterial(*w.other->material))},
         {"no material", RUN(w.model->SetMaterial({}))},
         {"set geometry", RUN(w.model->SetGeometryNode(*w.other->geometry))},
         {"model copy", RUN(w.model->CopyTo(*w.other->model))},
         {"copy of a model that had none", RUN(w.other->model->CopyTo(*w.shownModel))},
         {"model goes", RUN(w.items->RemoveNode(*w.other->model))},
         {"add shared surface", RUN(w.other->geometry->AddSurface(*World::MakeSurface(3)))},
         {"remove surface", RUN(w.geometry->RemoveSurface(*w.surface))},
         {"assign", RUN(w.surface->Assign({1, 2, 3}, {0, 0, 1}, {0}, {}))},
         {"assign arrays",
          [](World& w) {
            float const values[6] = {1, 2, 3, 0, 0, 1};
            unsigned long const index = 0;
            w.surface->Assign(values, values, 2, &index, 1, values);
          }},
         {"geometry copy", RUN(w.geometry->CopyTo(*w.other->geometry))},
         {"add texture", RUN(w.material->AddTexture(*w.other->texture, *w.projected, 0))},
         {"replace texture", RUN(w.material->ReplaceTexture(*w.texture, *w.other->texture))},
         {"remove texture", RUN(w.material->RemoveTexture(0))},
         {"material copy", RUN(w.material->CopyTo(*w.other->material)),
          RUN(w.material->SetBrdfTextureLocator(at(w, "picture.png")))},
         {"brdf", RUN(w.material->SetBrdfTextureLocator(at(w, "picture.png")))},
         {"material's environment",
          RUN(w.material->SetEnvironmentMap(*w.image, data::environment_map::NEMIT_SQUARE))},
         {"texture's image", RUN(w.texture->SetImage(*w.other->image))},
         {"texture copy", RUN(w.texture->CopyTo(*w.other->texture))},
         {"image copy", RUN(w.image->CopyTo(*w.other->image))},
         {"light copy", RUN(w.light->CopyTo(*w.other->light))},
         {"camera copy", RUN(w.camera->CopyTo(*w.other->camera))},
         {"curves copy", RUN(w.curves->CopyTo(*w.other->curves))},
         {"light environment copy", RUN(w.lightEnv->CopyTo(*w.other->lightEnv))},
         {"lamp copy", RUN(w.lightEnv->GetLamps()[0]->CopyTo(*w.other->lightEnv->GetLamps()[0]))},
         {"lamp goes", RUN(w.lightEnv->DeleteLamp(w.lightEnv->GetLamps()[0]))},
         {"environment copy", RUN(w.environment->CopyTo(*w.other->environment)),
          [](World& w) {
            w.environment->SetSceneGraph(*w.tree);
            w.environment->AddLightEnv(*w.lightEnv);
          }},
         {"add light", RUN(w.other->environment->AddLight(w.lightPath))},
         {"add light environment", RUN(w.environment->AddLightEnv(*w.lightEnv))},
         {"remove light environment", RUN(w.environment->RemoveLightEnv(*w.lightEnv)),
          RUN(w.environment->AddLightEnv(*w.lightEnv))},
         {"environment's tree", RUN(w.environment->SetSceneGraph(*w.tree))},
         {"scene's tree", RUN(w.scene->SetSceneGraph(*w.shownTree))},
         {"scene's environment", RUN(w.scene->SetEnvironment(*w.other->environment))},
         {"lights to lamps", RUN(data::operators::ConvertToLightEnv(*w.environment, *w.lightEnvs)),
          [](World&) {}, true}});
}

TEST(Sweep, ProjectionsAndSwitches) {
  auto const coords = [](World& w) {
    float const c[] = {0.1f, 0, -1, -0.1f, 0, -1, 0, 1, -1}, n[] = {0, 0, 1, 0, 0, 1, 0, 0, 1};
    unsigned int const indices[] = {0, 1, 2};
    std::vector<UVW> uvw;
    std::vector<unsigned int> made, map;
    w.projected->ComputeTextureCoords(w.modelPath, {3, c, n}, {3, indices}, uvw, made, map);
    w.result.clear();
    for (auto const& entry : uvw) w.result.push_back(entry.u);
  };
  auto const tangents = [](World& w) {
    std::vector<XYZ> t, b;
    float const c[] = {0.1f, 0, -1}, n[] = {0, 0, 1};
    w.projected->ComputeTangents(w.modelPath, {1, c, n}, t, b);
    w.uvw->ComputeTangents(*w.surface, t, b);
    w.result.assign(1, t[0].x);
  };
  auto const reserve = [](World& w) { w.result.reserve(64); };
  auto const shown = [](World& w) {
    return Path<NSceneGraphModelNode>(*w.shownModel, *w.shownTree);
  };
  Sweep({{"texture coordinates", coords, reserve, true},
         {"tangents", tangents, reserve, true},
         {"method", RUN(w.projection->SetProjectionMethod(domain::projection::PM_TRIPLANAR))},
         {"add target", RUN(w.projection->AddModel(shown(w)))},
         {"replace target", RUN(w.projection->ReplaceModel(w.modelPath, shown(w)))},
         {"add mapping", RUN(w.projected->AddProjectionData(shown(w), *w.projection))},
         {"replace mapping", RUN(w.projected->ReplaceModel(w.modelPath, shown(w)))},
         {"replace mapping and projection",
          RUN(w.projected->ReplaceModel(w.modelPath, shown(w), *w.other->projection))},
         {"switch: add material", RUN(w.materialSwitch->AddMaterial(*w.material, 1))},
         {"switch: remove material", RUN(w.materialSwitch->RemoveMaterial(0))},
         {"switch: add model", RUN(w.materialSwitch->AddModel(*w.shownModel))},
         {"switch: add set", RUN(w.modelSwitch->AddModelSet(*w.set, 1))},
         {"switch: rename set", RUN(w.modelSwitch->GetModelSets().front()->SetName(
                                    w.modelSwitch->GetModelSets().back()->GetName()))},
         {"switch: add to set", RUN(w.modelSwitch->GetModelSets().front()->AddNode(*w.shownModel))},
         {"view's scene", RUN(w.view->SetScene({}))},
         {"view's camera", RUN(w.view->SetCamera({*w.cameraItem, *w.shownTree}))}});
}

TEST(Sweep, Animations) {
  auto const play = [](World& w) { w.animation->GetEngine().Update(w.args, 15); };
  Sweep({{"add key", RUN(w.animation->AddKey(*w.MakeKey(5), 50))},
         {"add keys", RUN(w.animation->AddKeys({{w.MakeKey(5), 50}, {w.MakeKey(6), 60}}))},
         {"remove key", RUN(w.animation->RemoveKey(*w.animation->GetKeys().begin()->first))},
         {"time of a key", RUN(w.animation->SetTime(*w.animation->GetKeys().begin()->first, 20))},
         {"modification", RUN(w.animation->SignalModification()),
          RUN(w.animation->GetKeys().begin()->first->itemTranslation[0] = 9)},
         {"trigger", RUN(w.animation->SetTrigger({*w.group, *w.tree, {*w.reference}}))},
         {"copy", RUN(w.copy.reset(new NAnimation(*w.animation)))},
         {"play", play},
         {"add presentation", RUN(w.presentations.AddAnimation(*w.animation))},
         {"remove presentation", RUN(w.presentations.RemoveAnimation(*w.animation)),
          RUN(w.presentations.AddAnimation(*w.animation))},
         {"clear presentations", RUN(w.presentations.Clear()),
          RUN(w.presentations.AddAnimation(*w.animation))},
         {"curve's key", RUN(w.curve->AddKey({20, 5, 0}))},
         {"curve's key elsewhere", RUN(w.curve->ModifyKey(1, {5, 7, 0}))},
         {"add curve", RUN(w.curves->AddAnimation({L"a name of some length", nullptr}, *w.curve))},
         {"frame", RUN(w.curves->SetFrame(7))},
         {"timeline", RUN(w.timelines.AddTimeLine(*New<NTimeLine>(*w.curves)))}});
}

TEST(Sweep, PicturesPicksAndPresets) {
  auto const set = [](char const* name, wchar_t const* inside) {
    return [=](World& w) {
      w.image->SetImageLocator({NUri::CreateFileUri(w.files.At(name)), NPath(inside)});
    };
  };
  auto const load = [](World& w) {
    w.result.assign(1, static_cast<float>(w.image->GetImage()->GetDataByteLength()));
  };
  auto const reserve = [](World& w) { w.result.reserve(64); };
  auto const pick = [](World& w) {
    Line line;
    line.SetValue(Vec3(0.2f, 0.2f, 10), Vec3(0.2f, 0.2f, 0));
    std::vector<NSceneGraphModelNode const*> models;
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
  auto const initialize = [](World& w) { data::internal::Initialize(w.manager, *w.events); };
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
         {"camera", RUN(PresetSceneGraphCamera(w.cameraItem, w.view, w.tree, true))},
         {"lights", RUN(PresetSceneGraphLight(std::vector{w.lightItem}, w.view, w.tree, true))},
         {"environment", RUN(PresetEnvironment(w.environment, w.view, w.items, w.images)),
          initialize},
         {"built-in nodes", initialize, [](World&) {}, true},
         {"built-in nodes go", RUN(data::internal::Uninitialize(w.manager)), initialize}});
}

}  // namespace
}  // namespace corvanta::out_of_memory
