#include "app/play/NFrameWriter.h"

#include <charconv>
#include <string_view>

#include "app/output/picture_file.h"

namespace corvanta::app {

namespace {

constexpr unsigned kMostDigits = 20;

/// The one place of a number in a pattern.
struct Place {
  std::size_t begin = std::string::npos, end = 0;
  char fill = ' ';
  unsigned width = 0;
  bool isGood = false;
};

Place FindPlace(std::string const& pattern) {
  Place place;
  place.begin = pattern.find('%');
  if (place.begin == std::string::npos) return place;
  char const* at = pattern.data() + place.begin + 1;
  char const* const end = pattern.data() + pattern.size();
  if (at != end && *at == '0') place.fill = *at++;
  at = std::from_chars(at, end, place.width).ptr;
  if (at == end || *at != 'd' || place.width > kMostDigits) return place;
  place.end = static_cast<std::size_t>(at - pattern.data()) + 1;
  place.isGood = pattern.find('%', place.end) == std::string::npos;
  return place;
}

}  // namespace

NFrameWriter::NFrameWriter(data::document::NDocument const& document, NStage& stage,
                           std::string const& pattern, unsigned width, unsigned height)
    : m_pattern(pattern), m_preview(document, stage, width, height) {}

std::string NFrameWriter::FindFault(std::string const& pattern) {
  if (!FindPlace(pattern).isGood) {
    return "needs one place for the number, such as frames/%04d.png";
  }
  std::string const fault = FindPictureFault(pattern);
  return fault.empty() ? fault : pattern + ": " + fault;
}

std::string NFrameWriter::GetPath(std::string const& pattern, std::size_t frame) {
  Place const place = FindPlace(pattern);
  std::string number = std::to_string(frame);
  if (number.size() < place.width) number.insert(0, place.width - number.size(), place.fill);
  return pattern.substr(0, place.begin) + number + pattern.substr(place.end);
}

void NFrameWriter::Write(std::size_t frame) {
  WritePicture(GetPath(frame), m_preview.TakePicture());
}

}  // namespace corvanta::app
