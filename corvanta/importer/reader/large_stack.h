#pragma once

#include <cstddef>
#include <functional>

namespace corvanta::importer::reader {

/// Runs `work` on a stack of `size` bytes, of which only what is used takes memory, and waits for
/// it: some libraries recurse through hierarchies of any depth.
/// Fails: lets through what `work` throws. Where no such stack can be had, runs it on the caller's.
void RunOnLargeStack(std::size_t size, std::function<void()> const& work);

}  // namespace corvanta::importer::reader
