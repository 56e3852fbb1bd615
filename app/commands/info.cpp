#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/output/NReport.h"
#include "app/output/text.h"
#include "app/scene/NStage.h"
#include "app/scene/common_tree.h"
#include "app/scene/totals.h"
#include "app/scene/walk.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

namespace corvanta::app {

namespace {

using core::text::ToNarrow;
using data::domain::scenegraph::tree::NSceneGraphTreeNode;

constexpr char kFooter[] = R"(
First come the trees, with the items of each, indented by depth; then the nodes
of each kind (a "domain"); then totals, and the box of the whole. Boxes are in
global coordinates. Two or more files become trees of their own, each shown in a
common tree by a reference item.

A picture of a scene needs an environment, a camera that sees the whole and, if
no file has lights, seven of them in a tree of their own. These are marked as
added by corvanta; the totals are of the files alone.

The same file gives the same output, so that two can be compared:
  diff <(corvanta info old.glb) <(corvanta info new.glb))";

struct Options {
  std::vector<std::string> files;
  std::optional<std::size_t> depth;
  bool withAttributes = false, withIds = false, withTimes = false;
  bool isSummary = false;
  bool asJson = false;
};

/// Passes the items of a tree on to a report. One whose children lie too deep waits until they are
/// counted.
class ItemLister {
 public:
  ItemLister(NReport& report, std::optional<std::size_t> depth)
      : m_report(report), m_depth(depth) {}
  ItemLister(ItemLister const&) = delete;
  ItemLister& operator=(ItemLister const&) = delete;
  ~ItemLister() = default;

  bool IsListed(std::size_t depth) {
    if (!m_depth || depth < *m_depth) return true;
    ++m_below;
    return false;
  }
  void Add(NRecord item, std::size_t depth) {
    Finish();
    m_item = std::move(item);
    m_itemDepth = depth;
  }
  void Finish() {
    if (!m_item.is_null()) {
      if (m_below != 0) m_item["itemsBelow"] = m_below;
      m_report.AddItem(m_item, m_itemDepth);
    }
    m_item = nullptr;
    m_below = 0;
  }

 private:
  NReport& m_report;
  std::optional<std::size_t> const m_depth;
  NRecord m_item;  // null for none
  std::size_t m_itemDepth = 0, m_below = 0;
};

class Info {
 public:
  explicit Info(Options const& options) : m_options(options) {}

  int Run() {
    for (std::string const& file : m_options.files) Import(file);
    if (!m_models.empty()) Print();
    return m_models.size() == m_options.files.size() ? NS_DONE : NS_FILE;
  }

 private:
  using Trees = std::vector<boost::intrusive_ptr<NSceneGraphTreeNode>>;

  void Import(std::string const& file) {
    auto const model = OpenModel(m_document, file);
    if (!model) return;
    m_models.push_back(*model);
  }

  NRecord DescribeFile(importer::NImportedModel const& model) const {
    NRecord const tree = DescribeNode(*model.tree);
    NRecord record{{"file", model.file}, {"tree", {{"name", tree["name"]}, {"id", tree["id"]}}}};
    if (m_options.withTimes) {
      record["readMilliseconds"] = model.readMilliseconds;
      record["buildMilliseconds"] = model.buildMilliseconds;
    }
    record["variants"] = model.variants;
    record["notes"] = model.notes;
    if (!m_options.withIds) RemoveIds(record);
    return record;
  }

  void Print() {
    m_imported = NNodeSet(m_document);
    Trees trees;
    for (auto const& model : m_models) trees.push_back(model.tree);
    if (m_options.files.size() > 1) {
      trees.insert(trees.begin(), CreateCommonTree(m_document, trees));
    }
    // Its camera stands below a root.
    NStage const stage(m_document, trees.front());
    if (auto const lights = stage.GetEnvironment().GetSceneGraph()) trees.push_back(lights);

    auto const report =
        m_options.asJson ? CreateJsonReport(std::cout) : CreateTextReport(std::cout);
    for (auto const& model : m_models) report->AddFile(DescribeFile(model));
    if (!m_options.isSummary) PrintNodes(trees, *report);
    report->AddTotals(CountTotals(m_document, m_imported));
    // The first tree shows all others.
    report->Finish(DescribeBox(GetBoundingBox(*trees.front())));
  }

  void PrintNodes(Trees const& trees, NReport& report) const {
    for (auto const& tree : trees) PrintTree(*tree, report);
    for (auto const& domain : m_document.GetDomains()) PrintDomain(*domain, report);
  }

  void PrintTree(NSceneGraphTreeNode const& tree, NReport& report) const {
    NRecord record = Describe(tree);
    record["box"] = DescribeBox(GetBoundingBox(tree));
    report.AddTree(record);
    ItemLister lister(report, m_options.depth);
    WalkTree(tree, [&](NVisit const& visit) {
      if (!lister.IsListed(visit.depth)) return;
      NRecord item = Describe(visit.item);
      item["box"] = DescribeBox(visit.box);
      if (m_options.asJson && visit.parent != nullptr) {
        item["parent"] = {{"name", ToNarrow(visit.parent->GetName())}};
        if (m_options.withIds) item["parent"]["id"] = ToNarrow(visit.parent->GetID().ToString());
      }
      lister.Add(std::move(item), visit.depth);
    });
    lister.Finish();
  }

  void PrintDomain(core::domain::NDomainBase& domain, NReport& report) const {
    report.AddDomain(ToNarrow(domain.GetType()), domain.GetNodeCount(),
                     m_imported.CountOthers(domain));
    // Items and trees are printed with the trees.
    if (&domain == &m_document.GetItems() || &domain == &m_document.GetTrees()) return;
    for (auto at = domain.GetNodeBegin(); at != domain.GetNodeEnd(); ++at) {
      report.AddNode(Describe(*at));
    }
  }

  NRecord Describe(core::node::NNode const& node) const {
    NRecord record = DescribeNode(node);
    if (!m_options.withIds) RemoveIds(record);
    if (!m_imported.Has(node)) record["isAdded"] = true;
    if (m_options.withAttributes) record["attributes"] = DescribeAttributes(node);
    return record;
  }

  Options const& m_options;
  data::document::NDocument m_document;
  std::vector<importer::NImportedModel> m_models;
  NNodeSet m_imported;
};

std::string CheckDepth(std::string const& text) {
  constexpr std::size_t kMostDigits = 9;
  bool const isNumber = !text.empty() && text.size() <= kMostDigits &&
                        text.find_first_not_of("0123456789") == std::string::npos;
  return isNumber ? "" : "needs a whole number from 0";
}

}  // namespace

void AddInfo(CLI::App& program, int& status) {
  auto const options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand("info", "Print what is in model files.");
  command->add_option("FILE", options->files, "Model files")->required();
  auto* const summary =
      command->add_flag("--summary", options->isSummary, "Print only the totals and the box");
  command->add_option("--depth", options->depth, "Print only N levels of each tree")
      ->check(CLI::Validator(&CheckDepth, ""))
      ->excludes(summary)
      ->option_text("N");
  command->add_flag("--attributes", options->withAttributes, "Print every attribute of every node")
      ->excludes(summary);
  command->add_flag("--ids", options->withIds, "Print the ids of nodes, which each run makes anew");
  command->add_flag("--times", options->withTimes,
                    "Print how long the reading of each file and the building of its scene took");
  command->add_flag("--json", options->asJson, "Print one JSON object");
  AddModelOptions(*command);
  command->footer(kFooter);
  command->callback([options, &status] { status = Info(*options).Run(); });
}

}  // namespace corvanta::app
