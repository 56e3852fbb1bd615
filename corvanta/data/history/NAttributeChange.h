#pragma once

#include <utility>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/core/variant/NVariant.h"

namespace corvanta::data::history {

/// An attribute of a node, a lamp or another host, its value before all that a change set tells of
/// and its value after. Holds the host.
class NAttributeChange {
 public:
  /// `node` is the host if that is a node, else null.
  NAttributeChange(core::attribute::NAttribute& attribute, core::node::NNode* node,
                   core::variant::NVariant&& before) noexcept
      : m_attribute(&attribute), m_node(node), m_before(std::move(before)) {
    Hold();
  }
  NAttributeChange(NAttributeChange const& other)
      : m_attribute(other.m_attribute),
        m_node(other.m_node),
        m_before(other.m_before),
        m_after(other.m_after) {
    Hold();
  }
  NAttributeChange(NAttributeChange&& other) noexcept
      : m_attribute(std::exchange(other.m_attribute, nullptr)),
        m_node(std::exchange(other.m_node, nullptr)),
        m_before(std::move(other.m_before)),
        m_after(std::move(other.m_after)) {}
  NAttributeChange& operator=(NAttributeChange other) noexcept {
    std::swap(m_attribute, other.m_attribute);
    std::swap(m_node, other.m_node);
    std::swap(m_before, other.m_before);
    std::swap(m_after, other.m_after);
    return *this;
  }
  ~NAttributeChange() {
    if (m_attribute == nullptr) return;
    if (m_node != nullptr) {
      m_node->RemoveKeeper();
      m_node->Release();
    } else {
      GetHost().Release();
    }
  }

  core::attribute::NAttributeHost& GetHost() const noexcept { return m_attribute->GetHost(); }
  core::attribute::NAttribute& GetAttribute() const noexcept { return *m_attribute; }
  /// Null for a host that is no node.
  core::node::NNode* GetNode() const noexcept { return m_node; }
  core::variant::NVariant const& GetBefore() const noexcept { return m_before; }
  core::variant::NVariant const& GetAfter() const noexcept { return m_after; }
  void SetAfter(core::variant::NVariant&& value) noexcept { m_after = std::move(value); }

 private:
  void Hold() const noexcept {
    if (m_node != nullptr) {
      m_node->AddRef();
      m_node->AddKeeper();
    } else {
      GetHost().AddRef();
    }
  }

  core::attribute::NAttribute* m_attribute;  // null when it was moved from
  core::node::NNode* m_node;
  core::variant::NVariant m_before;
  core::variant::NVariant m_after;
};

/// Whether two values are the same to the bit, where every NaN is the same and -0 is not 0.
CORVANTA_API bool AreSame(core::variant::NVariant const& a,
                          core::variant::NVariant const& b) noexcept;

}  // namespace corvanta::data::history
