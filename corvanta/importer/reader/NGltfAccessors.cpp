#include "corvanta/importer/reader/NGltfAccessors.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

#include "corvanta/importer/NImportError.h"

namespace corvanta::importer::reader {

namespace {

// Elements of a file that no buffer holds, so that a few bytes may claim them.
constexpr std::size_t kMostZeros = 16'000'000;

template <class Number>
float ReadFraction(char const* at) {
  Number number;
  std::memcpy(&number, at, sizeof(number));
  return std::max(
      static_cast<float>(number) / static_cast<float>(std::numeric_limits<Number>::max()), -1.0f);
}

template <class Number>
float ReadPlain(char const* at) {
  Number number;
  std::memcpy(&number, at, sizeof(number));
  return static_cast<float>(number);
}

struct Format {
  std::size_t size;  // bytes
  float (*plain)(char const* at);
  float (*fraction)(char const* at);
};

Format GetFormat(int componentType) {
  switch (componentType) {
    case TINYGLTF_COMPONENT_TYPE_BYTE:
      return {1, &ReadPlain<std::int8_t>, &ReadFraction<std::int8_t>};
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
      return {1, &ReadPlain<std::uint8_t>, &ReadFraction<std::uint8_t>};
    case TINYGLTF_COMPONENT_TYPE_SHORT:
      return {2, &ReadPlain<std::int16_t>, &ReadFraction<std::int16_t>};
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
      return {2, &ReadPlain<std::uint16_t>, &ReadFraction<std::uint16_t>};
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
      return {4, &ReadPlain<std::uint32_t>, nullptr};
    case TINYGLTF_COMPONENT_TYPE_FLOAT:
      return {4, &ReadPlain<float>, nullptr};
    default:
      throw NImportError("numbers of an unknown kind");
  }
}

// Bytes of an index.
std::size_t GetIndexSize(int componentType) {
  if (componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE) return 1;
  if (componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT) return 2;
  if (componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT) return 4;
  throw NImportError("indices of an unknown kind");
}

std::size_t GetWidth(tinygltf::Accessor const& accessor) {
  int const width = tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(accessor.type));
  if (width <= 0) throw NImportError("elements of an unknown kind");
  return static_cast<std::size_t>(width);
}

std::size_t ToOffset(int offset) {
  if (offset < 0) throw NImportError("an accessor leaves its buffer");
  return static_cast<std::size_t>(offset);
}

}  // namespace

std::vector<float> NGltfNumbers::GetAll() const {
  std::vector<float> numbers;
  numbers.reserve(m_count * m_width);
  for (std::size_t i = 0; i != m_count; ++i) {
    for (std::size_t k = 0; k != m_width; ++k) numbers.push_back(Get(i, k));
  }
  return numbers;
}

std::uint32_t NGltfIndices::Get(std::size_t i) const {
  std::uint32_t index = 0;
  std::memcpy(&index, m_first + i * m_stride, m_size);
  return index;
}

NGltfAccessors::NGltfAccessors(tinygltf::Model const& model)
    : m_model(model), m_isUnpacked(model.bufferViews.size()) {
  for (auto const& mesh : model.meshes) {
    for (auto const& primitive : mesh.primitives) {
      auto const* const packed = FindExtension(primitive.extensions, "KHR_draco_mesh_compression");
      if (packed == nullptr) continue;
      auto const mark = [&](int accessor) {
        if (!IsIn(model.accessors, accessor)) return;
        int const view = model.accessors[static_cast<std::size_t>(accessor)].bufferView;
        if (IsIn(model.bufferViews, view)) m_isUnpacked[static_cast<std::size_t>(view)] = true;
      };
      mark(primitive.indices);
      for (auto const& [name, accessor] : primitive.attributes) {
        if (packed->Get("attributes").Has(name)) mark(accessor);
      }
    }
  }
  std::size_t zeroCount = 0;
  for (tinygltf::Accessor const& accessor : model.accessors) {
    if (accessor.sparse.isSparse) CheckSparse(accessor);
    if (accessor.bufferView >= 0) continue;
    if (accessor.count > kMostZeros || (zeroCount += accessor.count) > kMostZeros) {
      throw NImportError("accessors without a buffer view claim more than " +
                         std::to_string(kMostZeros) + " elements");
    }
  }
}

tinygltf::Accessor const& NGltfAccessors::Get(int accessor) const {
  if (!IsIn(m_model.accessors, accessor)) throw NImportError("an accessor that isn't there");
  return m_model.accessors[static_cast<std::size_t>(accessor)];
}

NGltfNumbers NGltfAccessors::GetNumbers(int number, std::size_t width, NIntegers integers) const {
  tinygltf::Accessor const& accessor = Get(number);
  Format const format = GetFormat(accessor.componentType);
  NGltfNumbers numbers;
  numbers.m_count = accessor.count;
  numbers.m_width = GetWidth(accessor);
  numbers.m_size = format.size;
  bool const isFraction = accessor.normalized && format.fraction != nullptr;
  numbers.m_read = isFraction ? format.fraction : format.plain;
  if (numbers.m_width < width || (integers == kFractions && numbers.m_width != width)) {
    throw NImportError("an accessor of another kind");
  }
  bool const isFloat = accessor.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT;
  if (integers == kFractions && !isFraction && !isFloat) throw NImportError("integers");

  std::vector<float> own;
  if (accessor.bufferView >= 0) {
    Place const place = FindElements(accessor.bufferView, accessor.byteOffset, accessor.count,
                                     format.size * numbers.m_width);
    numbers.m_first = place.first;
    numbers.m_stride = place.stride;
    if (!accessor.sparse.isSparse) return numbers;
    own = numbers.GetAll();
  } else {
    own.resize(accessor.count * numbers.m_width);
  }
  if (accessor.sparse.isSparse) SetSparse(accessor, numbers, own);
  numbers.m_own = std::make_shared<std::vector<float> const>(std::move(own));
  numbers.m_size = sizeof(float);
  numbers.m_stride = numbers.m_width * sizeof(float);
  numbers.m_first = reinterpret_cast<char const*>(numbers.m_own->data());
  numbers.m_read = &ReadPlain<float>;
  return numbers;
}

