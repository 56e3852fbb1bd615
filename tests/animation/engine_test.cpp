#include "tests/animation/presentation_world.h"

namespace corvanta::data::animation {
namespace {

using Engine = World;

TEST_F(Engine, StepsClampOrWrapOnceAtTheEnds) {
  EXPECT_EQ(engine.GetTickCount(), 0.0);
  EXPECT_EQ(engine.GetEndTime(), 30.0);
  EXPECT_FALSE(engine.GetRepeat());
  EXPECT_FALSE(engine.Initialize(*animation));
  struct Row {
    double from, end;
    bool repeats;
    double delta, to;
    bool goesOn;
  };
  for (Row const& row : std::vector<Row>{
           {0, 30, false, 1, 1, true},          {29, 30, false, 1, 30, true},
           {29, 30, false, 5, 30, false},       {29, 30, true, 5, 4, true},
           {1, 30, false, -3, 0, false},        {1, 30, true, -3, 28, true},
           {1, 30, false, -1, 0, true},         {0, 30, false, 0, 0, true},
           {29, 30, true, 70, 69, true},        {69, 30, true, 1, 40, true},  // once a step
           {1, 30, true, -70, -39, true},       {-39, 30, true, -1, -10, true},
           {50, 30, false, 1, 30, false},       {50, 30, false, -1, 49, true},
           {-5, 30, false, 2, -3, true},        {-5, 30, false, -2, 0, false},
           {0, 0, false, 1, 0, false},          {0, 0, true, 1, 1, true},
           {0, 0, true, -1, -1, true},          {0, -2, false, 1, 0, false},
           {0.1, 0.3, false, 9, 0.3, false},    {0, 30, false, kInfinity, 30, false},
           {0, 30, false, -kInfinity, 0, false}}) {
    engine.SetCurrentTime(row.from);
    engine.SetEndTime(row.end);
    engine.SetRepeat(row.repeats);
    times->times.clear();
    EXPECT_EQ(engine.Update(args, row.delta), row.goesOn) << row.from << ", " << row.delta;
    EXPECT_EQ(engine.GetTickCount(), row.to) << row.from << ", " << row.delta;
    EXPECT_THAT(times->times, ElementsAre(row.to));
  }
  engine.SetRepeat(false);
  engine.SetCurrentTime(7.0);
  EXPECT_TRUE(engine.GoToStart(args));
  EXPECT_EQ(engine.GetTickCount(), 0.0);
}

TEST_F(Engine, SurvivesTimesThatAreNone) {
  MoveAlongX(root, {{0, 0.0}, {100, 10.0}});
  MoveAlongX(Make(), {{50, 1.0}});
  for (bool const repeats : {false, true}) {
    for (double const from : {0.0, 5.0, -1e300, 1e300, kInfinity, -kInfinity, kNaN}) {
      for (double const delta : {0.0, 1.0, -1e308, 1e308, kInfinity, -kInfinity, kNaN}) {
        for (double const end : {30.0, 0.0, -1.0, kInfinity, kNaN}) {
          engine.SetCurrentTime(from);
          engine.SetEndTime(end);
          engine.SetRepeat(repeats);
          engine.Update(args, delta);
        }
      }
    }
  }
  recorder->Take();
  engine.SetEndTime(30.0);
  EXPECT_NEAR(PlayAt(5.0).front().second, 5.0, 1e-9);
}

class Discrete : public World {
 protected:
  Pointer<NMaterialNode> a = materials->CreateNode(), b = materials->CreateNode();
  Model model = Make<NSceneGraphModelNode>(), other = Make<NSceneGraphModelNode>();
  Pointer<NMaterialSwitch> chooser{new NMaterialSwitch};

