#include "corvanta/importer/formats.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <sstream>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/limits.h"
#include "corvanta/importer/process/NReadModel.h"

namespace corvanta::importer {

std::vector<NModelFormat> GetModelFormats() {
  std::vector<NModelFormat> formats;
  std::istringstream lines(ReadFormats(GetImportLimits()));
  for (std::string line; std::getline(lines, line);) {
    NModelFormat& format = formats.emplace_back();
    std::istringstream fields(line);
    std::string extensions;
    std::getline(fields, format.name, '\t');
    std::getline(fields, format.reader, '\t');
    std::getline(fields, extensions, '\t');
    std::istringstream words(boost::algorithm::to_lower_copy(extensions));
    for (std::string word; words >> word;) format.extensions.push_back(word);
    if (format.extensions.empty()) throw NImportError("the reader's list of formats is damaged");
  }
  return formats;
}

}  // namespace corvanta::importer
