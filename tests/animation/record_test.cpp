#include "tests/animation/presentation_world.h"

namespace corvanta::data::animation {
namespace {

using AnimationPointer = Pointer<NAnimation>;

/// Writes down what it hears by name; `react` runs after that.
class Recorder final : public NAnimationListener {
 public:
  std::vector<std::wstring> heard;
  std::function<void(NAnimation*)> react;

  std::vector<std::wstring> Take() { return std::exchange(heard, {}); }

 private:
  void OnAddAnimationImpl(NAnimation& animation) override { Record(L"add ", &animation); }
  void OnRemoveAnimationImpl(NAnimation& animation) override { Record(L"remove ", &animation); }
  void OnSelectAnimationImpl(NAnimation* animation) override { Record(L"select ", animation); }
  void OnModifyAnimationImpl(NAnimation& animation) override { Record(L"modify ", &animation); }
  void OnClearAnimationImpl() override { Record(L"clear ", nullptr); }
  void Record(std::wstring const& what, NAnimation* animation) {
    heard.push_back(what + (animation == nullptr ? L"-" : animation->GetName()));
    if (auto const call = react) call(animation);
  }
};

template <class T>
Pointer<T> Named(std::wstring const& name) {
  auto made = New<T>();
  made->SetName(name);
  return made;
}
KeyPointer MakeKey(std::wstring const& name = L"") { return Named<NAnimationKey>(name); }
AnimationPointer MakeAnimation(std::wstring const& name) { return Named<NAnimation>(name); }

TEST(AnimationKey, StartsWithNothingAndCopiesEverything) {
  KeyPointer const key = MakeKey(L"key");
  EXPECT_TRUE(key->itemIsIgnored && key->cameraIsIgnored && key->materialIsIgnored &&
              key->modelIsIgnored && key->environmentIsIgnored);
  EXPECT_EQ(key->itemScale, (Triple{1, 1, 1}));
  EXPECT_EQ(key->itemPath.GetNode(), nullptr);
  key->cameraUp = {4, 5, 6};
  key->cameraIsIgnored = false;
  key->modelSwitches[2].reset(new NModelSwitch);
  KeyPointer const copy(new NAnimationKey(*key));
  EXPECT_EQ(copy->GetName(), L"key");
  EXPECT_EQ(copy->cameraUp, key->cameraUp);
  EXPECT_FALSE(copy->cameraIsIgnored);
  EXPECT_EQ(copy->modelSwitches, key->modelSwitches);
}

class Record : public testing::Test {
 protected:
  AnimationPointer animation = MakeAnimation(L"tour");
  Pointer<Recorder> recorder{new Recorder};

  void SetUp() override { animation->AddObserver(*recorder); }
};

TEST_F(Record, EveryChangeOfKeysIsToldOnce) {
  KeyPointer const a = MakeKey(L"a");
  KeyPointer const b = MakeKey(L"a");  // the same name, which stays outside the namespace
  EXPECT_TRUE(animation->AddKey(*b, 5));
  EXPECT_TRUE(animation->AddKey(*a, 5));
  EXPECT_THAT(recorder->Take(), ElementsAre(L"modify tour", L"modify tour"));
  EXPECT_FALSE(animation->AddKey(*a, 9));
  EXPECT_EQ(animation->GetTime(*a), 5);
  auto* const stranger = new NAnimationKey;  // that nobody holds
  EXPECT_EQ(animation->GetTime(*stranger), -1);
  EXPECT_FALSE(animation->SetTime(*stranger, 1));
  EXPECT_FALSE(animation->RemoveKey(*stranger));
  EXPECT_THAT(recorder->Take(), IsEmpty());
  EXPECT_TRUE(animation->AddKeys({{stranger, -3}, {a, 1}, {nullptr, 2}, {MakeKey(), 4}}));
  EXPECT_THAT(animation->GetKeys(), SizeIs(4));
  EXPECT_EQ(animation->GetKeys().begin()->first, a);  // made first
  EXPECT_EQ(animation->GetTime(*a), 5);
  EXPECT_TRUE(animation->AddKeys({}));
  EXPECT_TRUE(animation->SetTime(*a, 7));
  animation->SelectKey(a.get());
  EXPECT_TRUE(animation->RemoveKey(*b));
  EXPECT_EQ(animation->GetSelectedKey(), a.get());
  EXPECT_TRUE(animation->RemoveKey(*a));
  EXPECT_EQ(animation->GetSelectedKey(), nullptr);
  animation->SignalModification();
  EXPECT_THAT(recorder->Take(), SizeIs(6));
  EXPECT_TRUE(animation->AddKey(*a, 1));  // its name is free again
  EXPECT_NE(a->GetNamespace(), nullptr);
  EXPECT_EQ(b->GetNamespace(), nullptr);
}

TEST_F(Record, ACopyIsNamelessAndHasKeysOfItsOwn) {
  KeyPointer const key = MakeKey(L"a");
  animation->AddKey(*key, 12);
  animation->AddKey(*MakeKey(L"b"), 3);
  animation->SelectKey(key.get());
  animation->SetShortcutKey('k', 3);
  animation->EnableTrigger(true);
  animation->GetEngine().SetEndTime(99.0);
  animation->GetEngine().SetRepeat(true);
  animation->GetEngine().SetCurrentTime(5.0);
  AnimationPointer const copy(new NAnimation(*animation));
  EXPECT_EQ(copy->GetName(), L"");
  EXPECT_EQ(copy->GetShortcutKey(), std::make_pair('k', 3));
  EXPECT_TRUE(copy->TriggerIsEnabled());
  EXPECT_EQ(copy->GetEngine().GetEndTime(), 99.0);
  EXPECT_TRUE(copy->GetEngine().GetRepeat());
  EXPECT_EQ(copy->GetEngine().GetTickCount(), 0.0);
  EXPECT_EQ(copy->GetSelectedKey(), nullptr);
  ASSERT_EQ(copy->GetKeys().size(), 2u);
  NAnimationKey& copied = *copy->GetKeys().begin()->first;
  EXPECT_EQ(copied.GetName(), L"a");
  EXPECT_EQ(copy->GetTime(copied), 12);
  EXPECT_EQ(animation->GetTime(copied), -1);
}

TEST_F(Record, AListenerMayThrowOrEndTheAnimation) {
  KeyPointer const key = MakeKey();
  recorder->react = [](NAnimation*) { throw std::runtime_error("heard"); };
  EXPECT_THROW(animation->AddKey(*key, 1), std::runtime_error);
  EXPECT_EQ(animation->GetTime(*key), 1);
  EXPECT_THROW(animation->RemoveKey(*key), std::runtime_error);
  EXPECT_EQ(animation->GetTime(*key), -1);
  recorder->react = [&](NAnimation*) { animation.reset(); };
  EXPECT_TRUE(animation->AddKeys({{key, 1}, {MakeKey(), 2}}));
  EXPECT_EQ(key->GetNamespace(), nullptr);
}

class Manager : public testing::Test {
 protected:
  NAnimationManager manager;
  Pointer<Recorder> recorder{new Recorder};
  AnimationPointer a = MakeAnimation(L"a");
  AnimationPointer b = MakeAnimation(L"b");

