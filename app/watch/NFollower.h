#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/output/record.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/importer/import.h"

namespace corvanta::app {

/// Keeps the document of a model file, reads the file again whenever it or what it names has
/// changed, and prints what differs. A file that can't be read costs a line; the document stays as
/// it was.
class NFollower {
 public:
  /// Reads the file into a document, with notes and reasons printed.
  /// Fails: nothing.
  using Open = std::function<std::optional<importer::NImportedModel>(data::document::NDocument&,
                                                                     std::string const& file)>;

  NFollower(std::string file, Open open, bool asJson)
      : m_file(std::move(file)), m_open(std::move(open)), m_asJson(asJson) {}

  /// Follows the file until a signal comes, `seconds` are over, or, with `isOnce`, a change was
  /// printed.
  /// Returns: the program's exit status.
  int Run(std::optional<double> seconds, bool isOnce);

 private:
  bool Read();
  /// `changed` are the files that are others than at the last reading.
  /// Fails: false if the file can't be read.
  bool ReadAgain(std::set<std::string> const& changed);
  /// The files of the document's pictures, by the names of their nodes.
  std::map<std::string, std::string> GetPictures() const;
  std::vector<std::string> GetFiles() const;
  void PrintLine(NRecord const& record, std::string const& text) const;

  std::string const m_file;
  Open const m_open;
  bool const m_asJson;
  std::unique_ptr<data::document::NDocument> m_document;
  std::vector<std::string> m_files;  // that were read for it
};

}  // namespace corvanta::app
