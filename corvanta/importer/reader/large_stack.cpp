#include "corvanta/importer/reader/large_stack.h"

#include <boost/thread/thread.hpp>
#include <exception>

namespace corvanta::importer::reader {

void RunOnLargeStack(std::size_t size, std::function<void()> const& work) {
  std::exception_ptr failure;
  auto const guarded = [&work, &failure] {
    try {
      work();
    } catch (...) {
      failure = std::current_exception();
    }
  };
  boost::thread::attributes attributes;
  attributes.set_stack_size(size);
  boost::thread thread;
  try {
    thread = boost::thread(attributes, guarded);
  } catch (boost::thread_resource_error const&) {
    guarded();
  }
  if (thread.joinable()) thread.join();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace corvanta::importer::reader
