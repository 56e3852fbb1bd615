#include "tests/out_of_memory/failing_allocations.h"
#include "tests/support/temporary_files.h"

namespace corvanta::out_of_memory {
namespace {

TEST(InternalData, InitializeLeavesTheDomainsThatWereThere) {
  support::TemporaryFiles const files;
  core::domain::NDomainManager manager;
  Pointer<data::events::NEventMultiplexer> const events(new data::events::NEventMultiplexer);
  for (std::ptrdiff_t const domains : {0, 10}) {
    auto const first = manager.begin() == manager.end() ? nullptr : manager.begin()->second.domain;
    int const failures =
        FailEverywhere([&] { ASSERT_TRUE(data::internal::Initialize(manager, *events)); },
                       [&] {
                         ASSERT_EQ(std::distance(manager.begin(), manager.end()), domains);
                         ASSERT_TRUE(domains == 0 || manager.begin()->second.domain == first);
                         ASSERT_FALSE(data::internal::GetPlane(manager));
                       });
    EXPECT_GT(failures, 500);
    EXPECT_TRUE(data::internal::GetRod(manager));
    EXPECT_TRUE(data::internal::Uninitialize(manager));
  }
}

TEST(InternalData, ReadersFindWithoutEntering) {
  core::domain::NDomainManager const manager;
  EXPECT_FALSE(data::internal::GetCube(manager));  // makes the registry, if nothing has yet
  std::size_t const before = CountAllocations();
  EXPECT_FALSE(data::internal::GetPlane(manager));
  EXPECT_EQ(data::internal::GetPostureSceneRoot(manager), nullptr);
  EXPECT_EQ(CountAllocations(), before);
}

}  // namespace
}  // namespace corvanta::out_of_memory
