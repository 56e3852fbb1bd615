#include "corvanta/importer/animation/camera_curves.h"

#include <set>
#include <vector>

namespace corvanta::importer {

namespace {

using data::domain::scenegraph::item::NSceneGraphItemNode;
using VX_Math::Matrix;
using VX_Math::Vec3;

constexpr NAttributeNames kInterest = {L"interest.x", L"interest.y", L"interest.z"};
constexpr NAttributeNames kUp = {L"up.x", L"up.y", L"up.z"};
constexpr float kStraightness = 5e-4f;
constexpr int kMostCameraHalvings = 8;  // halvings between two keys

struct Pose {
  double frame;
  Vec3 interest;
  Vec3 up;
};

class Motion {
 public:
  Motion(data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
         NMovableCamera const& camera, NCurvesByItem const& curves, NEffort& effort)
      : m_control(tree.GetControlTransform()), m_camera(camera), m_effort(effort) {
    for (boost::intrusive_ptr<NSceneGraphItemNode> item = camera.item; item;
         item = item->GetParent()) {
      m_effort.AddTransforms(1);
      m_chain.push_back({item, curves.Find(*item)});
      if (m_chain.back().curves != nullptr) AddTimes(*m_chain.back().curves);
    }
    m_distance = (GetInterest() - GetEye()).Length();
  }

  bool Moves() const { return !m_times.empty(); }

  std::vector<Pose> GetPoses() {
    for (double const time : m_times) {
      Pose const pose = GetPose(time);
      if (m_poses.empty()) {
        Add(pose);
      } else {
        GoOn(m_poses.back(), pose, 0);
      }
    }
    return std::move(m_poses);
  }

 private:
  struct Link {
    boost::intrusive_ptr<NSceneGraphItemNode> item;
    NItemCurves const* curves;
  };

  void AddTimes(NItemCurves const& curves) {
    for (auto const& three : curves.curves) {
      if (!three[0]) continue;
      for (auto const& [handle, key] : three[0]->GetKeyData()) m_times.insert(key.time);
    }
  }

  Vec3 GetInterest() const {
    auto const& item = *m_camera.item;
    return {static_cast<float>(item.GetInterestX()), static_cast<float>(item.GetInterestY()),
            static_cast<float>(item.GetInterestZ())};
  }

  Vec3 GetEye() const {
    Matrix global;
    for (Link const& link : m_chain) global *= link.item->GetTransform();
    global *= m_control;
    Vec3 eye;
    global.MultVecMatrix(Vec3(), eye);
    return eye;
  }

  Pose GetPose(double frame) const {
    m_effort.AddTransforms(m_chain.size());
    Matrix global;
    for (Link const& link : m_chain) global *= GetTransform(*link.item, link.curves, frame);
    global *= m_control;
    Vec3 eye;
    Vec3 ahead;
    Vec3 up;
    global.MultVecMatrix(Vec3(), eye);
    global.MultDirMatrix(m_camera.ahead, ahead);
    global.MultDirMatrix(m_camera.up, up);
    ahead.Normalize();
    up.Normalize();
    return {frame, eye + ahead * m_distance, up};
  }

  // It becomes a key of the interest and one of the direction up.
  void Add(Pose const& pose) {
    m_effort.AddKeys(2);
    m_poses.push_back(pose);
  }

  void GoOn(Pose const& from, Pose const& to, int depth) {
    double const middle = from.frame + (to.frame - from.frame) / 2;
    bool const isParted = middle > from.frame && middle < to.frame;
    if (depth == kMostCameraHalvings || !isParted || IsStraight(from, to)) {
      Add(to);
      return;
    }
    Pose const start = from;  // what it refers to may move
    Pose const between = GetPose(middle);
    GoOn(start, between, depth + 1);
    GoOn(between, to, depth + 1);
  }

  bool IsStraight(Pose const& from, Pose const& to) const {
    constexpr int kParts = 4;
    for (int i = 1; i != kParts; ++i) {
      float const t = static_cast<float>(i) / kParts;
      Pose const pose = GetPose(from.frame + static_cast<double>(t) * (to.frame - from.frame));
      Vec3 const interest = from.interest + (to.interest - from.interest) * t;
      Vec3 const up = from.up + (to.up - from.up) * t;
      if ((interest - pose.interest).Length() > kStraightness * m_distance) return false;
      if ((up - pose.up).Length() > kStraightness) return false;
    }
    return true;
  }

  Matrix const m_control;
  NMovableCamera const& m_camera;
  NEffort& m_effort;
  std::vector<Link> m_chain;
  std::set<double> m_times;
  float m_distance = 0.0f;
  std::vector<Pose> m_poses;
};

}  // namespace

void AddCameraCurves(data::domain::animation::NAnimationNode& animation,
                     data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
                     NMovableCamera const& camera, NCurvesByItem& curves, NEffort& effort) {
  Motion motion(tree, camera, curves, effort);
  if (!motion.Moves()) return;
  NTripleKeys interests;
  NTripleKeys ups;
  for (Pose const& pose : motion.GetPoses()) {
    interests.push_back({pose.frame, {pose.interest.x, pose.interest.y, pose.interest.z}});
    ups.push_back({pose.frame, {pose.up.x, pose.up.y, pose.up.z}});
  }
  NItemCurves const* own = curves.Find(*camera.item);
  if (own == nullptr) own = curves.Add(*camera.item);
  AddCurves(animation, own->target, kInterest, interests);
  AddCurves(animation, own->target, kUp, ups);
}

}  // namespace corvanta::importer
