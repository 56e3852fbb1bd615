#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/output/NReport.h"
#include "app/output/text.h"
#include "app/scene/NStage.h"
#include "app/scene/common_tree.h"
#include "app/scene/walk.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

namespace corvanta::app {

namespace {

using core::text::ToNarrow;
using data::domain::scenegraph::tree::NSceneGraphTreeNode;

constexpr char kFooter[] = R"(
Prints the trees with kind, name, id and box of each item, what each domain
holds, the box of the whole, and the times for reading and for building. Boxes
are in global coordinates. Two or more files become trees of their own, each
shown in a common tree by a reference item. As in any host, the scene comes with
an environment, a camera that sees the whole, and, if no file has lights, seven
of them in a tree of their own.)";

struct Options {
  std::vector<std::string> files;
  bool withAttributes = false;
  bool asJson = false;
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
  void Import(std::string const& file) {
    auto const model = OpenModel(m_document, file);
    if (!model) return;
    m_models.push_back(*model);
  }

  static NRecord DescribeFile(importer::NImportedModel const& model) {
    NRecord const tree = DescribeNode(*model.tree);
    return {{"file", model.file},
            {"tree", {{"name", tree["name"]}, {"id", tree["id"]}}},
            {"readMilliseconds", model.readMilliseconds},
            {"buildMilliseconds", model.buildMilliseconds},
            {"variants", model.variants},
            {"notes", model.notes}};
  }

  void Print() {
    std::vector<boost::intrusive_ptr<NSceneGraphTreeNode>> trees;
    for (auto const& model : m_models) trees.push_back(model.tree);
    if (m_options.files.size() > 1)
      trees.insert(trees.begin(), CreateCommonTree(m_document, trees));
    NStage const stage(m_document, trees.front());
    if (auto const lights = stage.GetEnvironment().GetSceneGraph()) trees.push_back(lights);

    auto const report =
        m_options.asJson ? CreateJsonReport(std::cout) : CreateTextReport(std::cout);
    for (auto const& model : m_models) report->AddFile(DescribeFile(model));
    for (auto const& tree : trees) PrintTree(*tree, *report);
    for (auto const& domain : m_document.GetDomains()) PrintDomain(*domain, *report);
    // The first tree shows all others.
    report->Finish(DescribeBox(GetBoundingBox(*trees.front())));
  }

  void PrintTree(NSceneGraphTreeNode const& tree, NReport& report) const {
    NRecord record = Describe(tree);
    record["box"] = DescribeBox(GetBoundingBox(tree));
    report.AddTree(record);
    WalkTree(tree, [&](NVisit const& visit) {
      NRecord item = Describe(visit.item);
      item["box"] = DescribeBox(visit.box);
      if (m_options.asJson && visit.parent != nullptr) {
        item["parent"] = ToNarrow(visit.parent->GetID().ToString());
      }
      report.AddItem(item, visit.depth);
    });
  }

  void PrintDomain(core::domain::NDomainBase& domain, NReport& report) const {
    report.AddDomain(ToNarrow(domain.GetType()), domain.GetNodeCount());
    // Items and trees are printed with the trees.
    if (&domain == &m_document.GetItems() || &domain == &m_document.GetTrees()) return;
    for (auto at = domain.GetNodeBegin(); at != domain.GetNodeEnd(); ++at) {
      report.AddNode(Describe(*at));
    }
  }

  NRecord Describe(core::node::NNode const& node) const {
    NRecord record = DescribeNode(node);
    if (m_options.withAttributes) record["attributes"] = DescribeAttributes(node);
    return record;
  }

  Options const& m_options;
  data::document::NDocument m_document;
  std::vector<importer::NImportedModel> m_models;
};

}  // namespace

void AddInfo(CLI::App& program, int& status) {
  auto const options = std::make_shared<Options>();
  CLI::App* const command =
      program.add_subcommand("info", "Build the scene of model files and print it.");
  command->add_option("FILE", options->files, "Model files")->required();
  command->add_flag("--attributes", options->withAttributes, "Print every attribute of every node");
  command->add_flag("--json", options->asJson, "Print one JSON object");
  command->footer(kFooter);
  command->callback([options, &status] { status = Info(*options).Run(); });
}

}  // namespace corvanta::app
