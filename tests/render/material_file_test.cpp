#include "tests/render/file_world.h"

namespace corvanta::render_tests {
namespace {

using testing::IsEmpty;

json Texture(int index = 0) { return {{"index", index}}; }

json Unlit(json const& pbr, json const& more = json::object()) {
  json material = {{"pbrMetallicRoughness", pbr},
                   {"extensions", {{"KHR_materials_unlit", json::object()}}}};
  material.update(more);
  return material;
}

/// What the formats say of a material is seen; the wall emits what it is unless it says otherwise.
class MaterialFileTest : public FileWorld {};

TEST_F(MaterialFileTest, AlphaIsIgnoredCutOffOrBlended) {
  SetColor(*m_environment, L"color", 0, 0, 1);
  // Opacities of 0.376 and 0.753.
  std::string const picture = MakePng(2, 1, {{0, 255, 0, 96}, {0, 255, 0, 192}});
  struct Row {
    char const* name;
    json material;
    double alpha;        // the factor
    double left, right;  // what is seen of the wall
  };
  for (Row const& row : std::vector<Row>{
           {"opaque", json::object(), 0.3, 1, 1},
           {"cut at a half", {{"alphaMode", "MASK"}}, 1, 0, 1},
           {"cut at a quarter", {{"alphaMode", "MASK"}, {"alphaCutoff", 0.25}}, 1, 1, 1},
           {"the factor counts", {{"alphaMode", "MASK"}, {"alphaCutoff", 0.25}}, 0.5, 0, 1},
           {"cut at nothing", {{"alphaMode", "MASK"}, {"alphaCutoff", 0}}, 1, 1, 1},
           {"blended", {{"alphaMode", "BLEND"}}, 1, 0.376, 0.753},
           {"blended, with a factor", {{"alphaMode", "BLEND"}}, 0.5, 0.188, 0.376}}) {
    for (bool const isUnlit : {true, false}) {
      json const pbr = {{"baseColorTexture", Texture()},
                        {"baseColorFactor", {1, 1, 1, row.alpha}},
                        {"metallicFactor", 0},
                        {"roughnessFactor", 0}};
      json material = {{"pbrMetallicRoughness", pbr}};
      if (isUnlit) material = Unlit(pbr);
      material.update(row.material);
      ShowGltf(material, {picture});
      EXPECT_THAT(m_model.notes, IsEmpty());
      auto const drawn = DrawPicture();
      for (auto const& [x, seen] : {std::pair(-2.0f, row.left), std::pair(2.0f, row.right)}) {
        Color const color = At(drawn, x, 1.0f);
        EXPECT_NEAR(color[1], Encode(seen), 8) << row.name << ' ' << isUnlit << ' ' << x;
        EXPECT_NEAR(color[2], Encode(1 - seen), 12) << row.name << ' ' << isUnlit << ' ' << x;
      }
    }
  }
  // A picture without opacities has none that could be cut off.
  ShowGltf(Unlit({{"baseColorTexture", Texture()}}, {{"alphaMode", "MASK"}}),
           {MakePng(1, 1, {{0, 0, 0, 255}})});
  EXPECT_EQ(GetMiddle(), (Color{0, 0, 0}));
}

TEST_F(MaterialFileTest, FacesAreSeenFromBehindOnlyWhereTheFileSaysSo) {
  Primitive turned;
  turned.indices = {0, 2, 1, 0, 3, 2};
  for (bool const isDouble : {false, true}) {
    ShowGltf(Unlit({{"baseColorFactor", {0, 1, 0, 1}}}, {{"doubleSided", isDouble}}), {}, turned);
    EXPECT_EQ(GetMiddle(), (Color{0, isDouble ? 255 : 0, 0}));
    ShowGltf(Unlit({{"baseColorFactor", {0, 1, 0, 1}}}, {{"doubleSided", isDouble}}));
    EXPECT_EQ(GetMiddle(), (Color{0, 255, 0}));
  }
  // Other formats don't say.
  Show("wall.obj", "v -4 -4 0\nv 4 -4 0\nv 4 4 0\nf 1 3 2\n");
  EXPECT_GT(At(DrawPicture(), 1, -1)[1], 100);
}

// Texture coordinates from -1 to 2 in both directions over a red and a green half.
TEST_F(MaterialFileTest, PicturesRepeatAreMirroredOrClamped) {
  Primitive wide;
  for (float& coordinate : wide.uvs) coordinate = 3 * coordinate - 1;
  Color const red{255, 0, 0}, green{0, 255, 0};
  struct Row {
    int mode;
    std::array<Color, 4> seen;  // at -0.75, -0.25, 1.25 and 1.75
  };
  for (Row const& row : {Row{10497, {red, green, red, green}}, Row{33648, {green, red, green, red}},
                         Row{33071, {red, red, green, green}}}) {
    for (bool const isAlongV : {false, true}) {
      std::string const halves =
          MakePng(isAlongV ? 1 : 2, isAlongV ? 2 : 1, {{255, 0, 0, 255}, {0, 255, 0, 255}});
      ShowGltf(Unlit({{"baseColorTexture", Texture()}}), {halves}, wide,
               {{isAlongV ? "wrapT" : "wrapS", row.mode}, {"magFilter", 9728}});
      auto const drawn = DrawPicture();
      float const places[] = {-10.0f / 3, -2, 2, 10.0f / 3};
      for (std::size_t i = 0; i != 4; ++i) {
        ExpectColor(isAlongV ? At(drawn, 0, -places[i]) : At(drawn, places[i], 0), row.seen[i]);
      }
    }
  }
}

TEST_F(MaterialFileTest, AnObjFileClamps) {
  m_files.Write("halves.png", MakePng(2, 1, {{255, 0, 0, 255}, {0, 255, 0, 255}}));
  SetColor(*m_environment, L"ambientLight", 1, 1, 1);
  for (bool const isClamped : {false, true}) {
    m_files.Write("wall.mtl", std::string("newmtl m\nKd 1 1 1\nKa 1 1 1\nmap_Kd ") +
                                  (isClamped ? "-clamp on " : "") + "halves.png\n");
    Show("wall.obj",
         "mtllib wall.mtl\nv -4 -4 0\nv 4 -4 0\nv 4 4 0\nv -4 4 0\nvt -1 0\nvt 2 0\nvt 2 1\n"
         "vt -1 1\nusemtl m\nf 1/1 2/2 3/3 4/4\n");
    Color const seen = At(DrawPicture(), 2, 0);
    EXPECT_EQ(seen[0] > seen[1], !isClamped) << seen[0] << ' ' << seen[1];
  }
}

// Four colours, seen after scale, rotation and offset.
TEST_F(MaterialFileTest, TextureTransformsAreSeen) {
  std::array<Color, 4> const colors{Color{255, 0, 0}, Color{0, 255, 0}, Color{0, 0, 255},
                                    Color{255, 255, 255}};
  std::vector<Texel> texels;
  for (Color const& color : colors) {
    texels.push_back({static_cast<unsigned char>(color[0]), static_cast<unsigned char>(color[1]),
                      static_cast<unsigned char>(color[2]), 255});
  }
  struct Row {
    double offsetU, offsetV, rotation, scaleU, scaleV;
  };
  for (Row const& row : {Row{0.25, 0.5, 0, 1, 1}, Row{0, 0, 0.7, 1, 1}, Row{0, 0, 0, 1.5, 0.5},
                         Row{0.1, -0.2, 0.7, 1.5, 0.5}, Row{-0.3, 0.1, -2, 0.5, 2}}) {
    json moved = Texture();
    moved["extensions"]["KHR_texture_transform"] = {{"offset", {row.offsetU, row.offsetV}},
                                                    {"rotation", row.rotation},
                                                    {"scale", {row.scaleU, row.scaleV}}};
    ShowGltf(Unlit({{"baseColorTexture", moved}}), {MakePng(2, 2, texels)}, {},
             {{"magFilter", 9728}});
    auto const drawn = DrawPicture();
    int judged = 0;
    for (double x = -3.5; x <= 3.5; x += 0.5) {
      for (double y = -3.5; y <= 3.5; y += 0.5) {
        // v grows downwards, and the rotation is counter-clockwise as seen.
        double const u = (x + 4) / 8 * row.scaleU, v = (4 - y) / 8 * row.scaleV;
        double const c = std::cos(row.rotation), s = std::sin(row.rotation);
        double const places[] = {2 * (c * u + s * v + row.offsetU),
                                 2 * (c * v - s * u + row.offsetV)};
        auto const isNearBorder = [](double at) { return std::abs(at - std::round(at)) < 0.12; };
        if (isNearBorder(places[0]) || isNearBorder(places[1])) continue;
        auto const number = [](double at) { return static_cast<long>(std::floor(at)) & 1; };
        auto const texel = static_cast<std::size_t>(2 * number(places[1]) + number(places[0]));
        ExpectColor(At(drawn, static_cast<float>(x), static_cast<float>(y)), colors[texel], 4);
        ++judged;
      }
    }
    EXPECT_GT(judged, 60);
  }
}

TEST_F(MaterialFileTest, PicturesOfOtherMachinesAreFoundByName) {
  std::filesystem::create_directory(m_files.GetFolder() / "textures");
  m_files.Write("green.png", MakePng(1, 1, {{0, 255, 0, 255}}));
  m_files.Write("textures/Sky Blue.PNG", MakePng(1, 1, {{0, 0, 255, 255}}));
  SetColor(*m_environment, L"ambientLight", 1, 1, 1);
  m_lamp->SetEnabled(false);
  for (auto const& [path, color] : {std::pair("C:\\Users\\me\\green.png", Color{0, 255, 0}),
                                    std::pair("/home/me/maps/green.png", Color{0, 255, 0}),
                                    std::pair("D:\\sky blue.png", Color{0, 0, 255})}) {
    m_files.Write("wall.mtl", std::string("newmtl m\nKd 1 1 1\nKa 1 1 1\nmap_Kd ") + path + "\n");
    Show("wall.obj",
         "mtllib wall.mtl\nv -4 -4 0\nv 4 -4 0\nv 4 4 0\nv -4 4 0\nvt 0 0\nvt 1 0\nvt 1 1\n"
         "vt 0 1\nusemtl m\nf 1/1 2/2 3/3 4/4\n");
    EXPECT_THAT(m_model.notes, IsEmpty());
    ExpectColor(GetMiddle(), color, 2);
  }
}

TEST_F(MaterialFileTest, PicturesLongerThanTheDriverTakesAreShrunk) {
  std::vector<Texel> texels(20000 * 16, Texel{255, 0, 0, 255});
  for (std::size_t i = 0; i != texels.size(); ++i) {
    if (i % 20000 >= 10000) texels[i] = {0, 255, 0, 255};
  }
  ShowGltf(Unlit({{"baseColorTexture", Texture()}}), {MakePng(20000, 16, texels)});
  auto const drawn = DrawPicture();
  ExpectColor(At(drawn, -2, 0), {255, 0, 0}, 2);
  ExpectColor(At(drawn, 2, 0), {0, 255, 0}, 2);
}

// A square that faces the lamp, z being up, among a few faces with good normals.
TEST_F(MaterialFileTest, FacesAreLitByTheirWindingWhereNormalsAreWrong) {
  auto const makeStl = [](std::string const& normal) {
    std::string text = "solid s\n";
    auto const add = [&text](std::string const& n, char const* corners) {
      text += "facet normal " + n + "\nouter loop\n" + corners + "endloop\nendfacet\n";
    };
    add(normal, "vertex -4 0 -4\nvertex 4 0 -4\nvertex 4 0 4\n");
    add(normal, "vertex -4 0 -4\nvertex 4 0 4\nvertex -4 0 4\n");
    for (int i = 0; i != 3; ++i) {
      add("0 -1 0", "vertex 40 90 0\nvertex 41 90 0\nvertex 40 90 1\n");
    }
    return text + "endsolid s\n";
  };
  Show("good.stl", makeStl("0 -1 0"));
  Color const good = At(DrawPicture(), 1, -1);
  EXPECT_GT(good[0], 150);
  for (char const* const normal :
       {"1 0 0", "0 1 0", "0 0 1", "0 0 0", "0 -7 0", "0 -0.001 0", "nan 0 1"}) {
    Show("bad.stl", makeStl(normal));
    EXPECT_EQ(At(DrawPicture(), 1, -1), good) << normal;
  }
}

TEST_F(MaterialFileTest, PixelsAreSquaresWhereTheFileSaysSo) {
  std::string const halves = MakePng(2, 1, {{0, 0, 0, 255}, {255, 255, 255, 255}});
  for (bool const isNearest : {false, true}) {
    ShowGltf(Unlit({{"baseColorTexture", Texture()}}), {halves}, {},
             {{"magFilter", isNearest ? 9728 : 9729}});
    int const seen = At(DrawPicture(), 0.5f, 0)[0];
    EXPECT_EQ(seen > 250, isNearest) << seen;
  }
}

/// The exponent of a highlight of that roughness.
double GetPower(double roughness) { return 2 / std::pow(roughness, 4) - 2; }

// The lamp shines along the wall's normal. At x = 2 the camera is 9.46 degrees off it.
TEST_F(MaterialFileTest, TexturesSayWhatIsMetalAndHowRoughItIs) {
  double const halfway = std::cos(std::atan(2.0 / 12) / 2);
  struct Row {
    Texel left, right;
    double metalness, roughness;  // the factors
    std::array<double, 2> metalnesses, roughnesses;
  };
  for (Row const& row : {Row{{0, 255, 0, 255}, {0, 255, 255, 255}, 1, 1, {0, 1}, {1, 1}},
                         Row{{0, 255, 255, 255}, {0, 255, 51, 255}, 0.5, 1, {0.5, 0.1}, {1, 1}},
                         Row{{0, 128, 255, 255}, {0, 64, 255, 255}, 1, 1, {1, 1}, {0.502, 0.251}},
                         Row{{0, 255, 255, 255}, {0, 128, 0, 255}, 1, 0.5, {1, 0}, {0.5, 0.251}}}) {
    ShowGltf({{"pbrMetallicRoughness",
               {{"baseColorFactor", {1, 0.25, 0, 1}},
                {"metallicFactor", row.metalness},
                {"roughnessFactor", row.roughness},
                {"metallicRoughnessTexture", Texture()}}}},
             {MakePng(2, 1, {row.left, row.right})});
    EXPECT_THAT(m_model.notes, IsEmpty());
    auto const drawn = DrawPicture();
    for (std::size_t side = 0; side != 2; ++side) {
      double const m = row.metalnesses[side], r = row.roughnesses[side];
      double const scattered = 1 - 0.5 * r * r / (r * r + 0.33);
      double const shine = std::pow(halfway, GetPower(r));
      Color expected;
      double const base[] = {1, 0.25, 0};
      for (std::size_t c = 0; c != 3; ++c) {
        double const reflected = 0.04 + (base[c] - 0.04) * m;
        expected[c] = Encode(base[c] * (1 - m) * scattered + reflected * shine);
      }
      ExpectColor(At(drawn, side == 0 ? -2.0f : 2.0f, 0), expected, 8);
    }
  }
}

TEST_F(MaterialFileTest, ATextureBesideTheOthersHasItsOwnCoordinates) {
  // Metal on the right of the picture, which is moved by half of it.
  json moved = Texture();
  moved["extensions"] = {{"KHR_texture_transform", {{"offset", {0.5, 0}}}}};
  for (bool const isMoved : {false, true}) {
    ShowGltf({{"pbrMetallicRoughness",
               {{"baseColorTexture", Texture(1)},
                {"metallicRoughnessTexture", isMoved ? moved : Texture()}}}},
             {MakePng(2, 1, {{0, 255, 0, 255}, {0, 255, 255, 255}}),
              MakePng(2, 1, {{255, 0, 0, 255}, {0, 255, 0, 255}})});
    auto const drawn = DrawPicture();
    // Of a metal the blue is that of its base, of what isn't one 0.04.
    EXPECT_NEAR(At(drawn, -2, 0)[2], isMoved ? 0 : Encode(0.04), 5);
    EXPECT_NEAR(At(drawn, 2, 0)[2], isMoved ? Encode(0.04) : 0, 5);
    EXPECT_GT(At(drawn, -2, 0)[0], 200);
    EXPECT_GT(At(drawn, 2, 0)[1], 200);
  }
}

TEST_F(MaterialFileTest, OcclusionDarkensWhatComesFromAllSides) {
  m_lamp->SetEnabled(false);
  SetColor(*m_environment, L"ambientLight", 0.5, 0.5, 0.5);
  ShowGltf(
      {{"pbrMetallicRoughness", {{"baseColorFactor", {0.5, 0.5, 0.5, 1}}, {"metallicFactor", 0}}},
       {"occlusionTexture", {{"index", 0}, {"strength", 0.5}}}},
      {MakePng(2, 1, {{0, 255, 255, 255}, {255, 0, 0, 255}})});
  auto const drawn = DrawPicture();
  EXPECT_NEAR(At(drawn, -2, 0)[0], Encode(0.5 * 0.54 * 0.5), 4);
  EXPECT_NEAR(At(drawn, 2, 0)[0], Encode(0.5 * 0.54), 4);
  m_lamp->SetEnabled(true);
  EXPECT_GT(At(DrawPicture(), -2, 0)[0], Encode(0.5 * 0.54 * 0.5 + 0.25));
}

// A mirror has the colour of what it is made of, in a white room and in an empty one.
TEST_F(MaterialFileTest, MetalsLookLikeMetal) {
  std::string const white = MakePng(2, 1, {{255, 255, 255, 255}, {255, 255, 255, 255}});
  m_files.Write("white.png", white);
  auto const image = m_document.GetImages().CreateNode(NNodeID());
  image->SetImageLocator(core::locator::NLocator(
      core::uri::NUri::CreateFileUri((m_files.GetFolder() / "white.png").wstring())));
  json const gold = {1, 0.5, 0.25, 1};
  Color const expected{255, Encode(0.5), Encode(0.25)};
  auto const pbr = [](json const& more) {
    json all = {{"roughnessFactor", 0.1}};
    all.update(more);
    return json{{"pbrMetallicRoughness", all}};
  };
  std::vector<std::string> const pictures{MakePng(1, 1, {{255, 188, 137, 255}}),
                                          MakePng(1, 1, {{0, 255, 255, 255}})};
  for (json const& material :
       {pbr({{"baseColorFactor", gold}}), pbr({{"baseColorTexture", Texture()}}),
        pbr({{"baseColorFactor", gold}, {"metallicRoughnessTexture", Texture(1)}}),
        pbr({{"baseColorTexture", Texture()}, {"metallicRoughnessTexture", Texture(1)}})}) {
    ShowGltf(material, pictures);
    // The lamp's reflection.
    ExpectColor(GetMiddle(), expected, 6);
    m_lamp->SetEnabled(false);
    m_environment->GetEnvironmentMap().SetImage(image);
    m_environment->GetEnvironmentMap().SetImageType(data::environment_map::NEMIT_RECTANGULAR);
    ExpectColor(GetMiddle(), expected, 6);
    m_environment->GetEnvironmentMap().SetImage({});
    SetColor(*m_environment, L"ambientLight", 0.5, 0.5, 0.5);
    ExpectColor(GetMiddle(), {Encode(0.5), Encode(0.25), Encode(0.125)}, 8);
    SetColor(*m_environment, L"ambientLight", 0, 0, 0);
    m_lamp->SetEnabled(true);
  }
}

// Over a triangle they run evenly in light; what they multiply is the material's.
TEST_F(MaterialFileTest, VertexColoursAreSeen) {
  Primitive colored;
  colored.uvs.clear();
  colored.colors = {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 0.5f, 1, 1, 1, 1};
  struct Row {
    float x, y;
    std::array<double, 3> light;
    double opacity;
  };
  std::array<Row, 2> const rows{Row{1, -2, {0.375, 0.375, 0.25}, 0.875},
                                Row{-2, 1, {0.75, 0.375, 0.625}, 0.875}};
  auto const expect = [&](char const* name, double factor, bool isBlended) {
    auto const drawn = DrawPicture();
    for (Row const& row : rows) {
      double const share = factor * (isBlended ? row.opacity : 1);
      Color expected;
      for (std::size_t c = 0; c != 3; ++c) expected[c] = Encode(row.light[c] * share);
      SCOPED_TRACE(name);
      ExpectColor(At(drawn, row.x, row.y), expected, 5);
    }
  };
  json const half = {0.5, 0.5, 0.5, 1};
  ShowGltf(Unlit({{"baseColorFactor", half}}), {}, colored);
  EXPECT_THAT(m_model.notes, IsEmpty());
  expect("unlit", 0.5, false);
  ShowGltf(Unlit(json::object(), {{"alphaMode", "BLEND"}}), {}, colored);
  expect("blended", 1, true);
  ShowGltf({{"pbrMetallicRoughness", {{"roughnessFactor", 0}, {"metallicFactor", 0}}}}, {},
           colored);
  expect("matt", 1, false);
  // A metal throws them back from a lamp behind the camera.
  ShowGltf({{"pbrMetallicRoughness", {{"roughnessFactor", 1}}}}, {}, colored);
  expect("metal", 1, false);

  Primitive both = colored;
  both.uvs = Primitive().uvs;
  ShowGltf(Unlit({{"baseColorTexture", Texture()}}), {MakePng(1, 1, {{0, 255, 0, 255}})}, both);
  EXPECT_THAT(m_model.notes, testing::ElementsAre(testing::HasSubstr("vertex colours beside")));
  EXPECT_EQ(GetMiddle(), (Color{0, 255, 0}));
}

TEST_F(MaterialFileTest, VertexColoursOfOtherFormatsAreAsTheyAreShown) {
  std::string const head =
      "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\n"
      "property float z\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n"
      "element face 1\nproperty list uchar int vertex_indices\nend_header\n";
  std::string const color = " 200 100 0\n";
  SetColor(*m_environment, L"ambientLight", 0, 0, 0);
  Show("wall.ply", head + "-4 -4 0" + color + "4 -4 0" + color + "4 4 0" + color + "-4 4 0" +
                       color + "4 0 1 2 3\n");
  auto const& material = *m_document.GetMaterials().GetTypedNodeBegin();
  SetColor(const_cast<data::domain::material::NMaterialNode&>(material), L"specular", 0, 0, 0);
  ExpectColor(GetMiddle(), {200, 100, 0}, 3);
}

}  // namespace
}  // namespace corvanta::render_tests
