#include "app/import/NPictures.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <system_error>
#include <utility>

#include "app/import/escape.h"
#include "app/scene/NTemporaryArchive.h"
#include "corvanta/core/text/convert.h"

namespace corvanta::app {

namespace {

namespace fs = std::filesystem;
using core::text::ToNarrow;
using core::text::ToWide;

core::uri::NUri FileUri(fs::path const& path) {
  return core::uri::NUri::CreateFileUri(core::uri::NPath(ToWide(path.string())));
}

bool IsFile(fs::path const& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

// Texels as they are stored are the rows of a TGA file with 32 bits a pixel, from the top.
std::vector<unsigned char> MakeTarga(aiTexture const& texture) {
  unsigned const width = texture.mWidth;
  unsigned const height = texture.mHeight;
  std::vector<unsigned char> bytes{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  for (unsigned const size : {width, height}) {
    bytes.push_back(static_cast<unsigned char>(size & 0xFFu));
    bytes.push_back(static_cast<unsigned char>(size >> 8 & 0xFFu));
  }
  bytes.insert(bytes.end(), {32, 0x28});
  for (std::size_t i = 0; i != std::size_t{width} * height; ++i) {
    aiTexel const& texel = texture.pcData[i];
    bytes.insert(bytes.end(), {texel.b, texel.g, texel.r, texel.a});
  }
  return bytes;
}

NTemporaryArchive::Entry MakeEntry(aiTexture const& texture, unsigned number) {
  std::string const name = "picture" + std::to_string(number) + '.';
  if (texture.mHeight != 0) return {name + "tga", MakeTarga(texture)};
  // The format is judged by the name.
  std::string extension = texture.achFormatHint;
  if (extension.empty() || !std::all_of(extension.begin(), extension.end(),
                                        [](unsigned char c) { return std::isalnum(c) != 0; })) {
    extension = "bin";
  }
  auto const* const bytes = reinterpret_cast<unsigned char const*>(texture.pcData);
  return {name + extension, {bytes, bytes + texture.mWidth}};
}

}  // namespace

NPictures::NPictures(NDocument& document, aiScene const& scene, fs::path const& folder)
    : m_document(document), m_scene(scene), m_folder(folder) {
  if (scene.mNumTextures == 0) return;
  std::vector<NTemporaryArchive::Entry> entries;
  for (unsigned i = 0; i != scene.mNumTextures; ++i) {
    entries.push_back(MakeEntry(*scene.mTextures[i], i));
  }
  auto archive = std::make_unique<NTemporaryArchive>(entries);
  core::uri::NUri const uri = FileUri(archive->GetPath());
  for (unsigned i = 0; i != scene.mNumTextures; ++i) {
    std::string const entry = entries[i].name;
    std::string const name = scene.mTextures[i]->mFilename.C_Str();
    m_embedded.push_back({core::locator::NLocator(uri, core::uri::NPath(ToWide(entry))),
                          ToWide(name.empty() ? fs::path(entry).stem().string() : name)});
  }
  document.KeepArchive(std::move(archive));
}

boost::intrusive_ptr<data::domain::image::NImageNode> NPictures::GetImage(aiString const& name) {
  Place const place = Find(name);
  auto& node = m_nodes[place.locator];
  if (!node) {
    node = m_document.GetImages().CreateNode(core::node::NNodeID());
    node->SetName(place.name);
    node->SetImageLocator(place.locator);
  }
  return node;
}

NPictures::Place NPictures::Find(aiString const& name) {
  int const embedded = m_scene.GetEmbeddedTextureAndIndex(name.C_Str()).second;
  if (embedded >= 0 && static_cast<std::size_t>(embedded) < m_embedded.size()) {
    return m_embedded[static_cast<std::size_t>(embedded)];
  }
  return FindFile(name.C_Str());
}

// Files name pictures with either slash, escaped or not, and often by a path of another machine.
NPictures::Place NPictures::FindFile(std::string const& name) {
  std::string slashed = name;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  std::string const plain = Unescape(slashed);
  std::array<fs::path, 4> const candidates{m_folder / slashed, m_folder / plain,
                                           m_folder / fs::path(slashed).filename(),
                                           m_folder / fs::path(plain).filename()};
  auto const found = std::find_if(candidates.begin(), candidates.end(), &IsFile);
  fs::path const& path = found != candidates.end() ? *found : candidates.front();
  if (found == candidates.end()) {
    std::string note = "no such picture: " + path.string();
    if (std::find(m_notes.begin(), m_notes.end(), note) == m_notes.end()) {
      m_notes.push_back(std::move(note));
    }
  }
  std::error_code error;
  fs::path const whole = fs::absolute(path, error).lexically_normal();
  return {core::locator::NLocator(FileUri(error ? path : whole)), ToWide(path.stem().string())};
}

}  // namespace corvanta::app
