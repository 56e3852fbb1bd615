#include <atomic>
#include <cstdlib>
#include <thread>

#include "corvanta/core/detail/scope_exit.h"
#include "tests/support/test.h"

namespace corvanta::core::observer {
namespace {

using reference_countable::NReferenceCountableWithWeakReference;

/// Shared by the objects that are alive, and by who counts them.
using Token = std::shared_ptr<int>;

class Listener : public virtual NReferenceCountableWithWeakReference {
 public:
  explicit Listener(int number = 0, Token token = nullptr)
      : id(number), m_token(std::move(token)) {}
  void Signal() {
    ++heard;
    if (react) react(*this);
  }

  int const id;
  int heard = 0;
  std::function<void(Listener&)> react;

 private:
  Token const m_token;
};
using ListenerPointer = Pointer<Listener>;

class Subject : public NObservable<Subject, Listener>,
                public virtual NReferenceCountableWithWeakReference {
 public:
  explicit Subject(Token token = nullptr) : m_token(std::move(token)) {}
  Subject(Subject const& other) = default;
  void AssignObservers(Subject const& other) { NObservable::operator=(other); }
  void Raise() const {
    NotifyObservers([](Listener& listener) { listener.Signal(); });
  }

 private:
  Token const m_token;
};

struct ListenerError : std::runtime_error {
  ListenerError() : runtime_error("a listener's") {}
};

/// Edits an observed subject at random, from within its deliveries too, and keeps a naive account
/// of who must be called next: who has a place when the delivery began, is registered at it, and
/// lives. Who is removed while a delivery runs keeps the place until the outermost one ends.
class Model {
 public:
  explicit Model(unsigned seed) : m_random(seed), m_subject(new Subject(m_subjects)) {}

  void Run() {
    for (int i = 0; i != 60 && m_subject; ++i) {
      if (Choose(3) != 0) {
        Edit(nullptr);
      } else {
        RaiseCatching();
      }
      ASSERT_FALSE(testing::Test::HasFailure());
    }
    m_subject.reset();
    EXPECT_EQ(m_subjects.use_count(), 1);
    m_pool.clear();
    EXPECT_EQ(m_listeners.use_count(), 1);
  }

 private:
  struct Frame {
    std::vector<std::pair<int, int>> snapshot;  // registration, listener
    std::size_t at = 0;
  };

