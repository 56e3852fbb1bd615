#include "tests/support/test.h"

namespace corvanta::data::posture {
namespace {

class Plain : public NPosture3D {
 public:
  explicit Plain(NSceneGraphItemNode& object) : NPosture3D(object) {}
  Plain(Plain const&) = default;
  Plain& operator=(Plain const&) = default;
};

class Adjusting final : public Plain {
 public:
  using Plain::Plain;
  mutable Matrix product;

 private:
  void AdjustTransformImpl(Matrix const& a, Matrix const& b) const override { product = a * b; }
};

auto MakeGroup() { return New<NSceneGraphGroupNode>(NNodeID(), nullptr, nullptr); }

TEST(Posture, KeepsItsObjectAliveThroughCopies) {
  auto first = MakeGroup();
  auto const firstWeak = first->GetWeakReference();
  auto const second = MakeGroup();
  auto a = New<Plain>(*first);
  auto const b = New<Plain>(*second);
  EXPECT_TRUE(a->IsTopMost());
  a->SetIsTopMostFlag(false);
  *b = *a;
  auto c = New<Plain>(*b);
  EXPECT_FALSE(c->IsTopMost());
  EXPECT_EQ(&c->GetObjectW(), first.get());
  first.reset();
  a.reset();
  c.reset();
  EXPECT_FALSE(firstWeak->IsExpired());
  *b = Plain(*second);
  EXPECT_TRUE(b->IsTopMost());
  EXPECT_TRUE(firstWeak->IsExpired());
}

TEST(Posture, AdjustsOnlyWhereADerivedClassDoes) {
  auto const object = MakeGroup();
  Matrix a;
  a.SetTranslate(Vec3(1.0f, 2.0f, 3.0f));
  Matrix b;
  b.SetScale(2.0f);
  Plain(*object).AdjustTransform(a, b);
  EXPECT_EQ(object->GetTransform(), Matrix());
  Adjusting const adjusting(*object);
  adjusting.AdjustTransform(a, b);
  EXPECT_EQ(adjusting.product, a * b);
}

}  // namespace
}  // namespace corvanta::data::posture
