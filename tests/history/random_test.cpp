#include "tests/history/dump.h"
#include "tests/history/edits.h"

// Random edits of nodes of every kind, and back and forth through them.
namespace corvanta::history {
namespace {

/// Answers some events by an edit, and some by an exception.
class Meddler final : public NForwardingListener {
 public:
  Meddler(Editor& editor, Random& random, unsigned edits, unsigned throws)
      : m_editor(editor), m_random(random), m_edits(edits), m_throws(throws) {}

 private:
  void OnSignal(NSignal const&) override {
    if (m_isBusy) return;
    if (m_throws != 0 && m_random() % m_throws == 0) throw std::runtime_error("a listener's");
    if (m_edits == 0 || m_random() % m_edits != 0) return;
    m_isBusy = true;
    m_editor.EditLightly();
    m_isBusy = false;
  }

  Editor& m_editor;
  Random& m_random;
  unsigned const m_edits;
  unsigned const m_throws;
  bool m_isBusy = false;
};

struct Script {
  char const* name;
  unsigned edits;   // one event in so many is answered by an edit; 0: none
  unsigned throws;  // or by an exception
  bool hasTransactions;
};

void PrintTo(Script const& script, std::ostream* out) { *out << script.name; }

class RandomScript : public testing::TestWithParam<Script> {
 protected:
  template <class Call>
  void Run(Call const& call) {
    try {
      call();
    } catch (std::runtime_error const&) {
    }
  }

  /// Edits in nested transactions, some of which are taken back.
  void EditWithin(int depth) {
    std::string const before = Dump(world.document);
    NTransaction transaction(world.document);
    for (unsigned i = random() % 12; i != 0; --i) {
      Run([&] { random() % 6 == 0 && depth < 3 ? EditWithin(depth + 1) : editor.Edit(); });
    }
    if (random() % 3 != 0) {
      Run([&] { transaction.Commit(L"edit"); });
      return;
    }
    bool isBack = true;
    Run([&] {
      isBack = false;
      isBack = transaction.Rollback();
    });
    EXPECT_FALSE(transaction.IsOpen());
    // Where nobody answers by edits, nothing can stand against it.
    EXPECT_EQ(Dump(world.document), before);
    static_cast<void>(isBack);
  }

  void Walk(NHistory& history, bool isForward, std::size_t steps) {
    for (std::size_t i = 0; i != steps; ++i) {
      std::size_t const count = history.GetUndoCount();
      Run([&] { isForward ? history.Redo() : history.Undo(); });
      ASSERT_EQ(history.GetUndoCount(), isForward ? count + 1 : count - 1);
    }
  }

  World world;
  Random random;
  Editor editor{world.document, random};
};

TEST_P(RandomScript, GoesBackToTheStartAndForthToTheEnd) {
  editor.Populate();
  auto const meddler = New<Meddler>(editor, random, GetParam().edits, GetParam().throws);
  std::string const start = Dump(world.document);
  NHistory history(world.document);
  world.events->AddObserver(*meddler);
  for (int i = 0; i != 250; ++i) {
    Run([&] {
      if (GetParam().hasTransactions && random() % 4 == 0) {
        EditWithin(0);
      } else {
        editor.Edit();
      }
    });
  }
  std::string const end = Dump(world.document);
  std::size_t const count = history.GetUndoCount();
  ASSERT_GT(count, 50u);
  Walk(history, false, count);
  ASSERT_EQ(Dump(world.document), start);
  Walk(history, true, count);
  ASSERT_EQ(Dump(world.document), end);
  for (int i = 0; i != 4; ++i) {
    std::size_t const steps = random() % count;
    Walk(history, false, steps);
    std::string const middle = Dump(world.document);
    Walk(history, false, count - steps);
    ASSERT_EQ(Dump(world.document), start);
    Walk(history, true, count - steps);
    ASSERT_EQ(Dump(world.document), middle);
    Walk(history, true, steps);
    ASSERT_EQ(Dump(world.document), end);
  }
}

INSTANTIATE_TEST_SUITE_P(Every, RandomScript,
                         testing::Values(Script{"plain", 0, 0, false},
                                         Script{"transactions", 0, 0, true},
                                         Script{"editing", 5, 0, false},
                                         Script{"throwing", 0, 9, true}, Script{"all", 5, 9, true}),
                         [](auto const& made) { return std::string(made.param.name); });

}  // namespace
}  // namespace corvanta::history
