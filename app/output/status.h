#pragma once

namespace corvanta::app {

/// Exit statuses; a signal that ends a command is added to 128.
enum NStatus : int {
  NS_DONE = 0,
  NS_FILE = 1,     ///< a file couldn't be used, or the output not be written
  NS_OPTIONS = 2,  ///< an option that can't be
};

}  // namespace corvanta::app
