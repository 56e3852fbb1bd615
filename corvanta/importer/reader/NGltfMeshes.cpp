#include "corvanta/importer/reader/NGltfMeshes.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "corvanta/core/text/message.h"
#include "corvanta/importer/NImportError.h"

namespace corvanta::importer::reader {

using neutral::NTexel;
using neutral::NTriangle;
using neutral::NTriple;

namespace {

std::uint8_t ToByte(float part) {
  return static_cast<std::uint8_t>(255.0f * (part > 0.0f ? std::min(part, 1.0f) : 0.0f) + 0.5f);
}

// The display value of a part of linear light: IEC 61966-2-1.
std::uint8_t EncodeLight(float part) {
  constexpr std::size_t kLast = 16383;
  static std::vector<std::uint8_t> const table = [] {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i <= kLast; ++i) {
      double const value = static_cast<double>(i) / static_cast<double>(kLast);
      double const shown =
          value <= 0.0031308 ? 12.92 * value : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
      bytes.push_back(static_cast<std::uint8_t>(std::lround(255.0 * shown)));
    }
    return bytes;
  }();
  float const inside = part > 0.0f ? std::min(part, 1.0f) : 0.0f;
  return table[static_cast<std::size_t>(inside * static_cast<float>(kLast) + 0.5f)];
}

}  // namespace

// What a primitive draws.
struct NGltfMeshes::Source {
  struct Uvs {
    NGltfNumbers numbers;
    NTextureTransform transform;
  };

  static constexpr int kNoMode = -1;  // nothing can be drawn

  int mode = TINYGLTF_MODE_TRIANGLES;
  NGltfNumbers positions;
  std::optional<NGltfNumbers> normals;
  std::optional<NGltfNumbers> colors;
  std::vector<Uvs> uvs;
  std::optional<NGltfIndices> indices;
  std::size_t triangleCount = 0;
  // Of one that is reduced: the accessors' numbers of the vertices that it uses, and its triangles
  // by their places there.
  bool isReduced = false;
  std::vector<std::uint32_t> vertices;
  std::vector<NTriangle> triangles;

  std::size_t GetVertexCount() const { return isReduced ? vertices.size() : positions.GetCount(); }
  std::size_t GetVertex(std::size_t i) const { return isReduced ? vertices[i] : i; }
  static NTriangle MakeLine(std::uint32_t from, std::uint32_t to) { return {from, to, to}; }
  std::uint32_t GetIndex(std::size_t i) const {
    return indices ? indices->Get(i) : static_cast<std::uint32_t>(i);
  }

  NTexel GetColor(std::size_t vertex) const {
    NTexel color{255, 255, 255, 255};
    for (std::size_t k = 0; k != std::min<std::size_t>(colors->GetWidth(), 4); ++k) {
      float const part = colors->Get(vertex, k);
      color[k] = k != 3 ? EncodeLight(part) : ToByte(part);
    }
    return color;
  }
  bool HasColors() const {
    constexpr NTexel kWhite{255, 255, 255, 255};
    for (std::size_t i = 0; i != GetVertexCount(); ++i) {
      if (GetColor(GetVertex(i)) != kWhite) return true;
    }
    return false;
  }

  template <class Use>
  void ForEachTriangle(Use const& use) const {
    std::size_t const count = indices ? indices->GetCount() : positions.GetCount();
    if (mode == TINYGLTF_MODE_POINTS) {
      for (std::size_t i = 0; i != count; ++i)
        use(NTriangle{GetIndex(i), GetIndex(i), GetIndex(i)});
    } else if (mode == TINYGLTF_MODE_LINE) {
      for (std::size_t i = 0; i + 1 < count; i += 2) use(MakeLine(GetIndex(i), GetIndex(i + 1)));
    } else if (mode == TINYGLTF_MODE_LINE_STRIP || mode == TINYGLTF_MODE_LINE_LOOP) {
      for (std::size_t i = 0; i + 1 < count; ++i) use(MakeLine(GetIndex(i), GetIndex(i + 1)));
      if (mode == TINYGLTF_MODE_LINE_LOOP && count > 2) {
        use(MakeLine(GetIndex(count - 1), GetIndex(0)));
      }
    } else if (mode == TINYGLTF_MODE_TRIANGLES) {
      for (std::size_t i = 0; i + 2 < count; i += 3) {
        use(NTriangle{GetIndex(i), GetIndex(i + 1), GetIndex(i + 2)});
      }
    } else if (mode == TINYGLTF_MODE_TRIANGLE_STRIP) {
      for (std::size_t i = 0; i + 2 < count; ++i) {
        std::size_t const odd = i % 2;
        use(NTriangle{GetIndex(i), GetIndex(i + 1 + odd), GetIndex(i + 2 - odd)});
      }
    } else if (mode == TINYGLTF_MODE_TRIANGLE_FAN) {
      for (std::size_t i = 0; i + 2 < count; ++i) {
        use(NTriangle{GetIndex(i + 1), GetIndex(i + 2), GetIndex(0)});
      }
    }
  }
};

