#include "corvanta/core/zip/pass.h"

#include <memory>
#include <mutex>

namespace corvanta::core::zip {

namespace {

struct Holder {
  std::mutex mutex;
  std::shared_ptr<NPassProvider const> provider;
};

Holder& GetHolder() {
  static Holder& holder = *new Holder;
  return holder;
}

}  // namespace

void SetPassProvider(NPassProvider provider) {
  std::shared_ptr<NPassProvider const> next;
  if (provider) next = std::make_shared<NPassProvider const>(std::move(provider));
  Holder& holder = GetHolder();
  // The old provider goes after the lock: its end is the program's code.
  std::scoped_lock const lock(holder.mutex);
  holder.provider.swap(next);
}

std::wstring GetPass(uri::NPath const& path, NPassType type) {
  Holder& holder = GetHolder();
  std::shared_ptr<NPassProvider const> provider;
  {
    std::scoped_lock const lock(holder.mutex);
    provider = holder.provider;
  }
  return provider ? (*provider)(path, type) : std::wstring();
}

}  // namespace corvanta::core::zip
