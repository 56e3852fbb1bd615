// A decoding program that can't be trusted: what it answers is in the name of the file that it is
// asked for.
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <string_view>

#include "corvanta/platform/child/child.h"
#include "corvanta/platform/decode_messages.h"

namespace {

using namespace corvanta::platform;

// A header of two pixels by one, and their row.
void WritePicture(unsigned char* to, std::uint32_t width) {
  std::uint32_t const words[] = {40, width, 1, 1 | 24U << 16, 0, 0, 0, 0, 0, 0};
  std::memcpy(to, words, sizeof words);
}

NDecodeAnswer Answer(std::string_view wish, NDescriptor const& memory) {
  constexpr std::size_t kMapped = 4096;
  void* const mapped = mmap(nullptr, kMapped, PROT_READ | PROT_WRITE, MAP_SHARED, memory.Get(), 0);
  if (mapped == MAP_FAILED) _exit(1);
  WritePicture(static_cast<unsigned char*>(mapped) + 8, wish.ends_with("width") ? 2000000000 : 2);
  NDecodeAnswer answer;
  answer.state = kDecodeDone;
  answer.pixelType = PT_BITMAP;
  answer.offset = 8;
  answer.bytes = 48;
  if (wish.ends_with("offset")) answer.offset = UINT64_MAX - 40;
  if (wish.ends_with("beyond")) answer.offset = std::uint64_t{1} << 40;
  if (wish.ends_with("length")) answer.bytes = UINT64_MAX;
  if (wish.ends_with("large")) answer.bytes = std::uint64_t{100} << 20;
  if (wish.ends_with("zeros")) answer.offset = 256;
  if (wish.ends_with("tiny")) answer.bytes = 3;
  if (wish.ends_with("state")) answer.state = static_cast<NDecodeState>(77);
  if (wish.ends_with("claims")) answer.state = kDecodeClaimed;
  if (wish.ends_with("text")) {
    answer.state = kDecodeFailed;
    std::memset(answer.text, '\n', sizeof answer.text);
  }
  return answer;
}

}  // namespace

int main() {
  NDecodeAnswer ready;
  ready.state = kDecoderReady;
  child::Send(&ready, sizeof ready);
  NDecodeRequest request;
  NDescriptor with[2];
  for (bool isUsed = false; child::Receive(&request, sizeof request, with); isUsed = true) {
    std::string_view const wish = request.name;
    if (wish.ends_with("harmed") && isUsed) __builtin_trap();
    while (wish.ends_with("slow") && isUsed) pause();
    if (wish.ends_with("abort")) __builtin_trap();
    if (wish.ends_with("leave")) _exit(0);
    while (wish.ends_with("sleep")) pause();
    NDecodeAnswer const answer = Answer(wish, with[1]);
    if (wish.ends_with("claims")) child::Send(&answer, sizeof answer);
    child::Send(&answer, wish.ends_with("short") ? 7 : sizeof answer);
  }
}
