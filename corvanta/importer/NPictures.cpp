#include "corvanta/importer/NPictures.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

#include "corvanta/core/text/convert.h"
#include "corvanta/importer/NTemporaryArchive.h"
#include "corvanta/importer/escape.h"

namespace corvanta::importer {

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

constexpr std::size_t kMostListed = 10000;  // files beside a model

std::string Lower(fs::path const& path) {
  std::string name = path.filename().string();
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return name;
}

NTemporaryArchive::Entry MakeEntry(neutral::NSceneView const& scene,
                                   neutral::NPicture const& picture, std::size_t number) {
  // The format is judged by the name.
  std::string extension = scene.GetString(picture.extension);
  if (extension.empty() || !std::all_of(extension.begin(), extension.end(),
                                        [](unsigned char c) { return std::isalnum(c) != 0; })) {
    extension = "bin";
  }
  return {"picture" + std::to_string(number) + '.' + extension, scene.Get(picture.bytes)};
}

}  // namespace

NPictures::NPictures(NImportTarget& target, neutral::NSceneView const& scene,
                     NVertexColors const& colors, fs::path const& folder)
    : m_target(target),
      m_scene(scene),
      m_folder(folder),
      m_images(scene.Get<neutral::NPicture>().size() + 1) {
  auto const pictures = scene.Get<neutral::NPicture>();
  std::vector<NTemporaryArchive::Entry> entries;
  std::vector<std::size_t> numbers;
  for (std::size_t i = 0; i != pictures.size(); ++i) {
    if (pictures[i].isEmbedded == 0) continue;
    entries.push_back(MakeEntry(scene, pictures[i], i));
    numbers.push_back(i);
  }
  std::vector<unsigned char> const drawn = colors.MakePicture();
  if (!drawn.empty()) {
    entries.push_back({"colours.tga", drawn});
    numbers.push_back(pictures.size());
  }
  if (entries.empty()) return;
  auto archive = std::make_unique<NTemporaryArchive>(entries);
  core::uri::NUri const uri = FileUri(archive->GetPath());
  for (std::size_t i = 0; i != entries.size(); ++i) {
    std::string const& entry = entries[i].name;
    std::string const name = numbers[i] == pictures.size()
                                 ? std::string("vertex colours")
                                 : scene.GetString(pictures[numbers[i]].name);
    m_embedded[numbers[i]] = {core::locator::NLocator(uri, core::uri::NPath(ToWide(entry))),
                              ToWide(name.empty() ? fs::path(entry).stem().string() : name)};
  }
  target.SetArchive(std::move(archive));
}

boost::intrusive_ptr<data::domain::image::NImageNode> NPictures::GetImage(std::size_t number) {
  if (number == neutral::kNone) number = m_images.size() - 1;
  if (auto const& known = m_images[number]) return known;
  auto const embedded = m_embedded.find(number);
  Place const place =
      embedded != m_embedded.end()
          ? embedded->second
          : FindFile(m_scene.GetString(m_scene.Get<neutral::NPicture>()[number].name));
  auto& node = m_nodes[place.locator];
  if (!node) {
    node = m_target.Create(m_target.GetDocument().GetImages());
    node->SetName(place.name);
    node->SetImageLocator(place.locator);
  }
  return m_images[number] = node;
}

// Some systems don't tell large letters from small ones, and pictures are often kept in a folder of
// their own.
fs::path NPictures::FindNearby(fs::path const& name) {
  if (!m_hasListed) {
    m_hasListed = true;
    std::vector<fs::path> folders{m_folder.empty() ? fs::path(".") : m_folder};
    std::size_t left = kMostListed;
    for (std::size_t i = 0; i != folders.size(); ++i) {
      std::error_code failed;
      fs::directory_iterator at(folders[i], failed);
      for (; !failed && at != fs::directory_iterator() && left != 0; at.increment(failed), --left) {
        std::error_code ignored;
        if (at->is_regular_file(ignored)) m_nearby.emplace(Lower(at->path()), at->path());
        if (i == 0 && at->is_directory(ignored)) folders.push_back(at->path());
      }
    }
  }
  auto const found = m_nearby.find(Lower(name));
  return found == m_nearby.end() ? fs::path() : found->second;
}

// Files name pictures with either slash, escaped or not, and often by a path of another machine.
NPictures::Place NPictures::FindFile(std::string const& name) {
  std::string slashed = name;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  std::string const plain = Unescape(slashed);
  std::array<fs::path, 4> const candidates{m_folder / slashed, m_folder / plain,
                                           m_folder / fs::path(slashed).filename(),
                                           m_folder / fs::path(plain).filename()};
  auto const exact = std::find_if(candidates.begin(), candidates.end(), &IsFile);
  fs::path path = exact != candidates.end() ? *exact : FindNearby(candidates.back().filename());
  if (path.empty()) {
    path = candidates.front();
    std::string note = "no such picture: " + path.string();
    if (m_missing.insert(note).second) m_notes.push_back(std::move(note));
  }
  std::error_code error;
  fs::path const whole = fs::absolute(path, error).lexically_normal();
  return {core::locator::NLocator(FileUri(error ? path : whole)), ToWide(path.stem().string())};
}

}  // namespace corvanta::importer