  void SetUp() override {
    chooser->AddMaterial(a, 0);
    chooser->AddMaterial(b, 1);
    chooser->AddModel(model);
  }
  KeyPointer AddMaterialKey(unsigned index, int time, std::size_t place = 0) {
    auto key = New<NAnimationKey>();
    key->materialSwitches[place] = chooser;
    key->materialIndices[place] = index;
    key->materialIsIgnored = false;
    animation->AddKey(*key, time);
    return key;
  }
  /// The material that a step leaves: 'a', 'b', or '-' where it set none.
  char Shown(double delta, bool goesOn = true) {
    model->SetMaterial({});
    Step(delta, goesOn);
    auto const material = model->GetMaterialNode();
    return !material ? '-' : material == a ? 'a' : 'b';
  }
};

TEST_F(Discrete, KeysFireOnArrivalAndNeverTwice) {
  AddMaterialKey(0, 20);
  AddMaterialKey(1, 30, 2);
  struct Step {
    double from, delta;
    char shown;
  };
  for (Step const& step :
       {Step{0, 1, '-'}, Step{1, 1, 'a'}, Step{2, 0, '-'}, Step{2, 0.5, '-'}, Step{2.5, -0.5, 'a'},
        Step{2, -1, '-'}, Step{1, 3, 'b'}, Step{4, -3, 'a'}}) {
    EXPECT_EQ(engine.GetTickCount(), step.from);
    EXPECT_EQ(Shown(step.delta), step.shown) << step.from;
  }
  // Round the end the way leads back over what lies between.
  engine.SetEndTime(4.0);
  engine.SetRepeat(true);
  for (Step const& step : {Step{3.5, 1, 'a'}, Step{0.5, -1, 'b'}, Step{2.5, 4.2, '-'},
                           Step{2.5, 5, 'b'}}) {  // beyond the end, to 3.5
    engine.SetCurrentTime(step.from);
    EXPECT_EQ(Shown(step.delta), step.shown) << step.from;
  }
  engine.SetRepeat(false);
  engine.SetEndTime(3.0);
  engine.SetCurrentTime(2.9);
  EXPECT_EQ(Shown(1.0, false), 'b');  // the end itself
  EXPECT_EQ(Shown(1.0, false), '-');
}

TEST_F(Discrete, SmallStepsFireEachKeyOnceEitherWay) {
  auto const log = Listen();
  for (int time = 1; time <= 290; ++time) AddMaterialKey(static_cast<unsigned>(time % 2), time);
  for (double const delta : {0.1, -0.1, 1.0 / 30.0, -1.0 / 30.0, 0.7, -0.7}) {
    log->names.clear();
    engine.SetCurrentTime(delta > 0.0 ? 0.0 : 30.0);
    while (engine.Update(args, delta)) {
      if (engine.GetTickCount() == 0.0 || engine.GetTickCount() == 30.0) break;
    }
    EXPECT_EQ(std::count(log->names.begin(), log->names.end(), "materialChange"), 290) << delta;
  }
}

TEST_F(Discrete, KeysOfOneTimeFireInOrderAndBackwardsReversed) {
  AddMaterialKey(0, 20);
  KeyPointer const late = AddMaterialKey(1, 20);
  EXPECT_EQ(Shown(3.0), 'b');
  EXPECT_EQ(Shown(-2.0), 'a');
  late->materialIsIgnored = true;
  EXPECT_EQ(Shown(3.0), 'b');  // the engine doesn't know yet
  animation->SignalModification();
  EXPECT_EQ(engine.GetTickCount(), 4.0);
  EXPECT_EQ(Shown(-3.0), 'a');
}

TEST_F(Discrete, ChoicesAreLookedUpWhenTheKeysAreTakenOver) {
  AddMaterialKey(2, 10);
  auto const empty = New<NAnimationKey>();
  empty->materialIsIgnored = empty->modelIsIgnored = empty->environmentIsIgnored = false;
  animation->AddKey(*empty, 10);
  EXPECT_EQ(Shown(1.0), '-');
  chooser->AddMaterial(b, 2);
  EXPECT_EQ(Shown(-1.0), '-');
  EXPECT_EQ(Shown(1.0), '-');
  animation->SignalModification();
  EXPECT_EQ(Shown(-1.0), '-');  // leaves 1
  EXPECT_EQ(Shown(1.0), 'b');
  chooser->RemoveMaterial(2);  // the choice stands
  materials->RemoveNode(*b);
  EXPECT_EQ(Shown(1.0), '-');
  EXPECT_EQ(Shown(-1.0), 'b');
  animation->SignalModification();  // index 2 is gone
  EXPECT_EQ(Shown(1.0), '-');
  EXPECT_EQ(Shown(-1.0), '-');
}

TEST_F(Discrete, ModelKeysShowOneSetAndHideTheOthers) {
  using Set = switches::detail::NModelSet;
  auto const sets = New<NModelSwitch>();
  Pointer<Set> const first(new Set), second(new Set);
  first->SetName(L"first");
  first->AddNode(model);
  second->AddNode(other);
  auto dying = Make<NSceneGraphModelNode>();
  second->AddNode(dying);
  sets->AddModelSet(*first, 0);
  sets->AddModelSet(*second, 1);
  for (unsigned index : {1u, 0u, 2u}) {
    KeyPointer const key(new NAnimationKey);
    key->modelSwitches[1] = sets;
    key->modelSetIndices[1] = index;
    key->modelIsIgnored = false;
    animation->AddKey(*key, 10 * static_cast<int>(index) + 10);
  }
  items->RemoveNode(*dying);
  dying.reset();
  auto const visible = [&] { return std::pair(model->IsVisible(), other->IsVisible()); };
  EXPECT_EQ(Step(1.0), (Writes{{L"isVisible", 0}, {L"isVisible", 0}, {L"isVisible", 1}}));
  EXPECT_EQ(visible(), std::pair(true, false));
  Step(1.0);
  EXPECT_EQ(visible(), std::pair(false, true));
  sets->RemoveModelSet(*second);  // is still shown by its key, and no longer hidden
  Step(-1.0);
  EXPECT_EQ(visible(), std::pair(true, true));
  // A listener that takes everything apart.
  recorder->react = [&](NAttribute const&) {
    recorder->react = nullptr;
    sets->RemoveModelSet(0u);
    first->RemoveNode(model);
    animation->RemoveKey(*animation->GetKeys().begin()->first);
  };
  Step(-0.5);
  EXPECT_EQ(Step(1.0), (Writes{{L"isVisible", 0}, {L"isVisible", 1}}));
  EXPECT_THAT(Step(-1.0), IsEmpty());
}

TEST_F(Discrete, TheEnvironmentCrossedLastComesToEveryScene) {
  std::vector<Pointer<NEnvironmentNode>> made;
  for (int i = 0; i != 3; ++i) {
    made.push_back(environments->CreateNode());
    auto const key = New<NAnimationKey>();
    key->environment = made.back();
    key->environmentIsIgnored = false;
    animation->AddKey(*key, 10 + 10 * i);
  }
  Step(1.0);  // nowhere to go
  args.scenes = {scenes->CreateNode(), scenes->CreateNode(), nullptr};
  auto const scene = *args.scenes.rbegin();
  Step(0.5);
  EXPECT_EQ(scene->GetEnvironment(), nullptr);
  Step(2.0);
  for (auto const& each : args.scenes) EXPECT_TRUE(!each || each->GetEnvironment() == made[2]);
  Step(-2.0);
  EXPECT_EQ(scene->GetEnvironment(), made[1]);
  Step(-0.5);
  EXPECT_EQ(scene->GetEnvironment(), made[0]);
}

TEST_F(Engine, EditsDuringAStepCountFromTheNext) {
  Group const second = Make();
  MoveAlongX(root, {{0, 0.0}, {100, 10.0}});
  MoveAlongX(second, {{0, 0.0}, {100, 20.0}});
  recorder->react = [&](NAttribute const&) {
    recorder->react = nullptr;
    while (!animation->GetKeys().empty())
      animation->RemoveKey(*animation->GetKeys().begin()->first);
    items->RemoveNode(*second);
    MoveAlongX(root, {{0, 50.0}, {100, 50.0}});
  };
  EXPECT_EQ(Step(1.0).size(), 24u);
  EXPECT_EQ(root->GetTranslationX(), 1.0);
  EXPECT_EQ(second->GetTranslationX(), 2.0);
  EXPECT_EQ(Step(1.0).size(), 12u);
  EXPECT_EQ(root->GetTranslationX(), 50.0);
}

TEST_F(Engine, AListenerThatThrowsLeavesTheTimeWhereItWas) {
  MoveAlongX(root, {{0, 0.0}, {100, 10.0}});
  recorder->react = [&](NAttribute const& attribute) {
    if (attribute.GetName() == L"translation.y") throw std::runtime_error("heard");
  };
  EXPECT_THROW(engine.Update(args, 2.0), std::runtime_error);
  EXPECT_EQ(engine.GetTickCount(), 0.0);
  EXPECT_THAT(times->times, IsEmpty());
  recorder->react = nullptr;
  recorder->Take();
  EXPECT_EQ(Step(2.0).size(), 12u);
  times->react = [](double) { throw std::runtime_error("heard"); };
  EXPECT_THROW(engine.Update(args, 2.0), std::runtime_error);
  EXPECT_EQ(engine.GetTickCount(), 4.0);
}

TEST_F(Engine, StepsNestAndOutliveTheirAnimation) {
  MoveAlongX(root, {{0, 0.0}, {100, 10.0}});
  int depth = 0;
  recorder->react = [&](NAttribute const&) {
    if (depth++ == 0) engine.Update(args, 5.0);
  };
  EXPECT_EQ(Step(1.0).size(), 24u);
  EXPECT_THAT(times->times, ElementsAre(5.0, 1.0));
  EXPECT_EQ(engine.GetTickCount(), 1.0);
  EXPECT_EQ(root->GetTranslationX(), 5.0);  // written by the inner step, after the outer one
  times->times.clear();
  recorder->react = [&](NAttribute const&) { animation.reset(); };
  EXPECT_TRUE(engine.Update(args, 1.0));
  EXPECT_EQ(recorder->Take().size(), 12u);
  EXPECT_THAT(times->times, IsEmpty());
  // The same from within the signal, with another listener behind.
  recorder->react = nullptr;
  animation.reset(new NAnimation);
  auto const behind = New<TimeRecorder>();
  animation->GetEngine().AddObserver(*times);
  animation->GetEngine().AddObserver(*behind);
  times->react = [&](double) { animation.reset(); };
  animation->GetEngine().Update(args, 3.0);
  EXPECT_THAT(times->times, ElementsAre(3.0));
  EXPECT_THAT(behind->times, IsEmpty());
}

}  // namespace
}  // namespace corvanta::data::animation
