#include "app/output/text.h"

#include <iostream>

namespace corvanta::app {

void PrintError(std::string_view subject, std::string_view reason) {
  std::cout.flush();
  std::cerr << "corvanta: " << OneLine(subject) << ": " << OneLine(reason) << std::endl;
}

void PrintNote(std::string_view subject, std::string_view note) {
  PrintError(subject, "note: " + std::string(note));
}

}  // namespace corvanta::app
