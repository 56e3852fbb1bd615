#include "corvanta/data/domain/scenegraph/detail/NChildIndex.h"

#include "tests/support/world.h"

namespace corvanta::test {
namespace {

using scenegraph::detail::NChildIndex;

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

/// A scene that is edited and asked by numbers, so that two of them go the same way: one with an
/// index over children wherever there are a few, one that walks plainly.
struct Stage : World {
  std::size_t fewest;
  Group root = Make(), innerRoot = Make();
  Tree shown = MakeTree(root), inner = MakeTree(innerRoot);
  Pointer<NSceneNode> scene = scenes->CreateNode();
  std::vector<Item> all{root, innerRoot};
  std::vector<Reference> references;
  Pointer<support::EventLog> log = Listen();
  std::vector<std::string> signals;
  unsigned reactions = 0;
  bool isAsking = false;

  explicit Stage(std::size_t fewestChildren) : fewest(fewestChildren) {
    scene->SetSceneGraph(shown);
    inner->SetUnit(0.5);
    log->react = [this](NSignal const& signal) {
      signals.push_back(std::string(signal.name) + " " + std::to_string(Find(signal.node)));
      // A listener that edits in the middle of a walk.
      if (!isAsking || ++reactions % 3 == 0) return;
      isAsking = false;
      Edit(reactions * 7919 % 12, reactions * 31, reactions * 17, 0.5 * (reactions % 5));
      isAsking = true;
    };
  }

  std::ptrdiff_t Find(void const* node) const {
    for (std::size_t i = 0; i != all.size(); ++i) {
      if (static_cast<core::node::NNode const*>(all[i].get()) == node) {
        return static_cast<std::ptrdiff_t>(i);
      }
    }
    return -1;
  }

  void Add(unsigned kind, unsigned where, float z) {
    Item made;
    if (kind % 8 == 0) {
      made = Make();
    } else if (kind % 8 == 1) {
      references.push_back(MakeReference(inner));
      made = references.back();
    } else if (kind % 16 == 2) {
      made = Make<NSceneGraphLightNode>();
    } else {
      made = MakeModel({-0.2f, -0.2f, z}, {0.2f, 0.3f, z});
    }
    bool const isInner = kind % 8 != 1 && kind % 3 == 0;
    auto const& parent = isInner ? all[1] : all[where % all.size()];
    if (kind % 8 == 1) {
      root->AddChild(*made);
    } else {
      (kind % 5 == 0 ? parent : isInner ? all[1] : all[0])->AddChild(*made);
    }
    all.push_back(made);
  }

  void Edit(unsigned kind, unsigned which, unsigned other, double value) {
    Item const edited = all[which % all.size()], second = all[other % all.size()];
    switch (kind) {
      case 0:
        return edited->SetTranslationX(value);
      case 1:
        return edited->SetRotationY(90 * value);
      case 2:
        return edited->SetScaleZ(value);
      case 3:
        return edited->SetIsVisibleFlag(other % 4 != 0);
      case 4:
        return edited->SetTransformIsAbsoluteFlag(other % 8 == 0);
      case 5:
        return static_cast<void>(second->GetParent() != nullptr &&
                                 second->GetParent()->RemoveChild(*second));
      case 6:
        if (!references.empty()) inner->RemoveObserver(*references[which % references.size()]);
        return second->SetTranslationY(value);
      case 7:
        return static_cast<void>(edited->AddChild(*second, which / 7 % 9));
      case 8:
        // A silent write, and one that makes the parent's box dirty later.
        if (other % 2 != 0) edited->QueryAttribute(item::AN_IS_VISIBLE)->SetValue(value > 0, false);
        if (other % 5 == 0) {
          edited->QueryAttribute(item::AN_TRANSFORM_IS_ABSOLUTE)->SetValue(value > 1, false);
        }
        return;
      case 9:
        return static_cast<void>(edited->AddChild(*second));
      case 10:
        if (auto const* const from = dynamic_cast<NSceneGraphModelNode*>(edited.get())) {
          if (auto* const to = dynamic_cast<NSceneGraphModelNode*>(second.get())) from->CopyTo(*to);
        }
        return;
      default:
        edited->QueryAttribute(item::AN_TRANSLATION_Y)->SetValue(value, false);
        Matrix moved;
        moved.SetTranslate({static_cast<float>(value), 0, 0});
        return second->TryTransform(moved);
    }
  }