  int Choose(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
  bool IsAlive(int listener) { return m_pool.count(listener) != 0 || m_running[listener] != 0; }
  bool IsRegistered(int registration) {
    return std::any_of(m_registered.begin(), m_registered.end(),
                       [registration](auto const& entry) { return entry.first == registration; });
  }
  /// The listener that must be called next in the frame, or -1.
  int Next(Frame& frame) {
    for (; frame.at != frame.snapshot.size(); ++frame.at) {
      auto const [registration, listener] = frame.snapshot[frame.at];
      if (IsRegistered(registration) && IsAlive(listener)) return listener;
    }
    return -1;
  }

  void RaiseCatching() {
    try {
      Raise();
    } catch (ListenerError const&) {
    }
  }
  void Raise() {
    Subject const& subject = *m_subjectAddress;
    std::size_t const depth = m_frames.size();
    Frame frame{m_registered, 0};
    frame.snapshot.insert(frame.snapshot.end(), m_kept.begin(), m_kept.end());
    std::sort(frame.snapshot.begin(), frame.snapshot.end());
    m_frames.push_back(std::move(frame));
    core::detail::ScopeExit const leave([this, depth] {
      m_frames.resize(depth);
      if (depth == 0) m_kept.clear();
    });
    subject.Raise();
    EXPECT_EQ(Next(m_frames.back()), -1) << "a delivery ended early";
  }

  void OnSignal(Listener& listener) {
    Frame& frame = m_frames.back();
    ASSERT_EQ(Next(frame), listener.id);
    ++frame.at;
    ++m_running[listener.id];
    core::detail::ScopeExit const leave([&running = m_running[listener.id]] { --running; });
    for (int edits = Choose(3); edits != 0; --edits) Edit(&listener);
    if (m_frames.size() < 4 && Choose(5) == 0) Choose(2) == 0 ? Raise() : RaiseCatching();
    if (Choose(25) == 0) throw ListenerError();
  }

  void Edit(Listener* current) {
    switch (Choose(current == nullptr ? 4 : 8)) {
      case 0:
      case 1:
        return Add();
      case 2:
        if (!m_pool.empty()) Remove(*Any());
        return;
      case 3:
        if (!m_pool.empty()) m_pool.erase(Any()->id);
        return;
      case 4:
        return Remove(*current);
      case 5:
        m_pool.erase(current->id);
        return;
      case 6:
        if (Choose(10) == 0) m_subject.reset();
        return;
      default:
        return;
    }
  }
  Listener* Any() {
    return std::next(m_pool.begin(), Choose(static_cast<int>(m_pool.size())))->second.get();
  }
  void Add() {
    if (m_pool.empty() || Choose(3) != 0) {
      ListenerPointer const made(new Listener(m_nextId++, m_listeners));
      made->react = [this](Listener& listener) { OnSignal(listener); };
      m_pool.emplace(made->id, made);
    }
    Listener& listener = *Any();
    bool const isNew = std::none_of(m_registered.begin(), m_registered.end(),
                                    [&](auto const& entry) { return entry.second == listener.id; });
    EXPECT_EQ(m_subjectAddress->AddObserver(listener), isNew);
    if (!isNew) return;
    auto const isItsOwn = [&](auto const& place) { return place.second == listener.id; };
    auto const kept = std::find_if(m_kept.begin(), m_kept.end(), isItsOwn);
    std::pair const place(kept == m_kept.end() ? m_nextRegistration++ : kept->first, listener.id);
    if (kept != m_kept.end()) m_kept.erase(kept);
    m_registered.insert(std::lower_bound(m_registered.begin(), m_registered.end(), place), place);
  }
  void Remove(Listener& listener) {
    auto const entry = std::find_if(m_registered.begin(), m_registered.end(),
                                    [&](auto const& place) { return place.second == listener.id; });
    EXPECT_EQ(m_subjectAddress->RemoveObserver(listener), entry != m_registered.end());
    if (entry == m_registered.end()) return;
    if (!m_frames.empty()) m_kept.push_back(*entry);
    m_registered.erase(entry);
  }

  std::mt19937 m_random;
  Token const m_listeners = std::make_shared<int>(), m_subjects = std::make_shared<int>();
  Pointer<Subject> m_subject;
  Subject* const m_subjectAddress = m_subject.get();  // good while it is held or delivers
  std::map<int, ListenerPointer> m_pool;
  std::map<int, int> m_running;
  std::vector<std::pair<int, int>> m_registered;  // in order
  std::vector<std::pair<int, int>> m_kept;        // places of who was removed meanwhile
  std::vector<Frame> m_frames;
  int m_nextId = 0;
  int m_nextRegistration = 0;
};

TEST(Observers, RandomEditsFromWithinNestedDeliveries) {
  for (unsigned seed = 1; seed <= 3000; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Model(seed).Run();
    if (HasFailure()) return;
  }
}

TEST(Observers, ComeAndGoByTheHundredThousandInAnyOrder) {
  constexpr int kCount = 100000;
  auto const subject = New<Subject>();
  std::vector<ListenerPointer> listeners;
  for (int i = 0; i != kCount; ++i) listeners.emplace_back(new Listener(i));
  for (auto const& listener : listeners) ASSERT_TRUE(subject->AddObserver(*listener));
  for (auto const& listener : listeners) ASSERT_FALSE(subject->AddObserver(*listener));
  std::shuffle(listeners.begin(), listeners.end(), std::mt19937(7));
  // A third is removed, a third dies, each of the rest is removed and comes back in between.
  for (int i = 0; i != kCount; ++i) {
    if (i % 3 == 0) {
      ASSERT_TRUE(subject->RemoveObserver(*listeners[i]));
    }
    if (i % 3 == 1) listeners[i].reset();
    if (i % 3 == 2) {
      ASSERT_TRUE(subject->RemoveObserver(*listeners[i]));
      ASSERT_TRUE(subject->AddObserver(*listeners[i]));
    }
  }
  subject->Raise();
  for (int i = 0; i != kCount; ++i) {
    if (i % 3 == 0) {
      ASSERT_FALSE(subject->RemoveObserver(*listeners[i]));
    }
    if (listeners[i]) {
      ASSERT_EQ(listeners[i]->heard, i % 3 == 2 ? 1 : 0);
    }
  }
  // All the rest go while the first that is called looks on.
  auto const onlooker = std::find_if(listeners.begin(), listeners.end(),
                                     [](auto const& i) { return i && i->heard == 1; });
  int removed = 0;
  (*onlooker)->react = [&](Listener&) {
    for (auto const& listener : listeners)
      removed += listener && subject->RemoveObserver(*listener);
  };
  subject->Raise();
  EXPECT_EQ(removed, kCount / 3);
  for (auto const& listener : listeners) {
    if (listener && listener != *onlooker) {
      ASSERT_LE(listener->heard, 1);
    }
  }
}

/// The first of three (and of twenty, by the index) takes each in turn out and in again, twice.
TEST(Observers, RemovedAndAddedAgainDuringADeliveryIsCalledOnceInItsPlace) {
  for (int count : {3, 20}) {
    for (int moved = 0; moved != count; ++moved) {
      auto const subject = New<Subject>();
      std::vector<ListenerPointer> listeners;
      std::vector<int> order, expected;
      for (int i = 0; i != count; ++i) {
        listeners.emplace_back(new Listener(i))->react = [&](Listener& called) {
          order.push_back(called.id);
          if (called.id != 1) return;
          for (int k = 0; k != 2; ++k) {
            EXPECT_TRUE(subject->RemoveObserver(*listeners[moved]));
            EXPECT_FALSE(subject->RemoveObserver(*listeners[moved]));
            EXPECT_TRUE(subject->AddObserver(*listeners[moved]));
            EXPECT_FALSE(subject->AddObserver(*listeners[moved]));
          }
        };
        subject->AddObserver(*listeners.back());
        expected.push_back(i);
      }
      subject->Raise();
      EXPECT_EQ(order, expected);
      // Between deliveries it goes to the end.
      EXPECT_TRUE(subject->RemoveObserver(*listeners[moved]));
      EXPECT_TRUE(subject->AddObserver(*listeners[moved]));
      std::rotate(expected.begin() + moved, expected.begin() + moved + 1, expected.end());
      order.clear();
      subject->Raise();
      EXPECT_EQ(order, expected);
    }
  }
}

TEST(Observers, SubjectOnTheStackMayEndDuringItsDelivery) {
  std::optional<Subject> subject(std::in_place);
  ListenerPointer const first(new Listener), second(new Listener);
  subject->AddObserver(*first);
  subject->AddObserver(*second);
  first->react = [&](Listener&) { subject.reset(); };
  subject->Raise();
  EXPECT_EQ(first->heard, 1);
  EXPECT_EQ(second->heard, 1);
}

TEST(Observers, CopiesStartWithoutObserversAndAssignmentChangesNothing) {
  auto const subject = New<Subject>();
  ListenerPointer const listener(new Listener);
  subject->AddObserver(*listener);
  auto const copy = New<Subject>(*subject);
  EXPECT_TRUE(copy->AddObserver(*listener));
  copy->AssignObservers(*subject);
  detail::NObservableImpl entries;
  EXPECT_EQ(entries.GetBegin(), entries.GetEnd());
  for (auto const& added :
       {listener, ListenerPointer(new Listener), ListenerPointer(new Listener)}) {
    entries.AddObserver(*added, subject.get());
  }
  EXPECT_EQ(std::count_if(entries.GetBegin(), entries.GetEnd(),
                          [&](auto const& entry) { return entry.listener == subject.get(); }),
            3);
  copy->Raise();
  subject->Raise();
  EXPECT_EQ(listener->heard, 2);
}

/// Nobody holds it yet: it hears nothing, isn't destroyed by being asked for, and hears once held.
TEST(Observers, ListenerWhoseCountIsZeroIsLeftAloneAndHeardFromLater) {
  auto const subject = New<Subject>();
  auto const token = std::make_shared<int>();
  auto* const listener = new Listener(0, token);
  EXPECT_FALSE(subject->RemoveObserver(*listener));
  EXPECT_TRUE(subject->AddObserver(*listener));
  subject->Raise();
  EXPECT_FALSE(subject->AddObserver(*listener));
  EXPECT_EQ(listener->heard, 0);
  ListenerPointer held(listener);
  subject->Raise();
  EXPECT_EQ(listener->heard, 1);
  held.reset();
  EXPECT_EQ(token.use_count(), 1);
  subject->Raise();
}

class Counted : public NReferenceCountableWithWeakReference {
 public:
  explicit Counted(std::function<void(Counted&)> atEnd) : m_atEnd(std::move(atEnd)) {}
  ~Counted() override { m_atEnd(*this); }

