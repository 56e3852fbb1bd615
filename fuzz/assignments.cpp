// NAME.ATTRIBUTE=VALUE either fails with a line of text and leaves all as it was, or names an
// attribute by the text before an equals sign and gives it a value of its kind.
#include <algorithm>
#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "app/watch/assignment.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/texture/NTextureNode.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

using core::attribute::NAttribute;
using core::variant::NVariant;

class Document : public data::document::NDocument {
 public:
  Document() {
    Add(GetLights(), L"lamp");
    Add(GetCameras(), L"lamp");  // of one name with another
    Add(GetMaterials(), L"a.b");
    Add(GetTextures(), L"a=b.c");
  }

  std::vector<NVariant> GetValues() const {
    std::vector<NVariant> values;
    for (auto const& node : m_nodes)
      for (auto at = node->GetAttributeBegin(); at != node->GetAttributeEnd(); ++at)
        values.push_back(at->GetValue());
    return values;
  }

 private:
  template <class Domain>
  void Add(Domain& domain, wchar_t const* name) {
    auto const node = domain.CreateNode(core::node::NNodeID());
    node->SetName(name);
    m_nodes.push_back(node);
  }

  std::vector<boost::intrusive_ptr<core::node::NNode>> m_nodes;
};

bool AreSame(NVariant const& left, NVariant const& right) {
  bool const areNaN =
      left.GetDouble() != left.GetDouble() && right.GetDouble() != right.GetDouble();
  return left == right || (areNaN && left.GetKind() == right.GetKind());
}

bool AreSame(std::vector<NVariant> const& left, std::vector<NVariant> const& right) {
  return std::ranges::equal(left, right,
                            [](auto const& a, auto const& b) { return AreSame(a, b); });
}

void CheckAssignment(Document const& document, app::NAssignment const& assignment,
                     std::wstring const& text) {
  NAttribute& attribute = *assignment.attribute;
  Require(&attribute.GetHost() == assignment.node.get(), "the attribute is the node's");
  std::wstring const target = assignment.node->GetName() + L'.' + attribute.GetName() + L'=';
  Require(text.starts_with(target), "the text names the node and its attribute");
  Require(assignment.value.GetKind() == attribute.GetKind(), "the value is of the kind held");

  auto const before = document.GetValues();
  NVariant const old = attribute.GetValue();
  for (NVariant const& other : {NVariant(), NVariant(true), NVariant(L"text"), NVariant(1.5)}) {
    bool const isTaken = attribute.Try(other, true);
    Require(isTaken ? AreSame(attribute.GetValue(), other) : AreSame(document.GetValues(), before),
            "a value of another kind changes nothing");
    attribute.SetValue(old, false);
  }
  Require(attribute.Try(assignment.value, true), "the value is taken");
  Require(AreSame(attribute.GetValue(), assignment.value), "the value is there");
  if (attribute.GetKind() == core::variant::NVK_STRING)
    Require(attribute.GetString() == text.substr(target.size()), "text is taken as it is");
  attribute.SetValue(old, true);
  Require(AreSame(document.GetValues(), before), "nothing else has changed");
}

}  // namespace
}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  static fuzz::Document const& document = *new fuzz::Document;
  constexpr std::size_t kMostBytes = 1000;  // each point is tried with each equals sign
  std::wstring const text = core::text::ToWide(fuzz::AsText({data, std::min(size, kMostBytes)}));
  auto const before = document.GetValues();
  try {
    fuzz::CheckAssignment(document, app::ParseAssignment(document, text), text);
  } catch (app::NAssignmentError const& error) {
    std::string const reason = error.what();
    fuzz::Require(!reason.empty() && reason.find('\n') == reason.npos, "a reason is a line");
    fuzz::Require(fuzz::AreSame(document.GetValues(), before), "what fails changes nothing");
  }
  return 0;
}