  void SetUp() override { manager.AddObserver(*recorder); }
};

TEST_F(Manager, TellsOfComingGoingAndSelecting) {
  EXPECT_FALSE(manager.RemoveAnimation(*a));
  EXPECT_TRUE(manager.AddAnimation(*a));
  EXPECT_FALSE(manager.AddAnimation(*a));
  EXPECT_FALSE(manager.AddAnimation(*MakeAnimation(L"a")));
  EXPECT_TRUE(manager.AddAnimation(*MakeAnimation(L"")));
  EXPECT_FALSE(manager.AddAnimation(*AnimationPointer(new NAnimation(*a))));
  EXPECT_TRUE(manager.AddAnimation(*b));
  EXPECT_THAT(recorder->Take(), ElementsAre(L"add a", L"add ", L"add b"));
  manager.Select(a.get());
  manager.Select(a.get());
  recorder->react = [&](NAnimation* removed) {
    EXPECT_EQ(manager.GetAnimations().front(), removed);
    EXPECT_EQ(manager.GetAnimationNamespace().QueryNamedObject(L"a"), nullptr);
  };
  EXPECT_TRUE(manager.RemoveAnimation(*a));
  recorder->react = nullptr;
  EXPECT_EQ(manager.GetSelectedAnimation(), a);
  manager.Select(nullptr);
  EXPECT_THAT(recorder->Take(), ElementsAre(L"select a", L"select a", L"remove a", L"select -"));
  manager.Select(b.get());
  manager.Clear();
  EXPECT_THAT(recorder->Take(), ElementsAre(L"select b", L"clear -"));
  EXPECT_THAT(manager.GetAnimations(), IsEmpty());
  EXPECT_EQ(manager.GetSelectedAnimation(), nullptr);
  EXPECT_TRUE(manager.AddAnimation(*b));
}

TEST_F(Manager, AListenerMayThrowOrEdit) {
  manager.AddAnimation(*a);
  manager.AddAnimation(*b);
  recorder->react = [](NAnimation*) { throw std::runtime_error("heard"); };
  EXPECT_THROW(manager.RemoveAnimation(*a), std::runtime_error);
  EXPECT_THAT(manager.GetAnimations(), ElementsAre(b));
  recorder->react = [&](NAnimation*) {
    recorder->react = nullptr;
    EXPECT_FALSE(manager.RemoveAnimation(*b));
    EXPECT_TRUE(manager.AddAnimation(*b));
    EXPECT_TRUE(manager.AddAnimation(*a));
  };
  EXPECT_TRUE(manager.RemoveAnimation(*b));
  EXPECT_THAT(manager.GetAnimations(), ElementsAre(b, a));
  EXPECT_EQ(b->GetNamespace(), &manager.GetAnimationNamespace());
  recorder->react = [&](NAnimation*) {
    recorder->react = nullptr;
    a.reset();
    manager.Clear();
  };
  manager.Select(a.get());
  EXPECT_THAT(manager.GetAnimations(), IsEmpty());
}

}  // namespace
}  // namespace corvanta::data::animation