namespace {

bool IsMode(int mode) { return mode >= TINYGLTF_MODE_POINTS && mode <= TINYGLTF_MODE_TRIANGLE_FAN; }

int FindAttribute(tinygltf::Primitive const& primitive, std::string const& name) {
  auto const found = primitive.attributes.find(name);
  return found == primitive.attributes.end() ? -1 : found->second;
}

}  // namespace

std::vector<std::uint32_t> const& NGltfMeshes::GetPrimitives(std::size_t number) {
  auto const [entry, isNew] = m_primitives.try_emplace(number);
  if (!isNew) return entry->second;
  tinygltf::Mesh const& mesh = m_model.meshes[number];
  std::string const name = GetName(mesh.name, "meshes", number);
  for (std::size_t i = 0; i != mesh.primitives.size(); ++i) {
    std::string const own = mesh.primitives.size() == 1 ? name : name + '-' + std::to_string(i);
    try {
      entry->second.push_back(AddPrimitive(mesh.primitives[i], own));
    } catch (NImportError const& error) {
      throw NImportError("mesh \"" + own + "\": " + error.what());
    }
  }
  return entry->second;
}

std::shared_ptr<NGltfDeformations::Vertices const> NGltfMeshes::GetUsed(
    std::shared_ptr<Source const> const& source) {
  if (!source->isReduced) return nullptr;
  return {source, &source->vertices};
}

std::uint32_t NGltfMeshes::AddPrimitive(tinygltf::Primitive const& primitive,
                                        std::string const& name) {
  neutral::NMesh mesh{};
  mesh.name = m_writer.AddText(name);
  mesh.material = m_materials.GetNumber(primitive.material);
  mesh.isFlat = 1;
  mesh.variants = m_writer.Add(m_materials.GetVariants(primitive));
  if (IsMode(primitive.mode)) {
    auto const source = Read(primitive);
    CheckIndices(*source);
    m_deformations.AddTo(primitive, GetUsed(source), source->GetVertexCount(), mesh);
    auto const reserve = [&](auto const& write) {
      return m_writer.Reserve<NTriple>(source->GetVertexCount(), [source, write](NTriple* to) {
        std::size_t const count = source->GetVertexCount();
        for (std::size_t i = 0; i != count; ++i) write(*source, source->GetVertex(i), to[i]);
      });
    };
    mesh.positions = reserve([](Source const& from, std::size_t i, NTriple& to) {
      from.positions.Copy<3>(i, to.data());
    });
    if (source->normals) {
      mesh.normals = reserve([](Source const& from, std::size_t i, NTriple& to) {
        from.normals->Copy<3>(i, to.data());
      });
    }
    mesh.uvSetCount = source->uvs.size();
    for (std::size_t set = 0; set != source->uvs.size(); ++set) {
      mesh.uvs[set] = reserve([set](Source const& from, std::size_t i, NTriple& to) {
        auto const& uvs = from.uvs[set];
        to = uvs.transform.Apply(uvs.numbers.Get(i, 0), uvs.numbers.Get(i, 1));
      });
    }
    mesh.triangles = m_writer.Reserve<NTriangle>(source->triangleCount, [source](NTriangle* to) {
      if (source->isReduced) {
        std::copy(source->triangles.begin(), source->triangles.end(), to);
      } else {
        source->ForEachTriangle([&to](NTriangle const& triangle) { *to++ = triangle; });
      }
    });
    m_hasTriangles |= source->triangleCount != 0;
    if (source->colors && source->HasColors()) {
      if (m_materials.HasColorTexture(primitive.material)) {
        ++m_coloredCount;
      } else {
        mesh.colors = m_writer.Reserve<NTexel>(source->GetVertexCount(), [source](NTexel* to) {
          std::size_t const count = source->GetVertexCount();
          for (std::size_t i = 0; i != count; ++i) to[i] = source->GetColor(source->GetVertex(i));
        });
      }
    }
  }
  auto& meshes = m_writer.Get<neutral::NMesh>();
  meshes.push_back(mesh);
  return static_cast<std::uint32_t>(meshes.size() - 1);
}

