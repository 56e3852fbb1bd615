#pragma once

#include <boost/intrusive_ptr.hpp>
#include <utility>

#include "corvanta/core/node/NNode.h"

namespace corvanta::data::history {

/// Holds an object of the model so that it can be brought back. What only these hold, and is in no
/// domain, counts as gone for references: see core::node::NNode.
class NKept {
 public:
  NKept() noexcept = default;
  NKept(core::node::NNode* node) noexcept : m_object(node), m_node(node) {
    if (m_node != nullptr) m_node->AddKeeper();
  }
  /// Of an object that is no node, such as a lamp or a surface.
  explicit NKept(core::reference_countable::NReferenceCountable* object) noexcept
      : m_object(object) {}
  NKept(NKept const& other) noexcept : m_object(other.m_object), m_node(other.m_node) {
    if (m_node != nullptr) m_node->AddKeeper();
  }
  NKept(NKept&& other) noexcept
      : m_object(std::move(other.m_object)), m_node(std::exchange(other.m_node, nullptr)) {}
  NKept& operator=(NKept other) noexcept {
    m_object.swap(other.m_object);
    std::swap(m_node, other.m_node);
    return *this;
  }
  ~NKept() {
    if (m_node != nullptr) m_node->RemoveKeeper();
  }

  /// Null if the object is no node.
  core::node::NNode* GetNode() const noexcept { return m_node; }
  core::reference_countable::NReferenceCountable* GetObject() const noexcept {
    return m_object.get();
  }
  explicit operator bool() const noexcept { return m_object != nullptr; }

 private:
  boost::intrusive_ptr<core::reference_countable::NReferenceCountable> m_object;
  core::node::NNode* m_node = nullptr;
};

}  // namespace corvanta::data::history
