#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>

#include "app/output/record.h"

namespace corvanta::app {

/// Where `info` writes what it finds, in this order: the files, the trees each with its items, the
/// domains each with its nodes, the totals, the box of the whole. Each may be left out.
///
/// Writes as it goes, flat: a hierarchy may be too deep to nest and too large to keep.
class NReport {
 public:
  NReport() = default;
  NReport(NReport const&) = delete;
  NReport& operator=(NReport const&) = delete;
  virtual ~NReport();

  /// `file`: its name, its tree, its notes and maybe the two times it took.
  virtual void AddFile(NRecord const& file) = 0;
  virtual void AddTree(NRecord const& tree) = 0;
  virtual void AddItem(NRecord const& item, std::size_t depth) = 0;
  /// `added`: how many of the `count` nodes came from the program itself.
  virtual void AddDomain(std::string const& type, std::size_t count, std::size_t added) = 0;
  virtual void AddNode(NRecord const& node) = 0;
  /// Numbers by name.
  virtual void AddTotals(NRecord const& totals) = 0;
  virtual void Finish(NRecord const& box) = 0;
};

/// Lines for people; items are indented by their depth.
std::unique_ptr<NReport> CreateTextReport(std::ostream& out);
/// One JSON object; items name their parent.
std::unique_ptr<NReport> CreateJsonReport(std::ostream& out);

}  // namespace corvanta::app
