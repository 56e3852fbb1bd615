#include "corvanta/renderer/scene/NTextures.h"

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

#include "corvanta/core/uri/NPath.h"
#include "corvanta/core/uri/NUri.h"
#include "corvanta/data/domain/material/NMaterialOptions.h"
#include "corvanta/data/internal/built_in_images.h"
#include "corvanta/data/resource/image/create_image.h"
#include "corvanta/renderer/scene/harmonics.h"
#include "corvanta/renderer/texels.h"

namespace corvanta::renderer {

namespace {

using data::domain::image::NImageNode;
using data::domain::material::GetWrap;
using data::domain::material::kCombinationMask;
using data::domain::material::kMostOperation;
using data::domain::material::kNearest;
using data::domain::material::kWrapShiftU;
using data::domain::material::kWrapShiftV;

GLint GetWrapMode(data::domain::material::NTextureWrap wrap) {
  if (wrap == data::domain::material::NTW_MIRROR) return GL_MIRRORED_REPEAT;
  return wrap == data::domain::material::NTW_CLAMP ? GL_CLAMP_TO_EDGE : GL_REPEAT;
}

NTexels MakeGrey() { return {1, 1, {128, 128, 128, 255}, {}, false}; }

/// The library's picture in place of one that can't be read.
std::vector<NTexels> ReadPlaceholder() {
  namespace image = data::resource::image;
  try {
    return ReadTexels(*image::CreateImage(data::internal::GetNotFoundImage(), image::NIF_RAW),
                      L".dds");
  } catch (std::exception const&) {
    return {};
  }
}

std::vector<NTexels> Read(NImageNode const& image, bool& isBroken) {
  std::vector<NTexels> faces;
  try {
    auto const& locator = image.GetImageLocator();
    auto const name =
        locator.IsZipped() ? locator.GetZippedPath() : core::uri::GetFile(locator.GetUri());
    faces = ReadTexels(*image.GetImage(), name.GetExtension());
  } catch (std::exception const&) {
    // An archive that can't be opened; its picture isn't one.
  }
  isBroken = faces.empty();
  if (faces.empty()) faces = ReadPlaceholder();
  if (faces.empty()) faces.push_back(MakeGrey());
  return faces;
}

void Fill(GLenum target, NTexels const& texels, NTextureContent content) {
  bool const hasFloats = !texels.floats.empty();
  GLint const format = hasFloats ? GL_RGBA16F : content == NTC_DATA ? GL_RGBA8 : GL_SRGB8_ALPHA8;
  void const* const data = hasFloats ? static_cast<void const*>(texels.floats.data())
                                     : static_cast<void const*>(texels.bytes.data());
  glTexImage2D(target, 0, format, static_cast<GLsizei>(texels.width),
               static_cast<GLsizei>(texels.height), 0, GL_RGBA,
               hasFloats ? GL_FLOAT : GL_UNSIGNED_BYTE, data);
}

}  // namespace

NTexture const& NTextures::Get(NImageNode const& image, NTextureContent content) {
  Key const key(image, content);
  auto const found = m_textures.find(key);
  if (found != m_textures.end()) return found->second;
  ++m_uploadCount;
  return m_textures.emplace(key, Load(image, content)).first->second;
}

NTexture NTextures::Load(NImageNode const& image, NTextureContent content) const {
  bool isBroken = false;
  std::vector<NTexels> faces = Read(image, isBroken);
  GLint mostSide = 0;
  glGetIntegerv(content == NTC_CUBE ? GL_MAX_CUBE_MAP_TEXTURE_SIZE : GL_MAX_TEXTURE_SIZE,
                &mostSide);
  for (NTexels& face : faces) Shrink(face, static_cast<unsigned>(std::max(mostSide, 1)));
  NTexture result{NGlTexture(),
                  faces.front().hasAlpha,
                  !faces.front().floats.empty() || content == NTC_DATA,
                  content == NTC_CUBE,
                  faces.front().width,
                  faces.front().height,
                  isBroken};
  GLenum const target = content == NTC_CUBE ? GL_TEXTURE_CUBE_MAP : GL_TEXTURE_2D;
  glBindTexture(target, result.texture.Get());
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  if (content == NTC_CUBE) {
    // A cube's faces are square.
    if (faces.size() != 6 && faces.front().width != faces.front().height) {
      faces = {MakeGrey()};
      result.width = result.height = 1;
      result.isLinear = false;
    }
    for (unsigned face = 0; face != 6; ++face) {
      Fill(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, faces[faces.size() == 6 ? face : 0], content);
    }
  } else {
    Fill(target, faces.front(), content);
  }
  GLint const wrap = content == NTC_CUBE ? GL_CLAMP_TO_EDGE : GL_REPEAT;
  glTexParameteri(target, GL_TEXTURE_WRAP_S, wrap);
  glTexParameteri(target, GL_TEXTURE_WRAP_T, wrap);
  glTexParameteri(target, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexParameteri(target, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
  glGenerateMipmap(target);
  return result;
}

GLuint NTextures::GetSampler(long operation) {
  long const bits = operation & kMostOperation & ~kCombinationMask;
  if (bits == 0) return 0;
  auto const [entry, isNew] = m_samplers.try_emplace(bits);
  GLuint const sampler = entry->second.Get();
  if (!isNew) return sampler;
  glSamplerParameteri(sampler, GL_TEXTURE_WRAP_S, GetWrapMode(GetWrap(bits, kWrapShiftU)));
  glSamplerParameteri(sampler, GL_TEXTURE_WRAP_T, GetWrapMode(GetWrap(bits, kWrapShiftV)));
  glSamplerParameteri(sampler, GL_TEXTURE_MAG_FILTER,
                      (bits & kNearest) != 0 ? GL_NEAREST : GL_LINEAR);
  glSamplerParameteri(sampler, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
  return sampler;
}

NHarmonics const& NTextures::GetHarmonics(NTexture const& texture, int projection) {
  auto const [entry, isNew] = m_harmonics.try_emplace({texture.texture.Get(), projection});
  if (isNew) entry->second = ComputeHarmonics(texture, projection);
  return entry->second;
}

std::vector<boost::intrusive_ptr<NImageNode const>> NTextures::GetBroken() const {
  std::vector<boost::intrusive_ptr<NImageNode const>> broken;
  for (auto const& [key, texture] : m_textures) {
    auto const node = key.first.Get();
    if (texture.isBroken && node) broken.push_back(node);
  }
  return broken;
}

void NTextures::Forget(std::unordered_set<NImageNode const*> const& images) {
  std::erase_if(m_textures, [&](auto const& entry) {
    auto const node = entry.first.first.Get();
    if (node && !images.contains(node.get())) return false;
    GLuint const name = entry.second.texture.Get();
    std::erase_if(m_harmonics, [name](auto const& light) { return light.first.first == name; });
    return true;
  });
}

}  // namespace corvanta::renderer
