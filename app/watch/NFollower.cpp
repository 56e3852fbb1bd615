#include "app/watch/NFollower.h"

#include <iostream>
#include <thread>

#include "app/compare/NDifference.h"
#include "app/output/NInterruption.h"
#include "app/output/status.h"
#include "app/output/text.h"
#include "app/watch/NFileStamps.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/image/NImageNode.h"

namespace corvanta::app {

namespace {

using Clock = NFileStamps::Clock;

constexpr std::chrono::milliseconds kPause(50);

}  // namespace

int NFollower::Run(std::optional<double> seconds, bool isOnce) {
  NInterruption const interruption;
  auto const start = Clock::now();
  // What is written from here on is a change, also while the file is read.
  NFileStamps stamps({m_file});
  if (!Read()) return NS_FILE;
  stamps.SetFiles(GetFiles());
  PrintLine({{"kind", "watching"}, {"file", m_file}, {"files", stamps.GetCount()}},
            "watching " + Quoted(m_file) + ", " + Plural(stamps.GetCount(), "file", "files"));
  while (NInterruption::GetSignal() == 0 && std::cout.good()) {
    auto const now = Clock::now();
    if (seconds && std::chrono::duration<double>(now - start).count() >= *seconds) return NS_DONE;
    if (stamps.Look(now) && ReadAgain(stamps.GetChanged())) {
      if (isOnce) return NS_DONE;
      stamps.SetFiles(GetFiles());
    }
    std::this_thread::sleep_for(kPause);
  }
  // As a shell tells of a program that a signal has ended.
  int const signal = NInterruption::GetSignal();
  return signal == 0 ? NS_FILE : 128 + signal;
}

bool NFollower::Read() {
  auto document = std::make_unique<data::document::NDocument>();
  auto const model = m_open(*document, m_file);
  if (!model) return false;
  m_document = std::move(document);
  m_files = model->files;
  return true;
}

bool NFollower::ReadAgain(std::set<std::string> const& changed) {
  auto before = std::move(m_document);
  if (!Read()) {
    m_document = std::move(before);
    return false;
  }
  auto differences = Compare(*before, *m_document);
  for (auto const& [image, file] : GetPictures()) {
    if (changed.count(file) != 0) differences.push_back({NDK_CHANGED, "image", image, "file"});
  }
  PrintLine({{"kind", "reload"}, {"differences", differences.size()}},
            "reload: " + Plural(differences.size(), "difference", "differences"));
  for (NDifference const& difference : differences) {
    PrintLine(DescribeDifference(difference), "  " + FormatDifference(difference));
  }
  return true;
}

std::map<std::string, std::string> NFollower::GetPictures() const {
  std::map<std::string, std::string> pictures;
  auto const& images = m_document->GetImages();
  for (auto at = images.GetTypedNodeBegin(); at != images.GetTypedNodeEnd(); ++at) {
    auto const& locator = at->GetImageLocator();
    if (locator.IsZipped()) continue;
    pictures.emplace(core::text::ToNarrow(at->GetName()),
                     core::text::ToNarrow(core::uri::GetFile(locator.GetUri()).ToString()));
  }
  return pictures;
}

std::vector<std::string> NFollower::GetFiles() const {
  std::set<std::string> files(m_files.begin(), m_files.end());
  files.insert(m_file);
  for (auto const& [image, file] : GetPictures()) files.insert(file);
  return {files.begin(), files.end()};
}

void NFollower::PrintLine(NRecord const& record, std::string const& text) const {
  std::cout << (m_asJson ? record.dump(-1, ' ', false, NRecord::error_handler_t::replace) : text)
            << std::endl;
}

}  // namespace corvanta::app
