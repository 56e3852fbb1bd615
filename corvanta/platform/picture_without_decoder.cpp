#ifndef CORVANTA_WITH_FREEIMAGE

#include <string_view>

#include "corvanta/platform/convert.h"
#include "corvanta/platform/decode_here.h"

namespace corvanta::platform {

namespace {

// What the decoder answers for a name, format by format.
struct Row {
  int format;
  std::string_view extensions;  // each between points
};

constexpr Row kRows[] = {
    {PF_BMP, ".bmp."},
    {1, ".ico."},
    {PF_JPEG, ".jpg.jif.jpeg.jpe."},
    {PF_JNG, ".jng."},
    {PF_KOALA, ".koa."},
    {5, ".iff.lbm."},
    {6, ".mng."},
    {7, ".pbm."},
    {9, ".pcd."},
    {10, ".pcx."},
    {11, ".pgm."},
    {PF_PNG, ".png."},
    {PF_PPM, ".ppm."},
    {16, ".ras."},
    {PF_TARGA, ".tga.targa."},
    {PF_TIFF, ".tif.tiff."},
    {PF_WBMP, ".wap.wbmp.wbm."},
    {20, ".psd.psb."},
    {21, ".cut."},
    {22, ".xbm."},
    {23, ".xpm."},
    {PF_DDS, ".dds."},
    {PF_GIF, ".gif."},
    {PF_HDR, ".hdr."},
    {27, ".g3."},
    {PF_SGI, ".sgi.rgb.rgba.bw."},
    {PF_EXR, ".exr."},
    {PF_J2K, ".j2k.j2c."},
    {PF_JP2, ".jp2."},
    {32, ".pfm."},
    {33, ".pct.pict.pic."},
    {34,
     ".3fr.arw.bay.bmq.cap.cine.cr2.crw.cs1.dc2.dcr.drf.dsc.dng.erf.fff.ia.iiq.k25.kc2.kdc.mdc.mef."
     "mos.mrw.nef."
     "nrw.orf.pef.ptx.pxn.qtk.raf.raw.rdc.rw2.rwl.rwz.sr2.srf.srw.sti.x3f."},
    {35, ".webp."},
    {36, ".jxr.wdp.hdp."},
};

}  // namespace

NPictureFormat GetFIFFromFilename(std::wstring const& path) {
  std::string wanted = ToNarrow(path);
  wanted.erase(0, wanted.find_last_of('/') + 1);  // npos + 1 is 0
  std::size_t const point = wanted.find_last_of('.');
  if (point == 0 || point == std::string::npos || wanted.compare(0, 2, "..") == 0)
    return PF_UNKNOWN;
  wanted.erase(0, point);
  for (char& c : wanted) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  if (wanted.size() > 1) {
    wanted += '.';
    for (Row const& row : kRows)
      if (row.extensions.find(wanted) != std::string_view::npos)
        return static_cast<NPictureFormat>(row.format);
  }
  return PF_UNKNOWN;
}

std::unique_ptr<NPicture const> DecodeHere(std::vector<unsigned char>, std::string& reason) {
  reason += "; this build decodes nothing itself";
  return nullptr;
}

}  // namespace corvanta::platform

#endif
