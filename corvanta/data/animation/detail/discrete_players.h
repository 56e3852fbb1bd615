#pragma once

#include <boost/intrusive_ptr.hpp>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "corvanta/data/animation/NAnimationEngineArgs.h"
#include "corvanta/data/animation/detail/Step.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/material/detail/usage.h"
#include "corvanta/data/switches/NMaterialSwitch.h"
#include "corvanta/data/switches/NModelSwitch.h"

namespace corvanta::data::animation::detail {

/// Values at times; those of one time in order of coming.
template <class Value>
class TimedValues {
 public:
  void Add(double time, Value value) { m_values.emplace(time, std::move(value)); }

  /// The values that `step` crosses, in the order in which it does: without the time where it
  /// starts, with the one to which it comes.
  std::vector<Value> GetCrossed(Step const& step) const {
    std::vector<Value> crossed;
    if (step.start < step.time) {
      auto const end = m_values.upper_bound(step.time);
      for (auto i = m_values.upper_bound(step.start); i != end; ++i) crossed.push_back(i->second);
    } else if (step.start > step.time) {
      auto const end = m_values.lower_bound(step.time);
      for (auto i = m_values.lower_bound(step.start); i != end;) crossed.push_back((--i)->second);
    }
    return crossed;
  }

 private:
  std::multimap<double, Value> m_values;
};

/// Gives the models of a switch one of its materials.
class MaterialTrack {
 public:
  /// Leaves the choice out where the switch is empty or has no such material now.
  void Add(double time, boost::intrusive_ptr<switches::NMaterialSwitch> const& chooser,
           unsigned int index);

  /// What a step gives a model.
  struct Change {
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphModelNode> model;
    domain::material::detail::MaterialReference material;
    std::unique_ptr<domain::material::detail::NUse> use;
  };
  std::vector<Change> Prepare(Step const& step) const;

 private:
  using Choice = std::pair<boost::intrusive_ptr<switches::NMaterialSwitch>,
                           boost::intrusive_ptr<domain::material::NMaterialNode>>;
  TimedValues<Choice> m_choices;
};

/// Shows the models of one set of a switch, and hides those of all its sets before.
class ModelTrack {
 public:
  /// Leaves the choice out where the switch is empty or has no such set now.
  void Add(double time, boost::intrusive_ptr<switches::NModelSwitch> const& chooser,
           unsigned int index);

  /// A model that a step shows or hides.
  struct Change {
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphModelNode> model;
    bool isVisible;
  };
  std::vector<Change> Prepare(Step const& step) const;

 private:
  using Choice = std::pair<boost::intrusive_ptr<switches::NModelSwitch>,
                           boost::intrusive_ptr<switches::detail::NModelSet>>;
  TimedValues<Choice> m_choices;
};

/// Gives the scenes of the caller the environment that a step crosses last.
class EnvironmentTrack {
 public:
  void Add(double time,
           boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& environment);

  /// The scenes that a step gives an environment.
  struct Change {
    NAnimationEngineArgs::Scenes scenes;
    core::node::NNodeReference<domain::environment::NEnvironmentNode> environment;
  };
  Change Prepare(NAnimationEngineArgs const& args, Step const& step) const;

 private:
  TimedValues<boost::intrusive_ptr<domain::environment::NEnvironmentNode>> m_environments;
};

}  // namespace corvanta::data::animation::detail
