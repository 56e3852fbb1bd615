#include "app/output/NReport.h"

#include <algorithm>

#include "app/output/text.h"

namespace corvanta::app {

namespace {

class TextReport : public NReport {
 public:
  explicit TextReport(std::ostream& out) : m_out(out) {}

  void AddFile(NRecord const& file) override {
    m_out << "file " << Quoted(file["file"].get<std::string>());
    if (file.contains("readMilliseconds")) {
      m_out << " read " << Time(file["readMilliseconds"]) << " built "
            << Time(file["buildMilliseconds"]);
    }
    m_out << '\n';
    for (auto const& variant : file["variants"]) {
      m_out << "  variant " << Quoted(variant.get<std::string>()) << '\n';
    }
  }
  void AddTree(NRecord const& tree) override { Write(tree, ""); }
  void AddItem(NRecord const& item, std::size_t depth) override {
    // Beyond this a line would be nothing but indentation.
    constexpr std::size_t kDeepest = 40;
    std::string indent(2 * std::min(depth + 1, kDeepest), ' ');
    if (depth >= kDeepest) indent += '[' + std::to_string(depth) + "] ";
    Write(item, indent);
  }
  void AddDomain(std::string const& type, std::size_t count, std::size_t added) override {
    m_out << "domain " << type << ": " << count;
    if (added != 0) m_out << ", " << added << " of them added by corvanta";
    m_out << '\n';
  }
  void AddNode(NRecord const& node) override { Write(node, "  "); }
  void AddTotals(NRecord const& totals) override {
    m_out << "totals\n";
    for (auto const& [name, number] : totals.items()) {
      m_out << "  " << name << ": " << FormatValue(number) << '\n';
    }
  }
  void Finish(NRecord const& box) override { m_out << "box " << FormatValue(box) << '\n'; }

 private:
  static std::string Time(double milliseconds) {
    return NumberText(static_cast<float>(static_cast<long>(milliseconds * 1000.0)) / 1000.0f) +
           " ms";
  }
  void Write(NRecord const& record, std::string const& indent) {
    m_out << indent << FormatRecord(record) << '\n';
    auto const attributes = record.find("attributes");
    if (attributes == record.end()) return;
    for (auto const& [name, value] : attributes->items()) {
      m_out << indent << "    " << name << " = " << FormatValue(value) << '\n';
    }
  }

  std::ostream& m_out;
};

class JsonReport : public NReport {
 public:
  explicit JsonReport(std::ostream& out) : m_out(out) {}

  void AddFile(NRecord const& file) override {
    Open(kFiles);
    Element(file);
  }
  void AddTree(NRecord const& tree) override {
    Open(kTrees);
    CloseInner();
    OpenInner(tree, "items");
  }
  void AddItem(NRecord const& item, std::size_t depth) override {
    NRecord record = item;
    record["depth"] = depth;
    Element(record);
  }
  void AddDomain(std::string const& type, std::size_t count, std::size_t added) override {
    Open(kDomains);
    CloseInner();
    OpenInner({{"type", type}, {"count", count}, {"added", added}}, "nodes");
  }
  void AddNode(NRecord const& node) override { Element(node); }
  void AddTotals(NRecord const& totals) override {
    Open(kDone);
    m_out << "\"totals\": " << Dump(totals) << ",\n";
  }
  void Finish(NRecord const& box) override {
    Open(kDone);
    m_out << "\"box\": " << Dump(box) << "\n}\n";
  }

 private:
  enum Section { kNone, kFiles, kTrees, kDomains, kDone };

  static std::string Dump(NRecord const& record) {
    return record.dump(-1, ' ', false, NRecord::error_handler_t::replace);
  }
  // Goes on to `section`; those before it that have nothing to show are empty lists.
  void Open(Section section) {
    while (m_section != section) {
      if (m_section == kNone) {
        m_out << '{';
      } else {
        CloseInner();
        m_out << "\n],";
      }
      m_section = static_cast<Section>(m_section + 1);
      m_out << '\n';
      if (m_section == kFiles) m_out << "\"files\": [";
      if (m_section == kTrees) m_out << "\"trees\": [";
      if (m_section == kDomains) m_out << "\"domains\": [";
      m_isFirst = true;
    }
  }
  // An object with a list of its own, which stays open.
  void OpenInner(NRecord const& record, char const* list) {
    std::string head = Dump(record);
    head.pop_back();
    m_out << (m_isFirst ? "\n" : ",\n") << head << ",\"" << list << "\":[";
    m_isInner = true;
    m_isFirst = true;
  }
  void CloseInner() {
    if (!m_isInner) return;
    m_out << "]}";
    m_isInner = false;
    m_isFirst = false;
  }
  void Element(NRecord const& record) {
    m_out << (m_isFirst ? "\n" : ",\n") << Dump(record);
    m_isFirst = false;
  }

  std::ostream& m_out;
  Section m_section = kNone;
  bool m_isFirst = true;
  bool m_isInner = false;
};

}  // namespace

NReport::~NReport() = default;

std::unique_ptr<NReport> CreateTextReport(std::ostream& out) {
  return std::make_unique<TextReport>(out);
}

std::unique_ptr<NReport> CreateJsonReport(std::ostream& out) {
  return std::make_unique<JsonReport>(out);
}

}  // namespace corvanta::app
