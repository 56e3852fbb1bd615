#pragma once

#include <cstddef>
#include <memory>
#include <new>

#include "corvanta/core/detail/NChangeRecorder.h"
#include "corvanta/core/locator/NLocator.h"
#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/events/NReferenceKind.h"
#include "corvanta/export.h"

namespace corvanta::data::events::detail {

/// A reference of any class.
using NAnyReference = core::node::NNodeReference<core::node::NNode>;

/// What an object holds beside attributes, references and lists, as one value that never changes,
/// and how the object is given such a value, with the events of its setters.
struct NContents {
  using Apply = void (*)(core::reference_countable::NReferenceCountable& object,
                         std::shared_ptr<void const> const& value);

  std::shared_ptr<void const> previous;
  std::shared_ptr<void const> now;
  Apply apply;
  std::size_t bytes;  // of both values
};

/// The recorder of a document: of every kind of change that its nodes know. See
/// core::detail::NChangeRecorder.
class CORVANTA_API NModelRecorder : public core::detail::NChangeRecorder {
 public:
  using NChangeRecorder::OnAttribute;
  virtual void OnAttribute(domain::light_env::NLamp& lamp,
                           core::attribute::NAttribute const& attribute) noexcept = 0;
  virtual void OnReference(core::node::NNode& node, NReferenceKind kind,
                           NAnyReference const& previous, NAnyReference const& now) noexcept = 0;
  virtual void OnEnvironmentMapType(core::node::NNode& node, long previous, long now) noexcept = 0;
  /// The BRDF texture's of a material, the picture's of an image node.
  virtual void OnLocator(core::node::NNode& node, core::locator::NLocator const& previous,
                         core::locator::NLocator const& now) noexcept = 0;
  /// `next` follows or followed the child; `previousParent` is what was its parent before.
  virtual void OnChild(bool isAdded, domain::scenegraph::item::NSceneGraphItemNode& parent,
                       domain::scenegraph::item::NSceneGraphItemNode& child,
                       domain::scenegraph::item::NSceneGraphItemNode* next,
                       domain::scenegraph::item::NSceneGraphItemNode* previousParent) noexcept = 0;
  virtual void OnTexture(bool isAdded, domain::material::NMaterialNode& material,
                         unsigned int index, NAnyReference const& texture,
                         domain::material::texture_mapping::NTextureMapping* mapping) noexcept = 0;
  virtual void OnLightEnv(bool isAdded, domain::environment::NEnvironmentNode& environment,
                          unsigned int index, NAnyReference const& lightEnv) noexcept = 0;
  virtual void OnLamp(bool isAdded, domain::light_env::NLightEnvNode& lightEnv,
                      domain::light_env::NLamp& lamp, unsigned int index) noexcept = 0;
  virtual void OnSurface(bool isAdded, domain::geometry::NGeometryNode& geometry,
                         domain::geometry::NSurface& surface) noexcept = 0;
  /// Of a node or a surface.
  virtual void OnContents(core::reference_countable::NReferenceCountable& object,
                          NContents const& contents) noexcept = 0;
  /// A change that nobody could write down, for lack of memory.
  virtual void OnMissing() noexcept = 0;
  /// The document ends. Nothing is recorded any more.
  virtual void OnDocumentEnd() noexcept = 0;

 protected:
  ~NModelRecorder() override;
};

/// The change of a part of an object that is recorded as a whole, and that raises nothing itself:
/// made before the change, which Record ends.
template <class Value>
class NContentsChange {
 public:
  /// Fails: throws std::bad_alloc.
  NContentsChange(NModelRecorder* recorder, Value const& value) : m_recorder(recorder) {
    if (recorder != nullptr) m_previous = std::make_shared<Value const>(value);
  }

  /// `bytes` is what both values take together.
  /// Fails: see NChangeRecorder::EndChange.
  void Record(core::reference_countable::NReferenceCountable& object, Value const& now,
              NContents::Apply apply, std::size_t bytes) {
    if (!m_recorder) return;
    core::detail::NChangeScope const change(m_recorder.get());
    std::shared_ptr<Value const> value;
    try {
      value = std::make_shared<Value const>(now);
    } catch (std::bad_alloc const&) {
      return m_recorder->OnMissing();
    }
    m_recorder->OnContents(object, {m_previous, value, apply, bytes});
  }

 private:
  boost::intrusive_ptr<NModelRecorder> const m_recorder;
  std::shared_ptr<Value const> m_previous;
};

}  // namespace corvanta::data::events::detail
