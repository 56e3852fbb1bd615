// What the debugger looks at: it stops where Stop is called.
#include <corvanta/names.h>

using namespace corvanta;

extern "C" void Stop() { asm volatile(""); }

int main() {
  NDocument document;
  auto const model = document.GetItems().CreateNode<NSceneGraphModelNode>(
      core::node::NNodeID(L"0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0"));
  model->SetName(L"chär");
  auto const inner = document.GetTrees().CreateNode(core::node::NNodeID(L"inner"));
  inner->SetRoot(model);
  auto const shown =
      document.GetItems().CreateNode<NSceneGraphReferenceNode>(core::node::NNodeID(L"shown"));
  shown->SetName(L"shown");
  shown->SetSceneGraph(inner);
  auto const outer = document.GetTrees().CreateNode(core::node::NNodeID(L"outer"));
  outer->SetName(L"room");
  outer->SetRoot(shown);
  NSceneGraphPath<NSceneGraphModelNode const> const path(*model, *outer, {*shown});
  core::node::NNodeReference<NSceneGraphItemNode> const reference(*model);
  core::node::NNodeReference<NSceneGraphItemNode> const empty;
  boost::intrusive_ptr<NSceneGraphModelNode> const nobody;
  core::variant::NVariant const number(0.25), text(L"a \"b\""), nothing;
  core::locator::NLocator const locator(
      core::uri::NUri::CreateFileUri(core::uri::NPath(L"/a/b.zip")), core::uri::NPath(L"c.png"));
  VX_Math::Matrix matrix;
  matrix.SetTranslate({1, 2.5f, -3});
  VX_Math::Box3 const box({0, 0, 0}, {1, 2, 3});
  Stop();
  return IsValid(path) && reference && !empty && !nobody && box.max.x > 0 && nothing == nothing &&
                 number != text && !locator.GetUri().GetPath().ToString().empty()
             ? 0
             : 1;
}
