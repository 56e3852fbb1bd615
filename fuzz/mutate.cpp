// Damages sound files at random and has each read by the library, as a host would: see the usage
// below. Made for long runs by hand; the tests run a short one.
#include <sys/resource.h>

#include <charconv>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <vector>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/import.h"
#include "corvanta/importer/limits.h"
#include "corvanta/platform/limits.h"
#include "fuzz/images.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

struct Seed {
  std::string name;
  std::string bytes;
};

std::vector<Seed> ReadSeeds(fs::path const& folder) {
  constexpr std::uintmax_t kMostBytes = 1 << 20;
  std::map<std::string, std::string> seeds;  // in the order of names, for the same run each time
  for (auto const& entry : fs::directory_iterator(folder)) {
    if (!entry.is_regular_file() || entry.file_size() > kMostBytes) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    seeds[entry.path().filename()] = {std::istreambuf_iterator<char>(file), {}};
  }
  std::vector<Seed> list;
  for (auto const& [name, bytes] : seeds)
    if (!bytes.empty()) list.push_back({name, bytes});
  return list;
}

using Random = std::mt19937;

std::size_t Choose(Random& random, std::size_t count) {
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

// One to eight damages: bits, bytes, numbers at their limits, what is cut out, twice there or
// moved. Half of them hit the first 128 bytes, where most formats keep their numbers.
std::string Damage(std::string bytes, Random& random) {
  constexpr std::size_t kHead = 128, kMostTimes = 8, kLongest = 64;
  static constexpr std::uint32_t kNumbers[] = {
      0,      1,     0x7F,       0x80,       0xFF,       0x7FFF,     0x8000,
      0xFFFF, 65537, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x40000000, 3};
  for (std::size_t times = 1 + Choose(random, kMostTimes); times != 0 && !bytes.empty(); --times) {
    bool const isHead = Choose(random, 2) == 0;
    std::size_t const at = Choose(random, isHead ? std::min(kHead, bytes.size()) : bytes.size());
    std::size_t const length = std::min(1 + Choose(random, kLongest), bytes.size() - at);
    switch (Choose(random, 6)) {
      case 0:
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << Choose(random, 8)));
        break;
      case 1:
        bytes[at] = static_cast<char>(Choose(random, 256));
        break;
      case 2: {
        std::uint32_t const number = kNumbers[Choose(random, std::size(kNumbers))];
        std::size_t const size = std::min<std::size_t>(1u << Choose(random, 3), bytes.size() - at);
        bool const isBig = Choose(random, 2) == 0;
        for (std::size_t i = 0; i != size; ++i)
          bytes[at + i] = static_cast<char>(number >> 8 * (isBig ? size - 1 - i : i));
        break;
      }
      case 3:
        bytes.erase(at, Choose(random, 8) == 0 ? std::string::npos : length);
        break;
      case 4:
        bytes.insert(at, bytes.substr(at, length));
        break;
      default:
        bytes.replace(at, length, bytes.substr(Choose(random, bytes.size()), length));
    }
  }
  return bytes;
}

std::string GetPixels(platform::NPicture const& picture) {
  return {static_cast<char const*>(picture.GetInfoHeader()), picture.GetByteLength()};
}

// Every twentieth is a sound one, which comes with the pixels that it had before all the others.
class Pictures {
 public:
  explicit Pictures(std::vector<Seed> const& seeds) {
    for (Seed const& seed : seeds) {
      auto const picture = Decode(seed.name, seed.bytes);
      m_sound.emplace_back(picture ? GetPixels(*picture) : std::string());
      if (!picture) std::cerr << seed.name << " isn't sound\n";
    }
  }

  bool Read(std::string const& name, std::string const& bytes) {
    auto const picture = Decode(name, bytes);
    if (picture) CheckPicture(*picture);
    return picture != nullptr;
  }
  void ReadSound(std::size_t number, Seed const& seed) {
    auto const picture = Decode(seed.name, seed.bytes);
    Require((picture ? GetPixels(*picture) : std::string()) == m_sound[number],
            "a sound picture comes as before");
  }

 private:
  static std::unique_ptr<platform::NPicture const> Decode(std::string const& name,
                                                          std::string const& bytes) {
    std::string reason;
    auto picture = platform::DecodePicture(bytes.data(), bytes.size(),
                                           std::wstring(name.begin(), name.end()), &reason);
    Require(picture != nullptr || !reason.empty(), "there is a reason where there is no picture");
    return picture;
  }

