#include "tests/out_of_memory/failing_allocations.h"
#include "tests/support/world.h"

// Whichever allocation fails while changes are recorded, taken back or repeated: an undo either
// leads to where it should, or isn't offered.
namespace corvanta::out_of_memory {
namespace {

struct Recorded {
  Recorded() {
    root->AddChild(*part);
    history.Clear();
  }

  /// An edit of each kind of record.
  void Edit() {
    light->SetType(L"a text that takes memory of its own");
    light->SetColorR(0.5);
    light->SetName(L"a name that takes memory of its own");
    auto const made = world.Make();
    root->AddChild(*made, 0);
    root->RemoveChild(*part);
    model->SetGeometryNode(geometry);
    geometry->AddSurface(*surface);
    lightEnv->CreateLamp(L"a lamp");
    environment->AddLightEnv(lightEnv);
    material->AddTexture(texture, *mapping, 0);
    material->SetBrdfTextureLocator(NUri::CreateFileUri(L"/a/path/that/takes/memory"));
    material->RemoveAllTextures();
    world.lights->RemoveNode(*other);
  }

  std::wstring Describe() const {
    std::wstring text = light->GetType() + light->GetName() + std::to_wstring(light->GetColorR());
    text += material->GetBrdfTextureLocator().GetUri().GetPath().ToString();
    for (auto const& child : root->GetChildren()) text += child->GetName() + L"/";
    for (auto const& lamp : lightEnv->GetLamps()) text += lamp->GetName() + L"+";
    for (std::size_t const count :
         {world.lights->GetNodeCount(), world.items->GetNodeCount(), geometry->GetSurfaces().size(),
          environment->GetLightEnvs().size(), material->GetTextures().size(),
          std::size_t{model->GetGeometryNode() != nullptr}}) {
      text += L' ' + std::to_wstring(count);
    }
    return text;
  }

  World world;
  Pointer<NLightNode> const light = world.lights->CreateNode();
  Pointer<NLightNode> const other = world.lights->CreateNode();
  Group const root = world.Make();
  Group const part = world.Make();
  Model const model = world.Make<NSceneGraphModelNode>();
  Pointer<NGeometryNode> const geometry = world.geometries->CreateNode();
  Pointer<NPolygonSurface> const surface = New<NPolygonSurface>();
  Pointer<NLightEnvNode> const lightEnv = world.lightEnvs->CreateNode();
  Pointer<NEnvironmentNode> const environment = world.environments->CreateNode();
  Pointer<NMaterialNode> const material = world.materials->CreateNode();
  Pointer<NTextureNode> const texture = world.textures->CreateNode();
  Pointer<NUVWMapping> const mapping =
      New<NUVWMapping>(data::domain::material::texture_mapping::NUVWMappingType());
  NHistory history{world.document};
};

/// Runs `call` with one allocation failing; gives whether one has, and what the call gives, or
/// nothing if it threw.
template <class Call>
std::pair<bool, std::optional<bool>> Fail(std::size_t successes, Call const& call) {
  std::optional<bool> result;
  FailAfter(successes, true);
  try {
    result = call();
  } catch (std::bad_alloc const&) {
  }
  bool const hasFailed = HasFailed();
  NeverFail();
  return {hasFailed, result};
}

TEST(Recording, NeverMakesAWrongUndo) {
  int offered = 0;
  int refused = 0;
  for (std::size_t successes = 0;; ++successes) {
    SCOPED_TRACE(successes);
    Recorded recorded;
    std::wstring const start = recorded.Describe();
    NTransaction transaction(recorded.world.document);
    bool const hasFailed = Fail(successes, [&] {
                             recorded.Edit();
                             return transaction.Commit(L"edit");
                           }).first;
    if (transaction.IsOpen()) transaction.Commit(L"the part that came about");
    std::wstring const end = recorded.Describe();
    if (recorded.history.GetUndoCount() != 0) {
      ++offered;
      EXPECT_TRUE(recorded.history.Undo());
      ASSERT_EQ(recorded.Describe(), start);
      EXPECT_TRUE(recorded.history.Redo());
      ASSERT_EQ(recorded.Describe(), end);
    } else {
      ++refused;
    }
    if (!hasFailed) break;
  }
  EXPECT_GT(offered, 20);
  EXPECT_GT(refused, 5);
}

TEST(Recording, ARollbackIsWholeOrSaysThatItIsNot) {
  for (std::size_t successes = 0;; ++successes) {
    SCOPED_TRACE(successes);
    Recorded recorded;
    std::wstring const start = recorded.Describe();
    NTransaction transaction(recorded.world.document);
    bool const hasFailed = Fail(successes, [&] {
                             recorded.Edit();
                             return true;
                           }).first;
    std::wstring const end = recorded.Describe();
    bool const isBack = transaction.Rollback();
    ASSERT_EQ(recorded.Describe(), isBack ? start : end);
    if (!hasFailed) break;
  }
}

TEST(Replaying, IsWholeOrChangesNothing) {
  for (bool const isForward : {false, true}) {
    for (std::size_t successes = 0;; ++successes) {
      SCOPED_TRACE(successes);
      Recorded recorded;
      std::wstring const start = recorded.Describe();
      NTransaction transaction(recorded.world.document);
      recorded.Edit();
      transaction.Commit(L"edit");
      std::wstring const end = recorded.Describe();
      NHistory& history = recorded.history;
      if (isForward) history.Undo();
      auto const [hasFailed, result] =
          Fail(successes, [&] { return isForward ? history.Redo() : history.Undo(); });
      // What is thrown by a setter that has done its work passes at the end of all.
      std::wstring const state = recorded.Describe();
      ASSERT_TRUE(state == start || state == end);
      if (result) {
        ASSERT_EQ(state, isForward == *result ? end : start);
      }
      ASSERT_EQ(history.GetUndoCount(), state == end ? 1u : 0u);
      ASSERT_LE(history.GetRedoCount(), state == end ? 0u : 1u);
      if (!hasFailed) break;
    }
  }
}

}  // namespace
}  // namespace corvanta::out_of_memory
