#pragma once

#include "tests/support/world.h"

/// A small world that presentations play in: a tree with a root group, and everything written down
/// that happens to items.
namespace corvanta::data::animation {

namespace item = domain::scenegraph::item;
using KeyPointer = Pointer<NAnimationKey>;
using Group = Pointer<item::NSceneGraphGroupNode>;
using Camera = Pointer<item::NSceneGraphCameraNode>;
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
  Pointer<domain::scenegraph::tree::NSceneGraphTreeNode> tree = trees->CreateNode(NNodeID());
  Group root = MakeGroup();
  Pointer<NAnimation> animation{new NAnimation};
  NAnimationEngine& engine = animation->GetEngine();
  Pointer<AttributeLog> recorder{new AttributeLog};
  Pointer<TimeRecorder> times{new TimeRecorder};
  Args args;

  World() {
    tree->SetRoot(root);
    attributes->AddObserver(*recorder);
    engine.AddObserver(*times);
  }

  Group MakeGroup() { return items->CreateNode<item::NSceneGraphGroupNode>(NNodeID()); }
  template <class T>
  domain::scenegraph::NSceneGraphPath<T> MakePath(Pointer<T> const& node) const {
    return domain::scenegraph::NSceneGraphPath<T>(node, tree);
  }
  KeyPointer MakeItemKey(Group const& group, Triple const& translation) const {
    KeyPointer key(new NAnimationKey);
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