std::shared_ptr<NGltfMeshes::Source> NGltfMeshes::Read(tinygltf::Primitive const& primitive) const {
  auto source = std::make_shared<Source>();
  source->mode = primitive.mode;
  int const positions = FindAttribute(primitive, "POSITION");
  bool const isPacked =
      FindExtension(primitive.extensions, "KHR_draco_mesh_compression") != nullptr;
  if (isPacked && IsIn(m_model.accessors, positions) &&
      m_model.accessors[static_cast<std::size_t>(positions)].bufferView < 0) {
    throw NImportError("it can't be unpacked");
  }
  if (positions < 0) {
    source->mode = Source::kNoMode;
    return source;
  }
  source->positions = m_accessors.GetNumbers(positions, 3, NGltfAccessors::kAnyIntegers);
  std::size_t const count = source->positions.GetCount();
  if (int const normals = FindAttribute(primitive, "NORMAL"); normals >= 0) {
    source->normals = m_accessors.GetNumbers(normals, 3, NGltfAccessors::kAnyIntegers);
    if (source->normals->GetCount() < count) throw NImportError("fewer normals than vertices");
  }
  if (int const colors = FindAttribute(primitive, "COLOR_0"); colors >= 0) {
    source->colors = m_accessors.GetNumbers(colors, 3, NGltfAccessors::kAnyIntegers);
    if (source->colors->GetCount() < count) throw NImportError("fewer colours than vertices");
  }
  if (primitive.indices >= 0) source->indices = m_accessors.GetIndices(primitive.indices);
  ReadUvs(primitive, *source);
  return source;
}

void NGltfMeshes::ReadUvs(tinygltf::Primitive const& primitive, Source& source) const {
  for (NUvSet const& set : m_materials.GetUvSets(primitive)) {
    int const accessor = FindAttribute(primitive, "TEXCOORD_" + std::to_string(set.texCoord));
    if (accessor < 0) return;  // those behind it could not keep their numbers
    Source::Uvs uvs{m_accessors.GetNumbers(accessor, 2, NGltfAccessors::kAnyIntegers),
                    set.transform};
    if (uvs.numbers.GetCount() < source.positions.GetCount()) {
      throw NImportError("fewer texture coordinates than vertices");
    }
    source.uvs.push_back(std::move(uvs));
  }
}

void NGltfMeshes::CheckIndices(Source& source) {
  std::size_t const count = source.positions.GetCount();
  std::uint32_t largest = 0;
  source.ForEachTriangle([&](NTriangle const& t) {
    largest = std::max({largest, t[0], t[1], t[2]});
    ++source.triangleCount;
  });
  if (source.triangleCount != 0 && largest >= count) {
    throw NImportError("index " + std::to_string(largest) + " is out of range, the mesh has " +
                       core::text::Plural(count, "vertex", "vertices"));
  }
  Reduce(source);
  for (std::size_t i = 0; i != source.GetVertexCount(); ++i) {
    NTriple position;
    source.positions.Copy<3>(source.GetVertex(i), position.data());
    if (!std::all_of(position.begin(), position.end(), [](float v) { return std::isfinite(v); })) {
      throw NImportError("vertex " + std::to_string(source.GetVertex(i)) + " isn't finite");
    }
  }
}

// Many primitives may share one array of vertices, each of them a few. Cost: linear in the
// triangles, and once in the largest array.
void NGltfMeshes::Reduce(Source& source) {
  std::size_t const count = source.positions.GetCount();
  if (m_newNumbers.size() < count) m_newNumbers.resize(count, neutral::kNone);
  source.ForEachTriangle([&](NTriangle const& triangle) {
    for (std::uint32_t const vertex : triangle) {
      if (m_newNumbers[vertex] != neutral::kNone) continue;
      m_newNumbers[vertex] = static_cast<std::uint32_t>(source.vertices.size());
      source.vertices.push_back(vertex);
    }
  });
  source.isReduced = source.vertices.size() != count;
  if (source.isReduced) {
    source.triangles.reserve(source.triangleCount);
    source.ForEachTriangle([&](NTriangle const& t) {
      source.triangles.push_back({m_newNumbers[t[0]], m_newNumbers[t[1]], m_newNumbers[t[2]]});
    });
  }
  for (std::uint32_t const vertex : source.vertices) m_newNumbers[vertex] = neutral::kNone;
  if (!source.isReduced) source.vertices = {};
}

std::vector<std::string> NGltfMeshes::GetNotes() const {
  std::vector<std::string> notes;
  auto const note = [&notes](std::size_t count, char const* one, char const* many) {
    if (count != 0) notes.push_back(core::text::Plural(count, one, many));
  };
  note(m_coloredCount, "mesh has vertex colours beside a picture, which were left out",
       "meshes have vertex colours beside a picture, which were left out");
  return notes;
}

}  // namespace corvanta::importer::reader
