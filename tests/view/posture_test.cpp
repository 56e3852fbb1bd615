#include "tests/support/test.h"

namespace corvanta::data::posture {
namespace {

using domain::scenegraph::item::NSceneGraphGroupNode;

class Plain : public NPosture3D {
 public:
  explicit Plain(domain::scenegraph::item::NSceneGraphItemNode& object) : NPosture3D(object) {}
  Plain(Plain const&) = default;
  Plain& operator=(Plain const&) = default;
};

class Adjusting final : public Plain {
 public:
  using Plain::Plain;
  mutable VX_Math::Matrix product;

 private:
  void AdjustTransformImpl(VX_Math::Matrix const& a, VX_Math::Matrix const& b) const override {
    product = a * b;
  }
};

boost::intrusive_ptr<NSceneGraphGroupNode> MakeGroup() {
  return new NSceneGraphGroupNode(core::node::NNodeID(), nullptr, nullptr);
}

TEST(Posture, KeepsItsObjectAliveThroughCopies) {
  auto first = MakeGroup();
  auto const firstWeak = first->GetWeakReference();
  auto const second = MakeGroup();
  boost::intrusive_ptr<Plain> a(new Plain(*first));
  boost::intrusive_ptr<Plain> const b(new Plain(*second));
  EXPECT_TRUE(a->IsTopMost());
  a->SetIsTopMostFlag(false);
  *b = *a;
  boost::intrusive_ptr<Plain> c(new Plain(*b));
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
  VX_Math::Matrix a;
  a.SetTranslate(VX_Math::Vec3(1.0f, 2.0f, 3.0f));
  VX_Math::Matrix b;
  b.SetScale(2.0f);
  Plain(*object).AdjustTransform(a, b);
  EXPECT_EQ(object->GetTransform(), VX_Math::Matrix());
  Adjusting const adjusting(*object);
  adjusting.AdjustTransform(a, b);
  EXPECT_EQ(adjusting.product, a * b);
}

}  // namespace
}  // namespace corvanta::data::posture