void NGltfAccessors::SetSparse(tinygltf::Accessor const& accessor, NGltfNumbers const& format,
                               std::vector<float>& numbers) const {
  NGltfIndices const indices = GetSparseIndices(accessor);
  NGltfNumbers values = format;
  values.m_count = indices.GetCount();
  Place const place =
      FindElements(accessor.sparse.values.bufferView, ToOffset(accessor.sparse.values.byteOffset),
                   values.m_count, values.m_size * values.m_width);
  values.m_first = place.first;
  values.m_stride = place.stride;
  for (std::size_t i = 0; i != values.m_count; ++i) {
    std::size_t const at = indices.Get(i);
    if (at >= accessor.count) throw NImportError("a sparse index is out of range");
    for (std::size_t k = 0; k != values.m_width; ++k) {
      numbers[at * values.m_width + k] = values.Get(i, k);
    }
  }
}

NGltfIndices NGltfAccessors::GetSparseIndices(tinygltf::Accessor const& accessor) const {
  auto const& source = accessor.sparse;
  NGltfIndices indices;
  indices.m_count = ToOffset(source.count);
  indices.m_size = GetIndexSize(source.indices.componentType);
  Place const place = FindElements(source.indices.bufferView, ToOffset(source.indices.byteOffset),
                                   indices.m_count, indices.m_size);
  indices.m_first = place.first;
  indices.m_stride = place.stride;
  return indices;
}

// Also where nothing asks for it: such a file isn't sound.
void NGltfAccessors::CheckSparse(tinygltf::Accessor const& accessor) const {
  try {
    NGltfIndices const indices = GetSparseIndices(accessor);
    FindElements(accessor.sparse.values.bufferView, ToOffset(accessor.sparse.values.byteOffset),
                 indices.GetCount(), GetFormat(accessor.componentType).size * GetWidth(accessor));
    for (std::size_t i = 0; i != indices.GetCount(); ++i) {
      if (indices.Get(i) >= accessor.count) throw NImportError("an index is out of range");
    }
  } catch (NImportError const& error) {
    throw NImportError(std::string("a sparse accessor can't be read: ") + error.what());
  }
}

NGltfIndices NGltfAccessors::GetIndices(int number) const {
  tinygltf::Accessor const& accessor = Get(number);
  NGltfIndices indices;
  indices.m_count = accessor.count;
  indices.m_size = GetIndexSize(accessor.componentType);
  if (accessor.type != TINYGLTF_TYPE_SCALAR || accessor.sparse.isSparse) {
    throw NImportError("indices of an unknown kind");
  }
  Place const place =
      FindElements(accessor.bufferView, accessor.byteOffset, indices.m_count, indices.m_size);
  indices.m_first = place.first;
  indices.m_stride = place.stride;
  return indices;
}

NGltfAccessors::Place NGltfAccessors::FindElements(int number, std::size_t offset,
                                                   std::size_t count,
                                                   std::size_t elementSize) const {
  if (!IsIn(m_model.bufferViews, number)) throw NImportError("a buffer view that isn't there");
  tinygltf::BufferView const& view = m_model.bufferViews[static_cast<std::size_t>(number)];
  if (!IsIn(m_model.buffers, view.buffer)) throw NImportError("a buffer that isn't there");
  auto const& buffer = m_model.buffers[static_cast<std::size_t>(view.buffer)].data;
  // What was unpacked stands one behind the other, whatever the packed form said.
  bool const isUnpacked = m_isUnpacked[static_cast<std::size_t>(number)];
  std::size_t const stride = isUnpacked || view.byteStride == 0 ? elementSize : view.byteStride;
  std::size_t const begin = isUnpacked ? 0 : view.byteOffset;
  std::size_t const size = buffer.size();
  // Each alone first, so that no sum or product runs over.
  if (count > size || stride > 255 || begin > size || offset > size ||
      (count != 0 && begin + offset + (count - 1) * stride + elementSize > size)) {
    throw NImportError("an accessor leaves its buffer");
  }
  return {reinterpret_cast<char const*>(buffer.data()) + begin + offset, stride};
}

std::pair<unsigned char const*, std::size_t> NGltfAccessors::GetBytes(int number) const {
  if (!IsIn(m_model.bufferViews, number)) throw NImportError("a buffer view that isn't there");
  tinygltf::BufferView const& view = m_model.bufferViews[static_cast<std::size_t>(number)];
  if (!IsIn(m_model.buffers, view.buffer)) throw NImportError("a buffer that isn't there");
  auto const& buffer = m_model.buffers[static_cast<std::size_t>(view.buffer)].data;
  if (view.byteOffset > buffer.size() || view.byteLength > buffer.size() - view.byteOffset) {
    throw NImportError("a picture leaves its buffer");
  }
  return {buffer.data() + view.byteOffset, view.byteLength};
}

}  // namespace corvanta::importer::reader
