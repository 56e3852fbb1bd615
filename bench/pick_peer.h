#pragma once

#include <vector>

#include "corvanta/vx_math/Vec3.h"

#ifdef CORVANTA_BENCH_EMBREE
#include <embree3/rtcore.h>

#include <algorithm>

namespace corvanta::bench {

/// One triangle mesh in the peer's form.
class PickPeer {
 public:
  PickPeer(std::vector<float> const& coords, std::vector<unsigned> const& indices)
      : m_device(rtcNewDevice("threads=1")), m_scene(rtcNewScene(m_device)) {
    RTCGeometry const mesh = rtcNewGeometry(m_device, RTC_GEOMETRY_TYPE_TRIANGLE);
    auto* const points = static_cast<float*>(rtcSetNewGeometryBuffer(
        mesh, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, 12, coords.size() / 3));
    std::copy(coords.begin(), coords.end(), points);
    auto* const corners = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
        mesh, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 12, indices.size() / 3));
    std::copy(indices.begin(), indices.end(), corners);
    rtcCommitGeometry(mesh);
    rtcAttachGeometry(m_scene, mesh);
    rtcReleaseGeometry(mesh);
    rtcCommitScene(m_scene);
  }
  PickPeer(PickPeer const&) = delete;
  PickPeer& operator=(PickPeer const&) = delete;
  ~PickPeer() {
    rtcReleaseScene(m_scene);
    rtcReleaseDevice(m_device);
  }
  float Hit(VX_Math::Vec3 const& o, VX_Math::Vec3 const& d) const {
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    RTCRayHit ray{};
    ray.ray.org_x = o.x, ray.ray.org_y = o.y, ray.ray.org_z = o.z;
    ray.ray.dir_x = d.x, ray.ray.dir_y = d.y, ray.ray.dir_z = d.z;
    ray.ray.tfar = 1e30f;
    ray.ray.mask = ~0u;
    ray.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    rtcIntersect1(m_scene, &context, &ray);
    return ray.ray.tfar;
  }

 private:
  RTCDevice m_device;
  RTCScene m_scene;
};

}  // namespace corvanta::bench
#endif
