#include "tests/support/test.h"

namespace corvanta::data::domain::geometry {
namespace {

using testing::SizeIs;
using VX_Tess::NurbsBasis;
using VX_Tess::NurbsCurve2d;
using VX_Tess::NurbsSurface;

NurbsBasis const kLine{2, {0, 0, 1, 1}};

TEST(Nurbs, RefusesWhatIsInconsistent) {
  struct Row {
    char const* name;
    NurbsBasis u;            // beside a line along v
    std::size_t pointCount;  // for a curve half as many
    std::vector<double> weights = {};
    bool isTaken = false;
  };
  Row const rows[] = {
      {"line", kLine, 4, {}, true},
      {"weighted", kLine, 4, {1, 0.5, 2, 1e-300}, true},
      {"unclamped", {3, {-3, -1, 0, 2, 5, 9, 9.5}}, 8, {}, true},
      {"inner knot as often as the order", {2, {0, 0, 1, 1, 2, 2}}, 8, {}, true},
      {"inner knot too often", {2, {0, 0, 1, 1, 1, 2, 2}}, 10},
      {"order 1", {1, {0, 1, 2}}, 4},
      {"fewer control points than the order", {3, {0, 0, 1, 1, 1}}, 4},
      {"an order beyond all knots", {0xFFFFFFFF, {0, 0, 1, 1}}, 4},
      {"descending", {2, {0, 0, 1, 0.5}}, 4},
      {"knot not a number", {2, {0, 0, kNaN, 1}}, 4},
      {"endless knot", {2, {0, 0, 1, kInfinity}}, 4},
      {"too few control points", kLine, 2},
      {"too many control points", kLine, 6},
      {"too few weights", kLine, 4, {1, 1, 1}},
      {"zero weight", kLine, 4, {1, 0, 1, 1}},
      {"weight not a number", kLine, 4, {1, kNaN, 1, 1}},
  };
  for (Row const& row : rows) {
    SCOPED_TRACE(row.name);
    Pointer<NurbsSurface> const surface(new NurbsSurface);
    std::vector<Vec3> const old(4, Vec3(1, 2, 3));
    std::vector<Vec3> const points(row.pointCount, Vec3(4, 5, 6));
    ASSERT_TRUE(surface->SetGeometry(kLine, kLine, old, {1, 2, 3, 4}));
    EXPECT_EQ(surface->SetGeometry(kLine, row.u, points, row.weights), row.isTaken);
    EXPECT_EQ(surface->SetGeometry(row.u, kLine, points, row.weights), row.isTaken);
    EXPECT_EQ(surface->GetBasisU(), row.isTaken ? row.u : kLine);
    EXPECT_EQ(surface->GetControlPoints(), row.isTaken ? points : old);
    EXPECT_EQ(surface->GetWeights(), row.isTaken ? row.weights : (std::vector<double>{1, 2, 3, 4}));

    Pointer<NurbsCurve2d> const curve(new NurbsCurve2d);
    std::vector<double> weights = row.weights;
    if (weights.size() == 4) weights.resize(2);
    ASSERT_TRUE(curve->SetGeometry(kLine, std::vector<Vec2>(2), {1, 2}));
    EXPECT_EQ(curve->SetGeometry(row.u, std::vector<Vec2>(row.pointCount / 2), weights),
              row.isTaken);
    EXPECT_EQ(curve->GetBasis(), row.isTaken ? row.u : kLine);
    EXPECT_EQ(curve->GetWeights(), row.isTaken ? weights : (std::vector<double>{1, 2}));
  }
}

TEST(Nurbs, KeepsTrimCurvesByLoop) {
  Pointer<NNurbsSurface> const surface(new NNurbsSurface);
  EXPECT_EQ(surface->GetNurbsSaveType(), NNST_DEFAULT);
  Pointer<NurbsCurve2d> const a(new NurbsCurve2d);
  Pointer<NurbsCurve2d> const b(new NurbsCurve2d);
  EXPECT_FALSE(surface->AddTrimCurve(0, *a));
  EXPECT_THAT(surface->GetTrimLoops(), IsEmpty());
  EXPECT_EQ(surface->AddTrimLoop(), 0u);
  EXPECT_EQ(surface->AddTrimLoop(), 1u);
  EXPECT_THAT(surface->GetTessNurbsSurface().GetTrimCurves(), IsEmpty());
  EXPECT_FALSE(surface->AddTrimCurve(2, *a));
  EXPECT_FALSE(surface->AddTrimCurve(0xFFFFFFFF, *a));
  EXPECT_TRUE(surface->AddTrimCurve(1, *a));
  EXPECT_TRUE(surface->AddTrimCurve(1, *b));
  EXPECT_TRUE(surface->AddTrimCurve(0, *b));
  EXPECT_THAT(surface->GetTrimLoops(), ElementsAre(ElementsAre(b), ElementsAre(a, b)));
  NurbsSurface& tess = surface->GetTessNurbsSurface();
  EXPECT_THAT(tess.GetTrimCurves(),
              ElementsAre(testing::Pair(0u, ElementsAre(b)), testing::Pair(1u, ElementsAre(a, b))));
  EXPECT_EQ(tess.AppendTrimCurve(0, nullptr), 0);
  EXPECT_NE(tess.AppendTrimCurve(0xFFFFFFFF, a.get()), 0);
  EXPECT_THAT(tess.GetTrimCurves(), SizeIs(3));
  tess.ClearGeometry();
  EXPECT_THAT(tess.GetTrimCurves(), IsEmpty());
  EXPECT_THAT(surface->GetTrimLoops(), SizeIs(2));
}

TEST(Nurbs, ClonesShareNothingButTheCurvesOfTheLoops) {
  Pointer<NNurbsSurface> surface(new NNurbsSurface);
  Pointer<NurbsCurve2d> const curve(new NurbsCurve2d);
  std::vector<Vec3> const points(4, Vec3(1, 2, 3));
  curve->SetGeometry(kLine, {Vec2(0, 0), Vec2(1, 1)});
  surface->GetTessNurbsSurface().SetGeometry(kLine, kLine, points, {1, 2, 3, 4});
  surface->SetNurbsSaveType(NNurbsSaveType{2});
  surface->Assign({1, 2, 3}, {0, 0, 1}, {0, 0, 0}, {});
  surface->AddTrimLoop();
  surface->AddTrimCurve(0, *curve);

  auto const clone = boost::dynamic_pointer_cast<NNurbsSurface>(surface->CloneSurface());
  ASSERT_TRUE(clone);
  Pointer<NurbsSurface> const shallow(surface->GetTessNurbsSurface().Clone(false));
  EXPECT_EQ(shallow->GetTrimCurves().at(0)[0], curve);
  surface->AddTrimLoop();
  surface->AddTrimCurve(0, *new NurbsCurve2d);
  surface->GetTessNurbsSurface().ClearGeometry();
  EXPECT_FALSE(surface->GetTessNurbsSurface().GetBasisU().IsValid() ||
               surface->GetTessNurbsSurface().GetBasisV().IsValid());
  curve->ClearGeometry();
  surface.reset();

  EXPECT_EQ(clone->GetNurbsSaveType(), 2);
  EXPECT_EQ(clone->GetCoords().size(), 1u);
  EXPECT_THAT(clone->GetTrimLoops(), ElementsAre(ElementsAre(curve)));
  NurbsSurface const& tess = clone->GetTessNurbsSurface();
  EXPECT_EQ(tess.GetControlPoints(), points);
  EXPECT_THAT(tess.GetWeights(), ElementsAre(1, 2, 3, 4));
  ASSERT_THAT(tess.GetTrimCurves(), ElementsAre(testing::Pair(0u, SizeIs(1))));
  EXPECT_EQ(tess.GetTrimCurves().at(0)[0]->GetBasis(), kLine);
  EXPECT_TRUE(clone->AddTrimCurve(0, *curve));
}

}  // namespace
}  // namespace corvanta::data::domain::geometry
