#include "tests/node_kinds/node_kind.h"

namespace corvanta::node_kinds {
namespace {

// clang-format off
NodeKind Animation() {
  using N = data::domain::animation::NAnimationNode;
  return MakeKind<data::domain::animation::NAnimationDomain, N>({"NAnimationNode", data::domain::DT_ANIMATION, L"animation", L"animation", L"animation", true, {
      Both(L"fps", 30.0, &N::GetFps, &N::SetFps),
      Both(L"frame.start", 0, &N::GetStartFrame, &N::SetStartFrame),
      Both(L"frame.end", 120, &N::GetEndFrame, &N::SetEndFrame),
      Both(L"category", 0, &N::GetCategory, &N::SetCategory)}});
}
// clang-format on

INSTANTIATE_TEST_SUITE_P(Animation, NodeKindTest, testing::Values(Animation()), NameOfKind);

TEST(TimeLineAttributes, AreListed) {
  using T = data::timeline::NTimeLine;
  NNodeReference<data::domain::animation::NAnimationNode> const none;
  Pointer<T> const timeline(new T(none));
  ExpectDefaults(*timeline, {Both(L"repeats", false, &T::Repeats, &T::SetRepeatsFlag),
                             Both(L"currentFrame", 0.0, &T::GetCurrentFrame, &T::SetCurrentFrame)});
}

}  // namespace
}  // namespace corvanta::node_kinds
