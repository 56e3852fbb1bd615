#include "corvanta/data/domain/scenegraph/detail/NChildIndex.h"

#include "tests/support/world.h"

namespace corvanta::test {
namespace {

using scenegraph::detail::NChildIndex;

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

/// A scene that is edited and asked by numbers, so that two of them go the same way: one with an
/// index over children wherever there are a few, one that walks plainly.
struct Stage : World {
  std::size_t const fewest;
  Group root = Make(), innerRoot = Make();
  Tree shown = MakeTree(root), inner = MakeTree(innerRoot);
  Pointer<NSceneNode> scene = scenes->CreateNode();
  std::vector<Item> all{root, innerRoot};
  std::vector<Reference> references;
  Pointer<support::EventLog> log = Listen();
  std::vector<std::string> signals;
  std::vector<std::uint64_t> answers;
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

  ~Stage() { NChildIndex::SetFewestChildren(NChildIndex::kFewestChildren); }
  Stage(Stage const&) = delete;
  Stage& operator=(Stage const&) = delete;

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
      float const z = any(random);
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

/// An edit after which a child, or its place, isn't what the marks tell.
struct RuleRow {
  char const* name;
  std::function<void(Stage&)> edit;
};

void AskBoxes(Stage& stage) {
  for (int i = 0; i != 2; ++i) {
    stage.all[2]->SetTranslationX(0.5 * i);
    auto const answer = stage.Ask(Line({0, 0, 9}, {0.1f, 0.1f, 0}), 2);
    stage.answers.insert(stage.answers.end(), answer.begin(), answer.end());
  }
}

TEST(ChildIndex, EqualsThePlainWalkWhereMarksDontTell) {
  // all: the root, that of the inner tree, and twenty models below the root.
  RuleRow const rows[] = {
      {"inserted at the front, among and at the end",
       [](Stage& s) {
         // One of another's children is among them at last.
         Group const thief = s.Make();
         thief->AddChild(*s.Make());
         for (unsigned const place : {0u, 7u, 1000u, 3u, 5u}) {
           if (place == 3) thief->AddChild(*s.all[30], 0);
           for (int i = 0; i != 40; ++i) {
             Model const made = s.MakeModel({-0.2f, -0.2f, 0}, {0.2f, 0.3f, 0});
             s.all.push_back(made);
             s.root->AddChild(*made, place);
           }
           AskBoxes(s);
         }
       }},
      {"stolen, and taken out where it came from",
       [](Stage& s) {
         Group const other = s.Make();
         for (int i = 0; i != 4; ++i) other->AddChild(*s.MakeModel());
         s.root->AddChild(*other);
         AskBoxes(s);
         other->AddChild(*s.all[5], 1);
         AskBoxes(s);
         s.root->RemoveChild(*s.all[5]);
         other->GetChildren().back()->SetTranslationX(3);
         AskBoxes(s);
         s.all[5]->SetTranslationY(-7);
         other->GetChildren().back()->SetTranslationX(4);
       }},
      {"copied to while a listener asks",
       [](Stage& s) {
         Group const from = s.Make(), to = s.Make();
         from->AddChild(*s.MakeModel({5, 5, 5}, {6, 6, 6}));
         s.root->AddChild(*to);
         s.all.push_back(to);
         (void)from->GetBoundingBox({}, {});
         AskBoxes(s);
         auto const log = s.ListenToAttributes();
         log->react = [&](NAttribute const&) { AskBoxes(s); };
         // What asks writes; so it hears no more.
         log->react = [&, react = log->react](NAttribute const& attribute) {
           log->react = nullptr;
           react(attribute);
           log->react = [&](NAttribute const&) { (void)tree::GetBoundingBox(*s.shown); };
         };
         from->CopyTo(*to);
       }},
      {"in its own reference's tree",
       [](Stage& s) {
         Group const group = s.Make();
         Model const deep = s.MakeModel({-3, -3, -3}, {3, 3, 3});
         group->AddChild(*deep);
         Reference const reference = s.MakeReference(s.inner);
         group->AddChild(*reference);
         s.root->AddChild(*group);
         s.innerRoot->AddChild(*s.root);
         AskBoxes(s);
         AskBoxes(s);
         deep->SetTranslationX(50);
         (void)group->GetBoundingBox({}, {});
       }},
  };
  for (RuleRow const& row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<std::uint64_t> found[2];
    std::vector<std::string> signals[2];
    for (bool const isPlain : {false, true}) {
      Stage stage(isPlain ? kNever : 3);
      for (int i = 0; i != 20; ++i) stage.Add(4, 0, 0);
      for (int i = 0; i != 3; ++i) {
        AskBoxes(stage);
        if (i == 1) {
          NChildIndex::SetFewestChildren(stage.fewest);
          row.edit(stage);
        }
      }
      AskBoxes(stage);
      found[isPlain] = stage.answers;
      signals[isPlain] = stage.signals;
    }
    EXPECT_EQ(found[0], found[1]);
    EXPECT_EQ(signals[0], signals[1]);
    EXPECT_GT(found[0].size(), 15u);
  }
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
  std::size_t answers = 0;
  for (CrowdRow const& row : rows) {
    SCOPED_TRACE(row.name);
    Stage indexed(NChildIndex::kFewestChildren), plain(kNever);
    for (int i = 0; i != 3000; ++i) {
      float const x = any(random), y = any(random), z = any(random);
      for (Stage* const stage : {&indexed, &plain}) {
        stage->Add(4, 0, z);
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
      auto const found = indexed.Ask(line, 2);
      ASSERT_EQ(found, plain.Ask(line, 2)) << "step " << step;
      answers += found.size() - 6;
    }
    EXPECT_FALSE(tree::GetBoundingBox(*indexed.shown).IsEmpty());
  }
  EXPECT_GT(answers, 1000u) << "rays hit";
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
