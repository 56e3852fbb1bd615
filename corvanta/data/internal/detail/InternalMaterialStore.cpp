#include "corvanta/data/internal/detail/InternalMaterialStore.h"

#include <iterator>

#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/internal/detail/create_node.h"
#include "corvanta/data/internal/detail/embedded_files.h"

namespace corvanta::data::internal::detail {

using core::locator::NLocator;
using core::uri::NPath;
using core::uri::NUri;
using domain::image::NImageNode;
using domain::material::NMaterialNode;
using domain::texture::NTextureNode;

namespace {

constexpr wchar_t const* kMaterialIds[NIM_COUNT] = {
    L"71E0BBED-6C6A-47f3-8EBF-9F089BF04C12", L"C25BB2EA-9789-416b-803B-7D01ABB6A184",
    L"9FBC349D-5D34-490e-9E51-D8B81E0C3B33", L"84085B5A-439A-4c7f-B10A-40F5714C042E",
    L"2F9342DE-9368-457d-B2EB-C1D5E739E76A", L"6770FCAE-3E0C-4c6b-8861-5E15E675A43A",
    L"584E3835-F0E7-42f1-BD82-F3644FF4D824", L"80596897-B17C-4dd2-93AE-0A5C737EF638",
    L"20A1C7EA-5273-4f20-99D1-0C4C706C168C",
};

constexpr wchar_t const* kNames[NIM_WATERMARK] = {
    L"Red material for posture",    L"Blue material for posture", L"Green material for posture",
    L"Yellow material for posture", L"Gray material for posture", L"Material for unused node",
};

struct Watermark {
  wchar_t const* textureId;
  wchar_t const* imageId;
  wchar_t const* fileName;
  unsigned char const* bytes;
  std::size_t length;
};

constexpr Watermark kWatermarks[3] = {
    {L"9E3B921F-0C97-4cfb-B7C8-22BF940B159A", L"CEBDEB7B-8850-4ec4-AE2E-767F0614078E", L"ywefe",
     kYwefe, std::size(kYwefe)},
    {L"8DCE98BA-3D16-4d65-A14E-317EEED9419D", L"6107FA33-6D31-42f1-B8CC-ABB9F7D23766", L"ywefe",
     kYwefe, std::size(kYwefe)},
    {L"4A273189-2A86-4882-8286-DACAE9286575", L"5501B09A-3382-4e1a-8A4F-802E6ABC9C23", L"ewasd",
     kEwasd, std::size(kEwasd)},
};

constexpr auto kWatermarkOperation = static_cast<domain::texture::NTextureOperationType>(2);

}  // namespace

InternalMaterialStore::InternalMaterialStore(domain::material::NMaterialDomain& materialDomain,
                                             domain::texture::NTextureDomain& textureDomain,
                                             domain::image::NImageDomain& imageDomain) {
  for (int i = 0; i != NIM_COUNT; ++i) {
    materials[i] = CreateNode<NMaterialNode>(materialDomain, kMaterialIds[i]);
  }
  for (std::size_t i = 0; i != std::size(kWatermarks); ++i) {
    textures[i] = CreateNode<NTextureNode>(textureDomain, kWatermarks[i].textureId);
  }
  for (std::size_t i = 0; i != std::size(kWatermarks); ++i) {
    images[i] = CreateNode<NImageNode>(imageDomain, kWatermarks[i].imageId);
  }
  for (int i = 0; i != NIM_WATERMARK; ++i) materials[i]->SetName(kNames[i]);
  SetColors();
  LayWatermarks();
}

void InternalMaterialStore::SetColors() {
  materials[NIM_RED]->SetDiffuseR(0.2);
  materials[NIM_RED]->SetEmissiveR(0.5);
  materials[NIM_BLUE]->SetDiffuseB(0.2);
  materials[NIM_BLUE]->SetEmissiveB(0.5);
  materials[NIM_GREEN]->SetDiffuseG(0.2);
  materials[NIM_GREEN]->SetEmissiveG(0.5);
  materials[NIM_YELLOW]->SetDiffuseR(0.2);
  materials[NIM_YELLOW]->SetDiffuseG(0.2);
  materials[NIM_YELLOW]->SetEmissiveR(0.5);
  materials[NIM_YELLOW]->SetEmissiveG(0.5);
  materials[NIM_GRAY]->SetDiffuseR(0.1);
  materials[NIM_GRAY]->SetDiffuseG(0.1);
  materials[NIM_GRAY]->SetDiffuseB(0.1);
  materials[NIM_GRAY]->SetEmissiveR(0.3);
  materials[NIM_GRAY]->SetEmissiveG(0.3);
  materials[NIM_GRAY]->SetEmissiveB(0.3);
}

void InternalMaterialStore::LayWatermarks() {
  using domain::material::texture_mapping::NUVWMapping;
  boost::intrusive_ptr<NUVWMapping> const mapping(
      new NUVWMapping(domain::material::texture_mapping::NUVWMT_INTERNAL));
  for (std::size_t i = 0; i != std::size(kWatermarks); ++i) {
    Watermark const& mark = kWatermarks[i];
    NMaterialNode& material = *materials[NIM_WATERMARK + i];
    material.SetType(domain::material::NMT_DEFAULT);
    material.SetTransparency(0.2);
    NPath const file = WriteResourceFile(mark.fileName, mark.bytes, mark.length);
    images[i]->SetImageLocator(NLocator(NUri::CreateFileUri(file), NPath()));
    textures[i]->SetImage(*images[i]);
    textures[i]->SetOperationType(kWatermarkOperation);
    Require(material.AddTexture(*textures[i], *mapping, 0));
  }
}

}  // namespace corvanta::data::internal::detail
