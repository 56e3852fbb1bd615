#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/output/text.h"
#include "app/watch/NEventPrinter.h"
#include "app/watch/NFollower.h"
#include "app/watch/assignment.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

namespace corvanta::app {

namespace {

namespace scenegraph = data::domain::scenegraph;
using scenegraph::item::NSceneGraphItemNode;

constexpr char kFooter[] = R"(
Without --set the file is followed: whenever it, a file that it names or one of
its pictures has been written, it is read again, and each difference is a line:
what came, what went, attributes with the old and the new value, links, arrays.
What can't be read costs a line on stderr, and the last scene stays. Ctrl-C ends
it, with the status 130.

With --set each event is a line: its kind, the node, the attribute, the old and
the new value, and the microseconds from the begin of the write. Then come the
box of the scene and the global transform of the items that were set, before and
after. Transforms are for row vectors.

NAME is the name of a node as info prints it. It is looked for among the items
first, then among trees, lights, cameras, materials, textures, images and
geometries; a node without such an attribute is skipped. Of several ways to
part NAME.ATTRIBUTE, the one with the longest attribute that is there counts.
VALUE is read as what the attribute holds: a number, a whole number, true or
false, or text.

  corvanta watch model.gltf
  corvanta watch model.gltf --set wheel.rotation.x=90)";

struct Options {
  std::string file;
  std::vector<std::string> assignments;
  std::optional<double> seconds;
  bool isOnce = false, asJson = false;
};

// The box of the scene and the transforms of the items that are written to.
struct State {
  NRecord box;
  std::vector<NRecord> transforms;
};

class Watch {
 public:
  explicit Watch(Options const& options) : m_options(options) {}

  int Run() {
    auto const model = OpenModel(m_document, m_options.file);
    if (!model) return NS_FILE;
    m_tree = model->tree;
    std::vector<NAssignment> assignments;
    for (std::string const& text : m_options.assignments) {
      try {
        assignments.push_back(ParseAssignment(m_document, core::text::ToWide(text)));
      } catch (NAssignmentError const& error) {
        PrintError("--set " + text, error.what());
        return NS_OPTIONS;
      }
    }
    for (NAssignment const& assignment : assignments) AddItem(*assignment.node);

    State const before = Look();
    Write(assignments);
    Print(before, Look());
    return NS_DONE;
  }

 private:
  void AddItem(core::node::NNode& node) {
    auto* const item = dynamic_cast<NSceneGraphItemNode*>(&node);
    if (item == nullptr) return;
    for (auto const& known : m_items) {
      if (known.get() == item) return;
    }
    m_items.emplace_back(item);
  }

  void Write(std::vector<NAssignment> const& assignments) {
    boost::intrusive_ptr<NEventPrinter> const printer(
        new NEventPrinter(std::cout, m_options.asJson));
    m_document.GetEvents().AddObserver(*printer);
    for (NAssignment const& assignment : assignments) {
      printer->StartClock();
      assignment.attribute->SetValue(assignment.value, true);
    }
    m_document.GetEvents().RemoveObserver(*printer);
  }

  State Look() const {
    State state{DescribeBox(GetBoundingBox(*m_tree)), {}};
    for (auto const& item : m_items) {
      scenegraph::NSceneGraphPath<NSceneGraphItemNode> const path(*item, *m_tree);
      state.transforms.push_back(DescribeMatrix(path.GetGlobalTransform()));
    }
    return state;
  }

  void Print(State const& before, State const& after) const {
    if (m_options.asJson) {
      PrintLine({{"kind", "box"}, {"before", before.box}, {"after", after.box}});
    } else {
      std::cout << "box before " << FormatValue(before.box) << "\nbox after  "
                << FormatValue(after.box) << '\n';
    }
    for (std::size_t i = 0; i != m_items.size(); ++i) {
      NRecord const item = DescribeNode(*m_items[i]);
      if (m_options.asJson) {
        PrintLine({{"kind", "transform"},
                   {"node", item["name"]},
                   {"id", item["id"]},
                   {"before", before.transforms[i]},
                   {"after", after.transforms[i]}});
      } else {
        PrintTransform(item, "before", before.transforms[i]);
        PrintTransform(item, "after", after.transforms[i]);
      }
    }
  }

  static void PrintLine(NRecord const& record) { std::cout << record.dump() << '\n'; }

  static void PrintTransform(NRecord const& item, char const* when, NRecord const& numbers) {
    std::cout << item["kind"].get<std::string>() << ' ' << FormatValue(item["name"])
              << " global transform " << when << '\n';
    for (std::size_t row = 0; row != 16; row += 4) {
      std::cout << ' ';
      for (std::size_t column = row; column != row + 4; ++column) {
        std::cout << ' ' << FormatValue(numbers[column]);
      }
      std::cout << '\n';
    }
  }

  Options const& m_options;
  data::document::NDocument m_document;
  boost::intrusive_ptr<scenegraph::tree::NSceneGraphTreeNode> m_tree;
  std::vector<boost::intrusive_ptr<NSceneGraphItemNode>> m_items;
};

}  // namespace

void AddWatch(CLI::App& program, int& status) {
  auto const options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(
      "watch", "Follow a file that is edited, or set attributes and print the events.");
  command->add_option("FILE", options->file, "Model file")->required();
  auto* const set = command
                        ->add_option("--set", options->assignments,
                                     "Set an attribute of a node, print the events and end; may be "
                                     "given several times, carried out in order")
                        ->allow_extra_args(false)
                        ->option_text("NAME.ATTRIBUTE=VALUE");
  command->add_flag("--once", options->isOnce, "End after the first change of the file")
      ->excludes(set);
  command->add_option("--for", options->seconds, "End after that time, with the status 0")
      ->check(CLI::NonNegativeNumber)
      ->excludes(set)
      ->option_text("SECONDS");
  command->add_flag("--json", options->asJson, "Print one JSON object a line");
  AddModelOptions(*command);
  command->footer(kFooter);
  command->callback([options, &status] {
    status = options->assignments.empty() ? NFollower(options->file, &OpenModel, options->asJson)
                                                .Run(options->seconds, options->isOnce)
                                          : Watch(*options).Run();
  });
}

}  // namespace corvanta::app
