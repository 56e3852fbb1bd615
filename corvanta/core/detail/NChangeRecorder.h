#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/export.h"

namespace corvanta::core {

namespace attribute {
class NAttribute;
}
namespace domain {
class NDomainBase;
}
namespace name {
class NNamedObject;
}
namespace node {
class NNode;
}

namespace detail {

/// Whoever writes down what changes, to undo it.
///
/// A setter notifies it of its change itself, before any listener: what listeners change in turn
/// comes after it, whoever registered where and when. The change is in place. It never throws; for
/// lack of memory it notes that something is missing.
class CORVANTA_API NChangeRecorder : public reference_countable::NReferenceCountable {
 public:
  /// All changes until EndGroup are one, those of listeners too.
  virtual void BeginGroup() noexcept = 0;
  virtual void EndGroup() = 0;

  /// An attribute of `node`, which stands in NAttribute::GetPreviousValue as it was.
  virtual void OnAttribute(node::NNode& node, attribute::NAttribute const& attribute) noexcept = 0;
  virtual void OnSetName(name::NNamedObject& object, std::wstring const& previous) noexcept = 0;
  /// `next` is the node that follows it in the domain's order, null at the end.
  virtual void OnAddNode(domain::NDomainBase& domain, node::NNode& node,
                         node::NNode* next) noexcept = 0;
  /// `next` followed it.
  virtual void OnRemoveNode(domain::NDomainBase& domain, node::NNode& node,
                            node::NNode* next) noexcept = 0;

 protected:
  ~NChangeRecorder() override;

  unsigned m_depth = 0;        // the changes that are under way, one in the other
  bool m_hasFinished = false;  // some of which others wait to hear

 private:
  friend class NChangeScope;

  /// Notifies of finished changes, when none is under way any more.
  /// Fails: throws what those throw who hear of them, unless an exception passes already.
  virtual void OnFinished() = 0;
};

/// The scope of a change in its setter, from before the first listener to after the last one, when
/// all caches are marked. Nothing without a recorder.
class NChangeScope {
 public:
  explicit NChangeScope(NChangeRecorder* recorder) noexcept : m_recorder(recorder) {
    if (m_recorder) ++m_recorder->m_depth;
  }
  NChangeScope(NChangeScope const&) = delete;
  NChangeScope& operator=(NChangeScope const&) = delete;
  /// Fails: see NChangeRecorder::OnFinished.
  ~NChangeScope() noexcept(false) {
    if (m_recorder && --m_recorder->m_depth == 0 && m_recorder->m_hasFinished) {
      m_recorder->OnFinished();
    }
  }

 private:
  boost::intrusive_ptr<NChangeRecorder> const m_recorder;  // a listener may end the document
};

/// The scope of a setter that makes several changes which belong together.
class NChangeGroup {
 public:
  explicit NChangeGroup(NChangeRecorder* recorder) noexcept : m_recorder(recorder) {
    if (m_recorder) m_recorder->BeginGroup();
  }
  NChangeGroup(NChangeGroup const&) = delete;
  NChangeGroup& operator=(NChangeGroup const&) = delete;
  /// Fails: see NChangeRecorder::OnFinished.
  ~NChangeGroup() noexcept(false) {
    if (m_recorder) m_recorder->EndGroup();
  }

 private:
  boost::intrusive_ptr<NChangeRecorder> const m_recorder;
};

}  // namespace detail
}  // namespace corvanta::core
