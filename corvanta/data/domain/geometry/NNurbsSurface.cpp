#include "corvanta/data/domain/geometry/NNurbsSurface.h"

#include <iterator>

namespace corvanta::data::domain::geometry {

struct NNurbsSurface::Block {
  boost::intrusive_ptr<VX_Tess::NurbsSurface> tessSurface{new VX_Tess::NurbsSurface};
  TrimLoops trimLoops;
  NNurbsSaveType saveType = NNST_DEFAULT;
};

NNurbsSurface::NNurbsSurface() : m_block(new Block) {}

NNurbsSurface::~NNurbsSurface() = default;

unsigned int NNurbsSurface::AddTrimLoop() {
  m_block->trimLoops.emplace_back();
  return static_cast<unsigned int>(m_block->trimLoops.size() - 1);
}

bool NNurbsSurface::AddTrimCurve(unsigned int loop, VX_Tess::NurbsCurve2d& curve) {
  if (loop >= m_block->trimLoops.size()) return false;
  auto& curves = *std::next(m_block->trimLoops.begin(), loop);
  curves.emplace_back(&curve);
  try {
    return m_block->tessSurface->AppendTrimCurve(loop, &curve) != 0;
  } catch (...) {
    curves.pop_back();
    throw;
  }
}

NNurbsSurface::TrimLoops const& NNurbsSurface::GetTrimLoops() const noexcept {
  return m_block->trimLoops;
}

NNurbsSaveType NNurbsSurface::GetNurbsSaveType() const noexcept { return m_block->saveType; }

void NNurbsSurface::SetNurbsSaveType(NNurbsSaveType type) noexcept { m_block->saveType = type; }

VX_Tess::NurbsSurface& NNurbsSurface::GetTessNurbsSurface() noexcept {
  return *m_block->tessSurface;
}

VX_Tess::NurbsSurface const& NNurbsSurface::GetTessNurbsSurface() const noexcept {
  return *m_block->tessSurface;
}

boost::intrusive_ptr<NSurface> NNurbsSurface::CloneSurface() const {
  boost::intrusive_ptr<NNurbsSurface> const clone(new NNurbsSurface);
  CopyTo(*clone);
  return clone;
}

void NNurbsSurface::CopyTo(NNurbsSurface& target) const {
  NSurface::CopyTo(target);
  target.m_block->saveType = m_block->saveType;
  target.m_block->trimLoops = m_block->trimLoops;
  target.m_block->tessSurface.reset(m_block->tessSurface->Clone(true));
}

}  // namespace corvanta::data::domain::geometry
