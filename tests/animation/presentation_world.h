#pragma once

#include "tests/support/world.h"

/// A small world that presentations play in: a tree with a root group, and everything written down
/// that happens to items.
namespace corvanta::data::animation {

using KeyPointer = Pointer<NAnimationKey>;
using support::AttributeLog;
using Writes = AttributeLog::Writes;
using Triple = NAnimationKey::Triple;

class TimeRecorder final : public NAnimationEngineListener {
 public:
  std::vector<double> times;
  std::function<void(double)> react;

 private:
  void OnSetTimeImpl(NAnimationEngine const& engine, double time) override {
    times.push_back(time);
    EXPECT_TRUE(engine.GetTickCount() == time || time != time);
    if (auto const call = react) call(time);
  }
};

class Args final : public NAnimationEngineArgs {
 public:
  Cameras cameras;
  Scenes scenes;

 private:
  void GetCamerasImpl(Cameras& out) const override { out.insert(cameras.begin(), cameras.end()); }
  void GetScenesImpl(Scenes& out) const override { out.insert(scenes.begin(), scenes.end()); }
};

class World : public testing::Test, protected support::World {
 protected:
  Group root = Make();
  Tree tree = MakeTree(root);
  Pointer<NAnimation> animation{new NAnimation};
  NAnimationEngine& engine = animation->GetEngine();
  Pointer<AttributeLog> recorder = ListenToAttributes();
  Pointer<TimeRecorder> times{new TimeRecorder};
  Args args;

  World() { engine.AddObserver(*times); }

  template <class T>
  NSceneGraphPath<T> MakePath(Pointer<T> const& node) const {
    return NSceneGraphPath<T>(node, tree);
  }
  KeyPointer MakeItemKey(Group const& group, Triple const& translation) const {
    auto key = New<NAnimationKey>();
    key->itemPath = MakePath(group);
    key->itemTranslation = translation;
    key->itemIsIgnored = false;
    return key;
  }
  /// Keys of `group` that move it along x; times in tenths.
  void MoveAlongX(Group const& group, std::vector<std::pair<int, double>> const& places) {
    std::vector<std::pair<KeyPointer, int>> keys;
    for (auto const& [time, x] : places) keys.emplace_back(MakeItemKey(group, {x, 0, 0}), time);
    animation->AddKeys(keys);
  }
  /// What a jump to `time` writes, from outside every track.
  Writes PlayAt(double time) {
    engine.SetCurrentTime(-1e6);
    engine.SetRepeat(false);
    engine.SetEndTime(1e6);
    SetCurrentTime(engine, args, time);
    return recorder->Take();
  }
  /// The result of a step, with what was written.
  Writes Step(double delta, bool goesOn = true) {
    EXPECT_EQ(engine.Update(args, delta), goesOn) << delta << " to " << engine.GetTickCount();
    return recorder->Take();
  }
};

}  // namespace corvanta::data::animation
