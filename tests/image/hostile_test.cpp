#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#include "corvanta/data/resource/image/create_image.h"
#include "corvanta/platform/limits.h"
#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"

namespace corvanta::data::domain::image {
namespace {

namespace resource = resource::image;
using core::locator::NLocator;
using core::uri::NUri;

// Files that took the decoder down, kept it for ever or made it take gigabytes (tests/hostile): the
// not-found picture and a reason, and the next picture comes.
TEST(HostilePictures, CostTheNotFoundPictureAndAReason) {
  support::TemporaryFiles const files;
  std::vector<std::filesystem::path> hostile;
  for (auto const& entry : std::filesystem::directory_iterator(HOSTILE)) {
    static constexpr std::string_view kPictures[] = {".jpg", ".cut", ".gif", ".ras",
                                                     ".ppm", ".j2k", ".tif"};
    if (std::ranges::count(kPictures, entry.path().extension().string()) != 0)
      hostile.push_back(entry.path());
  }
  EXPECT_GE(hostile.size(), 9U);

  boost::intrusive_ptr<NImageNode> const node(
      new NImageNode(core::node::NNodeID(), nullptr, nullptr));
  EXPECT_EQ(node->GetImageError(), L"");
  for (bool const isAllowed : {true, false}) {
    platform::SetDecoderProgramAllowed(isAllowed);
    for (auto const& path : hostile) {
      SCOPED_TRACE(path.filename().string());
      std::string const name =
          path.extension() == ".ppm" ? "a.pgm" : "a" + path.extension().string();
      std::filesystem::copy_file(path, files.GetFolder() / name,
                                 std::filesystem::copy_options::overwrite_existing);
      node->SetImageLocator(NLocator(NUri::CreateFileUri(files.At(name))));
      EXPECT_EQ(node->GetImage()->GetType(), resource::NIT_RAW);
      EXPECT_THAT(core::text::ToNarrow(node->GetImageError()), testing::Not(testing::IsEmpty()));
      node->SetImageLocator(
          NLocator(NUri::CreateFileUri(files.Write("sound.jpg", pictures::Jpeg()))));
      EXPECT_EQ(node->GetImage()->GetType(),
                pictures::kDecodes ? resource::NIT_BITMAP : resource::NIT_RAW);
      EXPECT_EQ(node->GetImageError() == L"", pictures::kDecodes);
    }
  }
  platform::SetDecoderProgramAllowed(true);
  EXPECT_THAT(files.GetLeftovers(), testing::IsEmpty());
}

}  // namespace
}  // namespace corvanta::data::domain::image
