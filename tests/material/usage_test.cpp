#include "corvanta/data/domain/material/detail/usage.h"
#include "tests/support/test.h"

namespace corvanta::data::domain::material {
namespace {

using core::domain::NDomainManager;

Pointer<NMaterialDomain> MakeDomain(NDomainManager const* manager) {
  return new NMaterialDomain(manager, nullptr, nullptr, nullptr);
}

TEST(MaterialUsage, CountsLikeAPlainTable) {
  unsigned const seed = 31;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  Pointer<NDomainManager> const managers[3] = {new NDomainManager, new NDomainManager,
                                               new NDomainManager};
  std::vector<Pointer<NMaterialDomain>> domains;
  std::vector<Pointer<NMaterialNode>> materials;
  for (auto const& manager : managers) {
    domains.push_back(MakeDomain(manager.get()));
    for (int i = 0; i != 3; ++i) materials.push_back(domains.back()->CreateNode(NNodeID()));
  }
  // By manager and material. A model may show a material of another manager.
  unsigned int counts[3][9] = {};
  for (int step = 0; step != 2000; ++step) {
    unsigned const manager = random() % 4;
    unsigned const material = random() % 9;
    if (manager < 3 && random() % 2 == 0) {
      detail::AddUse(*managers[manager], *materials[material]);
      ++counts[manager][material];
    } else {
      detail::RemoveUse(manager < 3 ? managers[manager].get() : nullptr, *materials[material]);
      for (unsigned i = 0; i != 3; ++i) {
        if ((manager == i || manager == 3) && counts[i][material] > 0) --counts[i][material];
      }
    }
    for (unsigned i = 0; i != 9; ++i) {
      ASSERT_EQ(IsUsed(*materials[i]), counts[i / 3][i] != 0) << "step " << step;
      ASSERT_EQ(detail::HasUse(*managers[step % 3], *materials[i]), counts[step % 3][i] != 0);
    }
  }
}

TEST(MaterialUsage, DiesWithItsManagerAndOutlivesItsMaterial) {
  // The second manager stands where the first one stood.
  alignas(NDomainManager) unsigned char place[sizeof(NDomainManager)];
  auto* manager = new (place) NDomainManager;
  auto domain = MakeDomain(manager);
  auto const material = domain->CreateNode(NNodeID());
  detail::MaterialReference const reference(*material);
  detail::AddUse(*manager, reference);
  EXPECT_TRUE(IsUsed(*material));
  std::destroy_at(manager);
  EXPECT_FALSE(IsUsed(*material));
  manager = new (place) NDomainManager;
  EXPECT_FALSE(detail::HasUse(*manager, reference));
  detail::RemoveUse(nullptr, reference);

  domain = MakeDomain(manager);
  auto other = domain->CreateNode(NNodeID());
  detail::MaterialReference const gone(*other);
  detail::AddUse(*manager, gone);
  domain->RemoveNode(*other);
  EXPECT_FALSE(IsUsed(*other));  // it has no manager any more
  other.reset();
  EXPECT_TRUE(detail::HasUse(*manager, gone));
  detail::RemoveUse(manager, gone);
  EXPECT_FALSE(detail::HasUse(*manager, gone));
  std::destroy_at(manager);

  auto const lone = MakeDomain(nullptr)->CreateNode(NNodeID());
  EXPECT_FALSE(IsUsed(*lone));
}

}  // namespace
}  // namespace corvanta::data::domain::material
