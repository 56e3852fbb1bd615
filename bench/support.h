#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// What the benchmark programs share: one run of all benchmarks, and the table of ratios after it.
///
///     int main(int argc, char** argv) {
///       corvanta::bench::NRun const run(argc, argv);
///       corvanta::bench::Report("attribute write, per listener", run.GetTime("Ours") / 8,
///                               {{"floor", run.GetTime("Floor") / 8}}, "must be below the peer");
///     }
namespace corvanta::bench {

/// Runs every benchmark of the program, each several times in random order, so that what disturbs
/// the machine disturbs all alike. Prints the median of each. The flags of Google Benchmark apply.
class NRun {
 public:
  NRun(int argc, char** argv) {
    // The flags of the command line come later and win.
    m_arguments = {argv[0], "--benchmark_repetitions=7", "--benchmark_min_time=0.1",
                   "--benchmark_enable_random_interleaving=true"};
    m_arguments.insert(m_arguments.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    for (std::string& argument : m_arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    int count = static_cast<int>(m_arguments.size());
    benchmark::Initialize(&count, pointers.data());
    Reporter reporter(m_times);
    benchmark::RunSpecifiedBenchmarks(&reporter);
  }

  /// The median processor time of an iteration of the benchmark `name`.
  /// Units: nanoseconds.
  /// Fails: NaN if it didn't run.
  double GetTime(std::string const& name) const {
    auto const found = m_times.find(name);
    if (found == m_times.end()) return std::numeric_limits<double>::quiet_NaN();
    std::vector<double> times = found->second;
    auto const middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
  }

 private:
  using Times = std::map<std::string, std::vector<double>>;

  /// Keeps every repetition, and shows the median alone where there are several.
  class Reporter : public benchmark::ConsoleReporter {
   public:
    explicit Reporter(Times& times) : ConsoleReporter(OO_Tabular), m_times(times) {}
    void ReportRuns(std::vector<Run> const& runs) override {
      std::vector<Run> shown;
      for (Run const& run : runs) {
        if (run.run_type == Run::RT_Aggregate) {
          if (run.aggregate_name == "median") shown.push_back(run);
          continue;
        }
        if (run.error_occurred || run.repetitions <= 1) shown.push_back(run);
        if (run.error_occurred) continue;
        m_times[run.run_name.str()].push_back(run.cpu_accumulated_time * 1e9 /
                                              static_cast<double>(run.iterations));
      }
      if (!shown.empty()) ConsoleReporter::ReportRuns(shown);
    }

   private:
    Times& m_times;
  };

  std::vector<std::string> m_arguments;
  Times m_times;
};

/// What the figures of a row are.
enum class NUnit {
  kTime,   ///< nanoseconds
  kBytes,  ///< bytes
  kCount,  ///< a plain number
};

namespace detail {
inline std::string Format(double value, NUnit unit) {
  char text[64];
  if (std::isnan(value)) return "-";
  if (unit == NUnit::kCount) {
    std::snprintf(text, sizeof text, "%.1f   ", value);
  } else if (unit == NUnit::kBytes) {
    std::snprintf(text, sizeof text, "%.0f B ", value);
  } else if (value < 1e3) {
    std::snprintf(text, sizeof text, "%.2f ns", value);
  } else if (value < 1e6) {
    std::snprintf(text, sizeof text, "%.2f us", value / 1e3);
  } else {
    std::snprintf(text, sizeof text, "%.2f ms", value / 1e6);
  }
  return text;
}
}  // namespace detail

/// One row of the table: our figure, then each peer's or floor's with ours divided by it, then what
/// must be reached. A NaN stands for a figure that wasn't measured.
inline void Report(std::string const& row, double ours,
                   std::vector<std::pair<std::string, double>> const& others,
                   std::string const& goal, NUnit unit = NUnit::kTime) {
  std::printf("\n%-48s %13s   %s\n", row.c_str(), detail::Format(ours, unit).c_str(), goal.c_str());
  for (auto const& [name, figure] : others) {
    std::printf("  %-46s %13s", name.c_str(), detail::Format(figure, unit).c_str());
    if (!std::isnan(ours) && !std::isnan(figure)) std::printf("   ratio %.2f", ours / figure);
    std::printf("\n");
  }
}

}  // namespace corvanta::bench