  /// All that a pick and the boxes give, bit by bit.
  std::vector<std::uint64_t> Ask(Line const& line, unsigned which) {
    NChildIndex::SetFewestChildren(fewest);
    isAsking = true;
    std::vector<std::uint64_t> found;
    auto const add = [&found](auto const* values, std::size_t count) {
      for (std::size_t i = 0; i != count; ++i) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, values + i, sizeof *values);
        found.push_back(bits);
      }
    };
    auto const addBox = [&](Box3 const& box) {
      add(&box.min.x, 3);
      add(&box.max.x, 3);
    };
    if (which % 3 == 0) addBox(all[which % all.size()]->GetBoundingBox({}, {}));
    if (which % 2 == 0) addBox(tree::GetBoundingBox(*shown));
    NRayPicker pick;
    pick.SetRay(line);
    scene->Accept(pick);
    if (which % 7 == 0) all[which % all.size()]->Accept(pick);
    pick.SortWithDistance();
    for (bool const isDetailed : {false, true}) {
      if (isDetailed) pick.CheckDetail();
      for (unsigned long i = 0; i != pick.GetPickCount(); ++i) {
        found.push_back(static_cast<std::uint64_t>(Find(pick.GetModelNode(i))));
        double const distance = pick.GetDistance(i);
        Vec3 const hit = pick.GetAbsHitPoint(i);
        add(&distance, 1);
        add(&hit.x, 3);
        found.push_back(pick.GetCheckPoints(i).size());
      }
    }
    isAsking = false;
    NChildIndex::SetFewestChildren(NChildIndex::kFewestChildren);
    return found;
  }
};

TEST(ChildIndex, EqualsThePlainWalkUnderRandomEdits) {
  Random random;
  std::uniform_real_distribution<float> any(-1, 1);
  double const values[] = {0,  -0.0, 1, 1e-9, 1e9, kNaN, std::numeric_limits<double>::infinity(),
                           0.5};
  std::size_t hitCount = 0;
  for (int round = 0; round != 12; ++round) {
    Stage indexed(round % 3 == 0 ? 20 : 2), plain(kNever);
    // Most rounds have usual numbers alone.
    bool const isWild = round % 4 == 3;
    for (int step = 0; step != 900; ++step) {
      unsigned const kind = random() % 12, which = random(), other = random();
      double const value = isWild && random() % 20 == 0
                               ? values[random() % std::size(values)]
                               : double(any(random)) * (kind == 2 ? 0.3 : 3);
      bool const adds = step < 60 || random() % 8 == 0;
      // Of two zeros that are a box's least coordinate the first of the list counts.
      float const z = round % 6 == 4 ? (random() % 2 == 0 ? 0.0f : -0.0f) : any(random);
      Line const line(Vec3(any(random), any(random), any(random)) * (step % 9 == 0 ? 300.0f : 4.0f),
                      Vec3(any(random), any(random), any(random)));
      unsigned const asks = step < 60 ? 0 : random() % 3;
      std::vector<std::uint64_t> found[2];
      for (Stage* const stage : {&indexed, &plain}) {
        if (adds) stage->Add(which, other, z);
        // Edits that tear the scene apart are fewer.
        if (step >= 60 && (kind < 5 || kind == 6 || which % 6 == 0)) {
          stage->Edit(kind, which / 6, other, value);
        }
        for (unsigned i = 0; i != asks; ++i) {
          auto const answer = stage->Ask(line, other + i);
          auto& all = found[stage == &plain];
          all.insert(all.end(), answer.begin(), answer.end());
        }
      }
      ASSERT_EQ(found[0], found[1]) << "round " << round << ", step " << step;
      ASSERT_EQ(indexed.signals, plain.signals) << "round " << round << ", step " << step;
      hitCount += found[1].size();
    }
  }
  EXPECT_GT(hitCount, 50000u);
}

