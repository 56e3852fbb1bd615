// corvanta-decode VERSION MEMORY SHARED: decodes pictures for a host that has started it. Not to be
// called by hand.
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>
#include <utility>

#include "corvanta/platform/child/child.h"
#include "corvanta/platform/decode_file.h"
#include "decoder/answer.h"
#include "decoder/jpeg_xr.h"
#include "decoder/shared_blocks.h"

namespace {

using namespace corvanta::platform;

constexpr unsigned kMostFiles = 16;

bool ServeRequest(NDecodeRequest const& request, NDescriptor file, NDescriptor memory) {
  using namespace corvanta::decoder;
  if (memory) MapSharedBlocks(memory.Get());
  memory = NDescriptor();
  std::optional<child::NEndsWithHost> endsWithHost(std::in_place);
  NDecodeAnswer const answer =
      AnswerRequest(request, std::move(file), [&endsWithHost](NDecodeAnswer const& claimed) {
        endsWithHost.reset();
        if (!child::Send(&claimed, sizeof claimed)) _exit(0);
        endsWithHost.emplace();
      });
  endsWithHost.reset();
  return child::Send(&answer, sizeof answer);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4 || !child::IsChild()) {
    std::cerr << "corvanta-decode: the library starts this program to decode pictures; it does "
                 "nothing by itself\n";
    return 2;
  }
  std::uint64_t const memory = std::strtoull(arguments[2], nullptr, 10);
  std::uint64_t const shared = std::strtoull(arguments[3], nullptr, 10);
  ListenToDecoder();
  WatchOverruns(&corvanta::decoder::HasGuard);
  corvanta::decoder::RegisterJpegXr();
  if (std::strcmp(arguments[1], kDecoderVersion) != 0 ||
      !child::Confine(memory, kMostFiles, child::kRightsNone) ||
      !corvanta::decoder::ReserveSharedBlocks(shared))
    return 2;
  NDecodeAnswer ready;
  ready.state = kDecoderReady;
  bool served = child::Send(&ready, sizeof ready);
  NDecodeRequest request;
  for (NDescriptor with[2]; served && child::Receive(&request, sizeof request, with);)
    served = ServeRequest(request, std::move(with[0]), std::move(with[1]));
  // Not through the handlers of the end: the libraries' own are of no use any more.
  _exit(0);
}
