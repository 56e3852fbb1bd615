#include "tests/history/dump.h"

namespace corvanta::history {
namespace {

/// Keeps the sets that it is given; `react` runs after that.
class Sets final : public NChangeSetListener {
 public:
  std::vector<NChangeSet> taken;
  std::function<void(NChangeSet const&)> react;

 private:
  void OnChangeSet(NChangeSet const& set) override {
    taken.push_back(set);
    if (auto const call = react) call(set);
  }
};

class HistoryTest : public WorldTest {
 protected:
  Pointer<Sets> Hear() {
    auto sets = New<Sets>();
    AddChangeSetListener(document, *sets);
    return sets;
  }
  static std::vector<NVariant> ValuesOf(NChangeSet const& set) {
    std::vector<NVariant> values;
    for (auto const& change : set.GetAttributeChanges()) {
      values.push_back(change.GetBefore());
      values.push_back(change.GetAfter());
    }
    return values;
  }

  Pointer<NLightNode> light = lights->CreateNode();
  Pointer<NLightNode> const other = lights->CreateNode();
  NHistory history{document};
};

TEST_F(HistoryTest, MergesTheWritesOfATransactionAndDeliversThemOnce) {
  auto const sets = Hear();
  {
    NTransaction transaction(document);
    light->SetColorR(0.25);
    other->SetColorG(0.5);
    light->SetColorR(0.75);
    other->SetColorB(0.125);
    other->SetColorB(1.0);  // as it was
    EXPECT_EQ(light->GetColorR(), 0.75);
    EXPECT_THAT(sets->taken, IsEmpty());
    EXPECT_TRUE(transaction.Commit(L"tint"));
    EXPECT_FALSE(transaction.Commit(L"again") || transaction.Rollback() || transaction.IsOpen());
  }
  ASSERT_THAT(sets->taken, SizeIs(1));
  NChangeSet const set = sets->taken.front();
  EXPECT_EQ(set.GetName(), L"tint");
  EXPECT_EQ(set.GetOrigin(), data::history::NCO_EDIT);
  EXPECT_TRUE(set.IsComplete());
  EXPECT_THAT(ValuesOf(set), ElementsAre(1.0, 0.75, 1.0, 0.5));
  EXPECT_EQ(set.GetAttributeChanges()[0].GetNode(), light.get());
  EXPECT_EQ(set.GetAttributeChanges()[1].GetAttribute().GetName(), L"color.g");
  EXPECT_THAT(set.GetChanges(), IsEmpty());
}

TEST_F(HistoryTest, DeliversNothingForWhatComesBackToTheSame) {
  auto const sets = Hear();
  light->SetColorR(light->GetColorR());
  light->SetName(light->GetName());
  {
    NTransaction transaction(document);
    light->SetColorR(kNaN);
    light->SetColorR(1.0);
    transaction.Commit();
  }
  NTransaction(document).Commit(L"nothing");
  EXPECT_THAT(sets->taken, IsEmpty());
  light->SetColorR(kNaN);
  light->SetColorR(-kNaN);  // every NaN is the same
  light->SetColorG(0.0);
  light->SetColorG(-0.0);  // but zeros have a sign
  EXPECT_THAT(sets->taken, SizeIs(3));
  EXPECT_EQ(history.GetUndoCount(), 3u);
}

TEST_F(HistoryTest, DeliversAChangeOutsideOfAllWhenItIsOver) {
  auto const sets = Hear();
  auto const group = Make();
  sets->taken.clear();
  sets->react = [&](NChangeSet const&) {
    EXPECT_EQ(group->GetTransform()[3][0], 5.0f) << "a cache wasn't marked";
  };
  group->GetTransform();
  group->SetTranslationX(5);
  ASSERT_THAT(sets->taken, SizeIs(1));
  EXPECT_THAT(ValuesOf(sets->taken[0]), ElementsAre(0.0, 5.0));
}

TEST_F(HistoryTest, WhatListenersChangeMakesSetsOfTheirOwnBehindTheOuterOne) {
  auto const early = Listen(true);  // hears before the recorder's other listeners
  auto const sets = Hear();
  early->react = [&](NSignal const& signal) {
    if (signal.node == light.get()) other->SetColorG(light->GetColorR());
  };
  sets->react = [&](NChangeSet const& set) {
    // An edit in a delivery comes behind what is waiting.
    if (set.GetAttributeChanges()[0].GetNode() == light.get()) other->SetColorB(0.0);
  };
  light->SetColorR(0.5);
  ASSERT_THAT(sets->taken, SizeIs(3));
  EXPECT_EQ(sets->taken[0].GetAttributeChanges()[0].GetAttribute().GetName(), L"color.r");
  EXPECT_EQ(sets->taken[1].GetAttributeChanges()[0].GetAttribute().GetName(), L"color.g");
  EXPECT_EQ(sets->taken[2].GetAttributeChanges()[0].GetAttribute().GetName(), L"color.b");
  // In a transaction they belong to it.
  sets->taken.clear();
  NTransaction transaction(document);
  light->SetColorR(0.75);
  transaction.Commit();
  EXPECT_THAT(sets->taken[0].GetAttributeChanges(), SizeIs(2));
}

TEST_F(HistoryTest, NestedTransactionsJoinAndTakeBackTheirOwnPart) {
  auto const sets = Hear();
  NTransaction outer(document);
  light->SetColorR(0.5);
  {
    NTransaction inner(document);
    light->SetColorR(0.25);
    auto const made = lights->CreateNode();
    EXPECT_FALSE(outer.Commit(L"too early") || outer.Rollback());
    EXPECT_TRUE(inner.Rollback());
    EXPECT_EQ(light->GetColorR(), 0.5);
    EXPECT_EQ(made->GetDomain(), nullptr);
  }
  {
    NTransaction inner(document);
    light->SetColorR(0.125);
    other->SetColorR(0.0);
    EXPECT_TRUE(inner.Commit(L"inner"));
  }
  {
    NTransaction const forgotten(document);
    other->SetColorG(0.0);
  }
  EXPECT_EQ(other->GetColorG(), 1.0);
  EXPECT_THAT(sets->taken, IsEmpty());
  EXPECT_TRUE(outer.Commit());
  ASSERT_THAT(sets->taken, SizeIs(1));
  EXPECT_EQ(sets->taken[0].GetName(), L"inner");
  EXPECT_THAT(ValuesOf(sets->taken[0]), ElementsAre(1.0, 0.125, 1.0, 0.0));
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(light->GetColorR(), 1.0);
  EXPECT_EQ(other->GetColorR(), 1.0);
}

TEST_F(HistoryTest, ARollbackGoesOnWhenListenersThrow) {
  auto const start = Dump(document);
  auto const log = Listen(true);
  NTransaction transaction(document);
  light->SetColorR(0.5);
  light->SetColorG(0.5);
  lights->CreateNode();
  int thrown = 0;
  log->react = [&](NSignal const&) { throw std::runtime_error(std::to_string(++thrown)); };
  try {
    transaction.Rollback();
    ADD_FAILURE() << "nothing was thrown";
  } catch (std::runtime_error const& error) {
    EXPECT_STREQ(error.what(), "1") << "the first passes";
  }
  EXPECT_EQ(thrown, 2);
  EXPECT_EQ(Dump(document), start);
  EXPECT_FALSE(transaction.IsOpen());
  EXPECT_EQ(history.GetUndoCount(), 0u);
}

TEST_F(HistoryTest, WhatWasRemovedComesBackAsTheSameObjectToTheSamePlace) {
  auto const start = Dump(document);
  NNodeReference<NLightNode> const reference(light);
  NNodeReference<NLightNode> const never;
  auto* const address = light.get();
  EXPECT_EQ(never.GetState(), core::node::NRS_NEVER_SET);
  EXPECT_EQ(reference.GetState(), core::node::NRS_RESOLVED);
  EXPECT_STREQ(core::node::GetText(core::node::NRS_NO_LONGER_BELOW), L"no longer below");
  auto const placed = Make<NSceneGraphLightNode>();
  placed->SetLightNode(reference);
  lights->RemoveNode(*light);
  EXPECT_TRUE(reference.Get()) << "this test still holds it";
  light.reset();
  EXPECT_FALSE(reference.Get());
  EXPECT_FALSE(placed->GetLightNode());
  EXPECT_EQ(reference.GetState(), core::node::NRS_GONE);
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(reference.Get().get(), address);
  EXPECT_EQ(lights->GetNodeBegin().operator->(), address);
  EXPECT_EQ(reference.GetState(), core::node::NRS_RESOLVED);
  EXPECT_TRUE(history.Redo());
  EXPECT_EQ(reference.GetState(), core::node::NRS_GONE);
  history.Clear();
  EXPECT_EQ(reference.GetState(), core::node::NRS_GONE);
  EXPECT_EQ(core::node::NNodeReference<NCameraNode>(
                static_cast<core::node::detail::NNodeReferenceImpl const&>(
                    NNodeReference<NLightNode>(other)))
                .GetState(),
            core::node::NRS_OTHER_CLASS);
  EXPECT_FALSE(start.empty());
}

TEST_F(HistoryTest, RefusesWhereItCannotRun) {
  EXPECT_FALSE(history.Undo() || history.Redo()) << "nothing to go to";
  light->SetColorR(0.5);
  light->SetColorR(0.25);
  EXPECT_TRUE(history.Undo());
  light->SetColorG(0.5);
  EXPECT_FALSE(history.Redo()) << "an edit drops what could be redone";
  EXPECT_EQ(history.GetRedoCount(), 0u);
  auto const log = Listen(true);
  auto const sets = Hear();
  int asked = 0;
  log->react = [&](NSignal const&) {
    ++asked;
    EXPECT_FALSE(history.Undo() || history.Redo());
  };
  sets->react = [&](NChangeSet const&) {
    ++asked;
    EXPECT_FALSE(history.Undo());
  };
  light->SetColorB(0.5);
  EXPECT_EQ(asked, 2);
  log->react = nullptr;
  sets->react = nullptr;
  NTransaction transaction(document);
  EXPECT_FALSE(history.Undo());
  EXPECT_EQ(history.GetUndoCount(), 3u);
  EXPECT_EQ(light->GetColorB(), 0.5);
}

TEST_F(HistoryTest, AnUndoThatSomethingStandsAgainstChangesNothing) {
  light->SetColorR(0.5);
  NTransaction transaction(document);
  light->SetColorG(0.5);
  auto made = lights->CreateNode();
  light->SetColorB(0.5);
  transaction.Commit();
  lights->SetIsReadOnlyFlag(true);  // which nobody records, and which refuses the removal
  auto const sets = Hear();
  auto const before = Dump(document);
  EXPECT_FALSE(history.Undo());
  EXPECT_EQ(Dump(document), before);
  EXPECT_THAT(sets->taken, IsEmpty());
  EXPECT_EQ(history.GetUndoCount(), 2u);
  lights->SetIsReadOnlyFlag(false);
  EXPECT_TRUE(history.Undo() && history.Undo());
}

TEST(History, OutlivedByItsTransactionsAndHistories) {
  std::optional<World> world(std::in_place);
  NHistory history(world->document);
  NTransaction transaction(world->document);
  auto const light = world->lights->CreateNode();
  light->SetColorR(0.5);
  world->document.GetEvents();
  Pointer<NEventMultiplexer> const events = world->events;
  world.reset();
  EXPECT_FALSE(transaction.IsOpen() || transaction.Commit() || transaction.Rollback());
  EXPECT_FALSE(history.Undo() || history.Redo());
  EXPECT_FALSE(history.Note(*light, *light->QueryAttribute(L"color.r"), 1.0));
  light->SetColorR(0.25);  // recorded by nobody
  EXPECT_EQ(history.GetUndoCount(), 0u);
  EXPECT_EQ(light->GetColorR(), 0.25);
}

TEST_F(HistoryTest, MergesTheStepsOfADrag) {
  auto const drag = [&](double value, wchar_t const* key) {
    NTransaction transaction(document);
    light->SetColorR(value);
    transaction.Commit(L"drag", key);
  };
  for (int i = 0; i != 5; ++i) drag(0.1 * i, L"red");
  EXPECT_EQ(history.GetUndoCount(), 1u);
  history.EndMerge();
  drag(0.75, L"red");
  drag(0.5, L"another");
  {
    NTransaction transaction(document);
    other->SetColorR(0.5);  // another attribute
    transaction.Commit(L"drag", L"another");
  }
  EXPECT_EQ(history.GetUndoCount(), 4u);
  EXPECT_TRUE(history.Undo() && history.Undo() && history.Undo());
  EXPECT_EQ(light->GetColorR(), 0.1 * 4);
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(light->GetColorR(), 1.0);
  EXPECT_TRUE(history.Redo());
  EXPECT_EQ(light->GetColorR(), 0.1 * 4);
}

TEST_F(HistoryTest, DropsTheOldestBeyondItsLimit) {
  for (int i = 0; i != 10; ++i) light->SetColorR(0.01 * i);
  std::size_t const one = history.GetUndo(0).GetBytes();
  EXPECT_EQ(history.GetBytes(), 10 * one);
  history.SetByteLimit(4 * one);
  EXPECT_EQ(history.GetUndoCount(), 4u);
  while (history.Undo()) {
  }
  EXPECT_EQ(light->GetColorR(), 0.01 * 5);
  // What has left the document counts.
  history.SetByteLimit(std::size_t{1} << 20);
  auto const geometry = geometries->CreateNode();
  auto const surface = New<NPolygonSurface>();
  std::vector<float> const coords(300000, 1.0f);
  surface->Assign(coords, coords, {}, {});
  geometry->AddSurface(*surface);
  EXPECT_GT(history.GetUndoCount(), 0u);
  geometries->RemoveNode(*geometry);
  EXPECT_EQ(history.GetUndoCount(), 0u);
  EXPECT_EQ(history.GetBytes(), 0u);
}

TEST_F(HistoryTest, NotesWhatWasWrittenSilently) {
  NAttribute* const red = light->QueryAttribute(L"color.r");
  red->SetValue(0.5, false);
  EXPECT_EQ(history.GetUndoCount(), 0u);
  EXPECT_TRUE(history.Note(*light, *red, 1.0));
  EXPECT_FALSE(history.Note(*other, *red, 1.0));
  auto const view = New<NView>();
  NAttribute* const left = &*view->GetAttributeBegin();
  NVariant const before = left->GetValue();
  {
    NTransaction transaction(document);
    left->SetValue(0.25, true);
    EXPECT_TRUE(history.Note(*view, *left, before));
    left->SetValue(0.125, true);
    EXPECT_TRUE(history.Note(*view, *left, 0.25));
    transaction.Commit(L"view");
  }
  EXPECT_EQ(history.GetUndoCount(), 2u);
  EXPECT_TRUE(history.Undo());
  EXPECT_TRUE(left->GetValue() == before);
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(light->GetColorR(), 1.0);
  EXPECT_TRUE(history.Redo() && history.Redo());
  EXPECT_EQ(left->GetDouble(), 0.125);
  EXPECT_EQ(light->GetColorR(), 0.5);
}

TEST_F(HistoryTest, TakesBackWhatListenersAnswerToAnUndo) {
  auto const log = Listen(true);
  int answers = 0;
  log->react = [&](NSignal const& signal) {
    if (signal.node != light.get()) return;
    ++answers;
    other->SetColorR(other->GetColorR() + 1);  // counts
  };
  light->SetColorR(0.5);
  light->SetColorR(0.25);
  EXPECT_EQ(other->GetColorR(), 3.0);
  for (int i = 0; i != 4; ++i) EXPECT_TRUE(history.Undo());
  EXPECT_EQ(light->GetColorR(), 1.0);
  EXPECT_EQ(other->GetColorR(), 1.0);
  EXPECT_EQ(answers, 4);
  for (int i = 0; i != 4; ++i) EXPECT_TRUE(history.Redo());
  EXPECT_EQ(other->GetColorR(), 3.0);
}

TEST_F(HistoryTest, APathSaysWhyItLeadsNowhere) {
  auto const root = Make();
  auto child = Make();
  root->AddChild(*child);
  auto const shown = MakeTree(root);
  NSceneGraphPath<NSceneGraphGroupNode> const path{
      NNodeReference<NSceneGraphGroupNode const>(*child),
      NNodeReference<NSceneGraphTreeNode const>(*shown)};
  EXPECT_EQ(GetState(NSceneGraphPath<NSceneGraphGroupNode>()), core::node::NRS_NEVER_SET);
  EXPECT_EQ(GetState(path), core::node::NRS_RESOLVED);
  root->RemoveChild(*child);
  EXPECT_EQ(GetState(path), core::node::NRS_NO_LONGER_BELOW);
  items->RemoveNode(*child);
  child.reset();
  EXPECT_EQ(GetState(path), core::node::NRS_GONE);
  EXPECT_TRUE(history.Undo() && history.Undo());
  EXPECT_EQ(GetState(path), core::node::NRS_RESOLVED);
}

TEST_F(HistoryTest, WhatASetterDoesAtOnceIsOneSetAlsoWhileEventsAreDetached) {
  auto const image = images->CreateNode();
  auto const copy = images->CreateNode();
  history.Clear();
  events->Detach();
  image->SetImageLocator(NUri::CreateFileUri(L"/a.png"));
  image->SetName(L"a picture");
  image->CopyTo(*copy);
  events->Reattach();
  EXPECT_EQ(history.GetUndoCount(), 3u);
  EXPECT_TRUE(history.Undo());
  EXPECT_TRUE(copy->GetImageLocator() == NLocator());
  EXPECT_EQ(copy->GetName(), L"image (2)");
  EXPECT_TRUE(history.Undo() && history.Undo());
  EXPECT_TRUE(image->GetImageLocator() == NLocator());
}

TEST_F(HistoryTest, KeepsNothingWhileItIsToldSo) {
  light->SetColorR(0.5);
  history.SetIsKeeping(false);
  light->SetColorG(0.5);
  history.SetIsKeeping(true);
  EXPECT_EQ(history.GetUndoCount(), 1u);
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(light->GetColorG(), 0.5);
}

}  // namespace
}  // namespace corvanta::history