  std::vector<std::string> m_sound;
};

class Models {
 public:
  explicit Models(Folder const& folder) : m_folder(folder) {
    constexpr std::uint64_t kMemory = 512 << 20;
    importer::SetImportLimits({kMemory, std::chrono::seconds(10)});
  }

  bool Read(std::string const& name, std::string const& bytes) {
    fs::path const path = m_folder.GetPath() / name;
    std::ofstream(path, std::ios::binary) << bytes;
    bool isRead = true;
    try {
      data::document::NDocument document;
      Require(importer::ImportModel(document, path.string()).tree != nullptr, "there is a tree");
    } catch (importer::NImportError const& error) {
      Require(error.what()[0] != 0, "there is a reason where there is no model");
      isRead = false;
    }
    fs::remove(path);
    return isRead;
  }

 private:
  Folder const& m_folder;
};

struct Tally {
  std::size_t tried = 0, read = 0;
  double longest = 0;  // seconds
  std::string longestName;

  void Take(std::string const& name, bool isRead, Clock::duration taken) {
    ++tried;
    read += isRead ? 1 : 0;
    double const seconds = std::chrono::duration<double>(taken).count();
    if (seconds > longest) {
      longest = seconds;
      longestName = name;
    }
  }
  void Print() const {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::cout << tried << " tried, " << read << " read, the longest " << longest << " s ("
              << longestName << "), at most " << usage.ru_maxrss / 1024 << " MB in the host"
              << std::endl;
  }
};

template <class Reader, class AtTwentieth>
void Run(std::vector<Seed> const& seeds, std::size_t count, unsigned start, Reader&& read,
         AtTwentieth&& atTwentieth) {
  constexpr std::size_t kLines = 10000;
  Tally tally;
  for (std::size_t i = 0; i != count; ++i) {
    Seed const& seed = seeds[i % seeds.size()];
    Random random(start + static_cast<unsigned>(i));
    std::string const bytes = Damage(seed.bytes, random);
    // What is being read when the process ends can be made again by its number.
    auto const begin = Clock::now();
    bool const isRead = read(seed.name, bytes);
    tally.Take(seed.name + " of number " + std::to_string(start + i), isRead, Clock::now() - begin);
    if (i % 20 == 19) atTwentieth(i / 20 % seeds.size());
    if (tally.tried % kLines == 0) tally.Print();
  }
  tally.Print();
}

bool ReadNumber(std::string_view text, std::size_t& number) {
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

int Main(std::vector<std::string> const& arguments) {
  std::size_t count = 0, start = 1;
  bool const isRight =
      (arguments.size() == 3 || arguments.size() == 4) &&
      (arguments[0] == "pictures" || arguments[0] == "models") && ReadNumber(arguments[2], count) &&
      (arguments.size() == 3 || ReadNumber(arguments[3], start)) && fs::is_directory(arguments[1]);
  if (!isRight) {
    std::cerr << "usage: corvanta_mutate pictures|models FOLDER COUNT [START]\n\n"
                 "Reads COUNT damaged copies of the files in FOLDER, which are sound. The random\n"
                 "numbers begin at START (1), so that a run can be had again, or gone on with.\n";
    return 2;
  }
  std::vector<Seed> const seeds = ReadSeeds(arguments[1]);
  Require(!seeds.empty(), "there is a file in the folder");
  Folder const folder;
  if (arguments[0] == "pictures") {
    Pictures pictures(seeds);
    Run(
        seeds, count, static_cast<unsigned>(start),
        [&](auto const& name, auto const& bytes) { return pictures.Read(name, bytes); },
        [&](std::size_t number) { pictures.ReadSound(number, seeds[number]); });
  } else {
    Models models(folder);
    Run(
        seeds, count, static_cast<unsigned>(start),
        [&](auto const& name, auto const& bytes) { return models.Read(name, bytes); },
        [&](std::size_t) {});
  }
  Require(folder.CountFiles() == 0, "no file is left");
  return 0;
}

}  // namespace
}  // namespace corvanta::fuzz

int main(int count, char** arguments) {
  return corvanta::fuzz::Main({arguments + 1, arguments + count});
}
