#pragma once

#include <ostream>
#include <type_traits>

#include "tests/support/test.h"

/// The golden list: what the callers see of every node kind, written down a second time, by hand.
/// The rows stand in <group>_kinds.cpp, a file for each group of kinds, which never includes the
/// tables that the nodes are made from; node_kind_test.cpp checks whatever is listed. A new kind is
/// one call of MakeKind in one of those files.
namespace corvanta::node_kinds {

using core::attribute::NAttributeHost;
using core::variant::NVariant;
using AttributeMultiplexer = data::events::attribute_change::NMultiplexer;

/// An attribute: its default, whose kind is the attribute's type, and how it is read and written.
struct Row {
  std::wstring name;
  NVariant value;
  bool flag = true;
  std::function<NVariant(NAttributeHost const&)> get = {};
  std::function<void(NAttributeHost&, NVariant const&)> set = {};
};

template <class T>
T FromVariant(NVariant const& value) {
  if constexpr (std::is_same_v<T, double>) {
    return value.GetDouble();
  } else if constexpr (std::is_same_v<T, bool>) {
    return value.GetBool();
  } else if constexpr (std::is_same_v<T, std::wstring>) {
    return value.GetString();
  } else {
    return static_cast<T>(value.GetLong());
  }
}

/// Reached by name only.
inline Row Named(wchar_t const* name, NVariant const& value) { return {name, value}; }

/// With a getter.
template <class Host, class T>
Row Read(wchar_t const* name, NVariant const& value, T (Host::*get)() const) {
  Row row = Named(name, value);
  row.get = [get](NAttributeHost const& host) {
    return NVariant((dynamic_cast<Host const&>(host).*get)());
  };
  return row;
}

/// With a setter.
template <class Host, class T>
Row Written(wchar_t const* name, NVariant const& value, void (Host::*set)(T)) {
  Row row = Named(name, value);
  row.set = [set](NAttributeHost& host, NVariant const& to) {
    (dynamic_cast<Host&>(host).*set)(FromVariant<std::decay_t<T>>(to));
  };
  return row;
}

/// With both.
template <class Getter, class Setter>
Row Both(wchar_t const* name, NVariant const& value, Getter get, Setter set) {
  Row row = Read(name, value, get);
  row.set = Written(name, value, set).set;
  return row;
}

/// Created without a value, and not to be saved.
inline Row Empty(wchar_t const* name) { return {name, NVariant(), false}; }

/// Not to be saved.
inline Row Unsaved(Row row) {
  row.flag = false;
  return row;
}

struct NodeKind {
  char const* className;    // of the node
  wchar_t const* type;      // the domain's DT_ pointer
  wchar_t const* typeText;  // and its characters
  wchar_t const* domainName;
  wchar_t const* nodeName;
  bool isCopied;  // whether the kind offers CopyTo
  std::vector<Row> rows;
  std::function<Pointer<core::domain::NDomainBase>(AttributeMultiplexer*)> makeDomain = {};
  std::function<Pointer<data::domain::NNode>(core::domain::NDomainBase&)> makeNode = {};
  /// Empty where the class offers no CopyTo.
  std::function<void(data::domain::NNode const&, data::domain::NNode&)> copy = {};
};

inline void PrintTo(NodeKind const& kind, std::ostream* out) { *out << kind.className; }

/// Completes a kind by its classes. The domain gets no multiplexer but the one of attributes.
template <class Domain, class Node>
NodeKind MakeKind(NodeKind kind) {
  kind.makeDomain = [](AttributeMultiplexer* multiplexer) {
    core::domain::NDomainManager const* const manager = nullptr;
    Domain* domain;
    if constexpr (std::is_constructible_v<Domain, decltype(manager), AttributeMultiplexer*>) {
      domain = new Domain(manager, multiplexer);
    } else if constexpr (std::is_constructible_v<Domain, decltype(manager), AttributeMultiplexer*,
                                                 std::nullptr_t>) {
      domain = new Domain(manager, multiplexer, nullptr);
    } else if constexpr (std::is_constructible_v<Domain, decltype(manager), AttributeMultiplexer*,
                                                 std::nullptr_t, std::nullptr_t>) {
      domain = new Domain(manager, multiplexer, nullptr, nullptr);
    } else {
      domain = new Domain(manager, multiplexer, nullptr, nullptr, nullptr);
    }
    return Pointer<core::domain::NDomainBase>(domain);
  };
  kind.makeNode = [](core::domain::NDomainBase& domain) {
    return Pointer<data::domain::NNode>(
        dynamic_cast<Domain&>(domain).template CreateNode<Node>(NNodeID()));
  };
  if constexpr (requires(Node const& source, Node& target) { source.CopyTo(target); }) {
    kind.copy = [](data::domain::NNode const& source, data::domain::NNode& target) {
      dynamic_cast<Node const&>(source).CopyTo(dynamic_cast<Node&>(target));
    };
  }
  return kind;
}

/// The host has exactly these attributes, in this order, with their defaults.
void ExpectDefaults(NAttributeHost const& host, std::vector<Row> const& rows);

/// A value for `row` that isn't its default and differs from that of a row of another `index`.
NVariant MakeProbe(Row const& row, std::size_t index);

/// INSTANTIATE_TEST_SUITE_P(<Group>, NodeKindTest, testing::Values(MakeKind...), NameOfKind)
class NodeKindTest : public testing::TestWithParam<NodeKind> {};

inline std::string NameOfKind(testing::TestParamInfo<NodeKind> const& info) {
  return info.param.className;
}

}  // namespace corvanta::node_kinds
