#include "corvanta/data/domain/domain_types.h"

#include <map>

namespace corvanta::data::domain {

wchar_t const* const DT_ANIMATION = L"animation";
wchar_t const* const DT_CAMERA = L"camera";
wchar_t const* const DT_ENVIRONMENT = L"environment";
wchar_t const* const DT_GEOMETRY = L"geometry";
wchar_t const* const DT_IMAGE = L"image";
wchar_t const* const DT_LIGHT = L"light";
wchar_t const* const DT_MATERIAL = L"material";
wchar_t const* const DT_MOVIE = L"movie";
wchar_t const* const DT_PROJECTION = L"projection";
wchar_t const* const DT_SCENE = L"scene";
wchar_t const* const DT_SCENEGRAPH_ITEM = L"scenegraphitem";
wchar_t const* const DT_SCENEGRAPH_TREE = L"scenegraphtree";
wchar_t const* const DT_SOUND = L"sound";
wchar_t const* const DT_TEXTURE = L"texture";
wchar_t const* const DT_LIGHT_ENV = L"lightenvironment";

wchar_t const* DomainTypeFromString(std::wstring const& name) {
  static std::map<std::wstring, wchar_t const*> const types = [] {
    std::map<std::wstring, wchar_t const*> made;
    for (wchar_t const* const type :
         {DT_ANIMATION, DT_CAMERA, DT_ENVIRONMENT, DT_GEOMETRY, DT_IMAGE, DT_LIGHT, DT_MATERIAL,
          DT_MOVIE, DT_PROJECTION, DT_SCENE, DT_SCENEGRAPH_ITEM, DT_SCENEGRAPH_TREE, DT_SOUND,
          DT_TEXTURE, DT_LIGHT_ENV}) {
      made.emplace(type, type);
    }
    return made;
  }();
  auto const found = types.find(name);
  return found == types.end() ? nullptr : found->second;
}

wchar_t const* DomainTypeFromString(wchar_t const* name) {
  return name == nullptr ? nullptr : DomainTypeFromString(std::wstring(name));
}

}  // namespace corvanta::data::domain