 private:
  std::function<void(Counted&)> const m_atEnd;
};

TEST(Counts, CountedPointerInTheDestructorDoesNothing) {
  int ends = 0;
  Pointer<reference_countable::NWeakReferenceImpl const> weak;
  auto object = New<Counted>([&](Counted& dying) {
    ++ends;
    Pointer<Counted> const passing(&dying);
    EXPECT_EQ(weak->GetReference(), nullptr);
    EXPECT_FALSE(dying.TryAddRef());
    EXPECT_TRUE(weak->IsExpired());
  });
  weak = object->GetWeakReference();
  EXPECT_EQ(weak, object->GetWeakReference());
  EXPECT_EQ(weak->GetReference(), object);
  object.reset();
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(weak->GetReference(), nullptr);
}

/// Counts are plain numbers until the first thread starts; what was counted before still counts.
TEST(Counts, HoldWhenThreadsStartAndShareAnObject) {
  std::atomic<int> ends = 0;
  auto object = New<Counted>([&](Counted&) { ++ends; });
  auto const weak = object->GetWeakReference();
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i != 4; ++i) {
      threads.emplace_back([held = object, weak] {
        for (int k = 0; k != 100000; ++k) {
          Pointer<Counted> const copy(held);
          if (weak->GetReference() != copy) std::abort();
        }
      });
    }
    object.reset();
  }
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(weak->GetReference(), nullptr);
}

TEST(Counts, WeakReferencesOrderByFirstUse) {
  auto const doNothing = [](Counted&) {};
  Pointer<Counted> const a(new Counted(doNothing)), b(new Counted(doNothing));
  auto const ofB = b->GetWeakReference();
  auto const ofA = a->GetWeakReference();
  reference_countable::NWeakReferenceLess const less;
  EXPECT_TRUE(less(ofB, ofA));
  EXPECT_FALSE(less(ofA, ofB));
  EXPECT_TRUE(less(nullptr, ofB));
  EXPECT_FALSE(less(nullptr, nullptr));
}

}  // namespace
}  // namespace corvanta::core::observer
