#include "app/play/csv.h"

#include <string>

#include "app/output/text.h"

namespace corvanta::app {

void WriteCsvHead(std::ostream& out, std::vector<NPlayer::Channel> const& channels) {
  out << "time";
  for (auto const& [item, attribute] : channels) {
    std::string name = item + '.' + attribute;
    if (name.find_first_of(",\"\r\n") != std::string::npos) {
      for (auto at = name.find('"'); at != std::string::npos; at = name.find('"', at + 2)) {
        name.insert(at, 1, '"');
      }
      name = '"' + name + '"';
    }
    out << ',' << name;
  }
  out << '\n';
}

void WriteCsvRow(std::ostream& out, double time, std::vector<double> const& values) {
  out << NumberText(time);
  for (double const value : values) out << ',' << NumberText(value);
  out << '\n';
}

}  // namespace corvanta::app
