// Text, paths and URIs: conversion is stable, and what is made of two paths follows from them.
#include <algorithm>
#include <cctype>

#include "corvanta/core/text/convert.h"
#include "corvanta/core/uri/NUri.h"
#include "corvanta/data/resource/image/create_image.h"
#include "corvanta/importer/escape.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

using core::uri::NPath;
using core::uri::NUri;

void CheckText(std::string_view text) {
  std::wstring const wide = core::text::ToWide(text);
  std::string const narrow = core::text::ToNarrow(wide);
  Require(core::text::ToWide(narrow) == wide, "wide text comes back");
  bool const isAscii = std::ranges::all_of(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != 0; });
  Require(!isAscii || narrow == text, "plain text comes back");
}

void CheckEscapes(std::string const& text) {
  std::string const plain = importer::Unescape(text);
  auto const count = static_cast<std::size_t>(std::ranges::count(text, '%'));
  Require(plain.size() <= text.size() && plain.size() + 2 * count >= text.size(),
          "each escape is three characters for one");
  std::string escaped;
  for (char const c : plain) {
    constexpr char kDigits[] = "0123456789abcdef";
    auto const byte = static_cast<unsigned char>(c);
    escaped += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  Require(importer::Unescape(escaped) == plain, "an escaped text comes back");
}

void CheckExtension(NPath const& path) {
  std::wstring const& text = path.ToString();
  std::wstring const extension = path.GetExtension();
  static_cast<void>(data::resource::image::ExtensionToFormat(extension.c_str()));
  Require(text.ends_with(extension), "an extension ends the path");
  Require(extension.empty() || (extension[0] == L'.' && extension.find(L'/') == extension.npos &&
                                extension.find(L'.', 1) == extension.npos),
          "an extension is a point and no other");
  Require(extension.empty() || text[text.size() - extension.size() - 1] != L'/',
          "a name has more than its extension");
}

void CheckJoined(NPath const& left, NPath const& right) {
  NPath const joined = left / right;
  if (left.IsEmpty() || right.IsEmpty()) {
    Require(joined == (left.IsEmpty() ? right : left), "nothing joined to a path leaves it");
    return;
  }
  auto const isSlash = [](wchar_t c) { return c == L'/'; };
  std::wstring expected = left.ToString();
  while (!expected.empty() && isSlash(expected.back())) expected.pop_back();
  auto const begin = std::ranges::find_if_not(right.ToString(), isSlash);
  expected += L'/' + std::wstring(begin, right.ToString().end());
  Require(joined.ToString() == expected, "paths are joined by one slash");
}

void CheckUris(NPath const& path) {
  for (NUri const& uri :
       {NUri::CreateFileUri(path), NUri::CreateInternalUri(path), NUri::CreateSystemUri(path)}) {
    Require(uri == uri && uri.GetPath() == path, "a URI keeps its path");
    NPath const file = GetFile(uri);
    static_cast<void>(Exists(file));
    bool const hasFile = uri.GetType() != core::uri::UT_INTERNAL && !path.IsEmpty();
    Require(file.IsEmpty() != hasFile, "a URI names a file or none");
    if (uri.GetType() == core::uri::UT_FILE) Require(file == path, "a file is its path");
    if (uri.GetType() == core::uri::UT_SYSTEM && hasFile) {
      std::wstring const folder = core::uri::GetResourceFolder().ToString();
      Require(file.ToString().starts_with(folder), "a system picture is in its folder");
    }
  }
}

}  // namespace
}  // namespace corvanta::fuzz

// Two texts with a zero between them.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  fuzz::Input input({data, size});
  std::string_view const first = input.TakeText();
  std::string_view const second = fuzz::AsText(input.GetRest());
  fuzz::CheckText(first);
  fuzz::CheckText(second);
  fuzz::CheckEscapes(std::string(second));
  core::uri::NPath const left = core::text::ToWide(first), right = core::text::ToWide(second);
  for (core::uri::NPath const& path : {left, right, left / right}) {
    fuzz::CheckExtension(path);
    fuzz::CheckUris(path);
  }
  fuzz::CheckJoined(left, right);
  return 0;
}
