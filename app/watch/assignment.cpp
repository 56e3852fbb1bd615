#include "app/watch/assignment.h"

#include <charconv>
#include <cmath>
#include <map>

#include "app/output/text.h"
#include "app/scene/float_range.h"
#include "corvanta/core/text/convert.h"

namespace corvanta::app {

namespace {

using core::text::ToNarrow;
using core::variant::NVariant;

// The attribute that "NAME.ATTRIBUTE" names: the earliest point gives the longest attribute.
NAssignment Find(data::document::NDocument const& document, std::wstring const& target,
                 bool& hasNode) {
  for (auto point = target.find(L'.'); point != std::wstring::npos;
       point = target.find(L'.', point + 1)) {
    for (auto const& node : document.QueryNodes(target.substr(0, point))) {
      hasNode = true;
      auto* const attribute = node->QueryAttribute(target.substr(point + 1));
      if (attribute != nullptr) return {node, attribute, {}};
    }
  }
  return {};
}

// What isn't finite was meant; what a float can't hold would become so.
bool CanBeSet(double number) { return !std::isfinite(number) || IsInFloatRange(number); }
bool CanBeSet(long) { return true; }

template <class Number>
Number ParseNumber(std::wstring const& text, char const* what) {
  std::string const narrow = ToNarrow(text);
  char const* begin = narrow.data();
  char const* const end = begin + narrow.size();
  // The sign is no part of what from_chars reads.
  if (begin != end && *begin == '+' && begin + 1 != end && begin[1] != '-') ++begin;
  Number number{};
  auto const [rest, error] = std::from_chars(begin, end, number);
  bool const isNumber = rest == end && begin != end;
  if (isNumber && (error == std::errc::result_out_of_range || !CanBeSet(number))) {
    throw NAssignmentError(Quoted(narrow) + " isn't " + what + " in range");
  }
  if (error != std::errc() || rest != end) {
    throw NAssignmentError(Quoted(narrow) + " isn't " + what);
  }
  return number;
}

bool ParseBool(std::wstring const& text) {
  static std::map<std::wstring, bool> const kWords{
      {L"true", true},   {L"yes", true}, {L"on", true},   {L"1", true},
      {L"false", false}, {L"no", false}, {L"off", false}, {L"0", false}};
  auto const word = kWords.find(text);
  if (word == kWords.end()) throw NAssignmentError(Quoted(ToNarrow(text)) + " isn't true or false");
  return word->second;
}

NVariant ParseValue(core::attribute::NAttribute const& attribute, std::wstring const& text) {
  switch (attribute.GetKind()) {
    case core::variant::NVK_DOUBLE:
      return ParseNumber<double>(text, "a number");
    case core::variant::NVK_LONG:
      return ParseNumber<long>(text, "a whole number");
    case core::variant::NVK_BOOL:
      return ParseBool(text);
    case core::variant::NVK_STRING:
      return text;
    default:
      throw NAssignmentError("the attribute holds no value");
  }
}

}  // namespace

NAssignment ParseAssignment(data::document::NDocument const& document, std::wstring const& text) {
  bool hasNode = false;
  for (auto equals = text.find(L'='); equals != std::wstring::npos;
       equals = text.find(L'=', equals + 1)) {
    NAssignment assignment = Find(document, text.substr(0, equals), hasNode);
    if (!assignment.node) continue;
    assignment.value = ParseValue(*assignment.attribute, text.substr(equals + 1));
    return assignment;
  }
  if (text.find(L'=') == std::wstring::npos || text.find(L'.') == std::wstring::npos) {
    throw NAssignmentError("isn't NAME.ATTRIBUTE=VALUE");
  }
  throw NAssignmentError(hasNode ? "no such attribute" : "no node of that name");
}

}  // namespace corvanta::app