/// What stands under one group, and how it moves.
struct CrowdRow {
  char const* name;
  std::function<void(NSceneGraphItemNode&, float, float, float)> place;
};

TEST(ChildIndex, EqualsThePlainWalkInCrowds) {
  CrowdRow const rows[] = {
      {"all at one place", [](auto&, float, float, float) {}},
      {"overlapping", [](auto& i, float x, float y, float) { Move(i, 0.01 * x, 0.01 * y, 0); }},
      {"in a plane", [](auto& i, float x, float y, float) { Move(i, 30 * x, 30 * y, 0); }},
      {"of all sizes",
       [](auto& i, float x, float y, float z) {
         double const size = std::pow(10.0, 9 * z);
         Move(i, 3 * size * x, 3 * size * y, size * z);
         for (auto const set : {&NSceneGraphItemNode::SetScaleX, &NSceneGraphItemNode::SetScaleY,
                                &NSceneGraphItemNode::SetScaleZ}) {
           (i.*set)(size);
         }
       }},
      {"partly nowhere",
       [](auto& i, float x, float y, float z) {
         double const far = z < -0.9f  ? kNaN
                            : z > 0.9f ? std::numeric_limits<double>::infinity()
                                       : z;
         Move(i, 20 * x, 20 * y, far);
       }},
  };
  Random random;
  std::uniform_real_distribution<float> any(-1, 1);
  for (CrowdRow const& row : rows) {
    SCOPED_TRACE(row.name);
    Stage indexed(NChildIndex::kFewestChildren), plain(kNever);
    for (int i = 0; i != 3000; ++i) {
      float const x = any(random), y = any(random), z = any(random);
      for (Stage* const stage : {&indexed, &plain}) {
        stage->Add(3, 0, z);
        row.place(*stage->all.back(), x, y, z);
      }
    }
    for (int step = 0; step != 150; ++step) {
      // At last every item has moved some times.
      std::size_t const moves = step % 10 == 9 ? 900 : 3;
      for (std::size_t i = 0; i != moves; ++i) {
        float const x = any(random), y = any(random), z = any(random);
        std::size_t const which = 2 + random() % 3000;
        for (Stage* const stage : {&indexed, &plain}) row.place(*stage->all[which], x, y, z);
      }
      Line const line(Vec3(any(random), any(random), any(random)) * (step % 2 == 0 ? 60.0f : 3.0f),
                      Vec3(any(random), any(random), any(random)));
      ASSERT_EQ(indexed.Ask(line, 2), plain.Ask(line, 2)) << "step " << step;
    }
  }
}

TEST(ChildIndex, OfManyLevelsOfManyChildren) {
  std::vector<std::uint64_t> found[2];
  for (bool const isPlain : {false, true}) {
    Stage stage(isPlain ? kNever : NChildIndex::kFewestChildren);
    Item last = stage.all[0];
    for (int level = 0; level != 1500; ++level) {
      for (int i = 0; i != 70; ++i) last->AddChild(*stage.Make());
      Group const next = stage.Make();
      last->AddChild(*next, 35);
      last = next;
    }
    Model const model = stage.MakeModel();
    last->AddChild(*model);
    stage.all.push_back(model);
    for (int step = 0; step != 4; ++step) {
      model->SetTranslationX(0.1 * step);
      auto const answer = stage.Ask(Line({0.4f, 0.6f, 5}, {0.4f, 0.6f, 0}), 2);
      found[isPlain].insert(found[isPlain].end(), answer.begin(), answer.end());
    }
  }
  EXPECT_EQ(found[0], found[1]);
  EXPECT_GT(found[0].size(), 40u) << "it is hit";
}

}  // namespace
}  // namespace corvanta::test
