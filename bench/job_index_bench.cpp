// What a job costs when the index already holds many lines: sorting, removing one and many lines, validating.
// The bar to compare with is `sort` on the same file (LC_ALL=C).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

#include "base/text.h"
#include "jobs/job_parts.h"

namespace {

using namespace qvrcom;

// Lines of jobs one second apart, in random order.
std::vector<std::string> index_lines(std::int64_t count) {
  std::vector<std::string> lines;
  const base::LocalTime start = base::local_time(2026, 11, 15);
  for (std::int64_t i = 0; i < count; ++i) {
    const base::LocalTime moment = start + std::chrono::seconds(i);
    const std::string job = base::job_name_stamp(moment) + "001";
    lines.push_back(base::serial_text(moment) + ";" + base::index_stamp(moment) +
                    "^Retrieve Statistics for Partition 3^Main Office^A1^" + base::serial_text(moment) +
                    "^^^17^;S:\\" + job + "\\" + job + ".scr;");
  }
  std::shuffle(lines.begin(), lines.end(), std::mt19937(1));
  return lines;
}

// Runs `work` on an index of `state.range(0)` lines, made anew each time.
template <class Work>
void on_index(benchmark::State& state, Work work) {
  const std::vector<std::string> lines = index_lines(state.range(0));
  const std::string text = base::with_line_ends(lines);
  jobs::JobParts parts;
  for (std::size_t i = 0; i < lines.size(); i += 2)  // every other job folder is there
    parts.files.folders.insert("S:\\" + jobs::JobIndex::Get_Folder(lines[i]));
  for (auto _ : state) {
    state.PauseTiming();
    parts.file("index.sch") = text;
    state.ResumeTiming();
    work(parts.index, lines);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void sort_file(benchmark::State& state) {
  on_index(state, [](jobs::JobIndex& index, const auto&) { index.Sort_File("index.sch"); });
}

void remove_one_line(benchmark::State& state) {
  on_index(state, [](jobs::JobIndex& index, const auto& lines) {
    index.Remove_Index_Line("index.sch", lines[lines.size() / 2]);
  });
}

void remove_every_line(benchmark::State& state) {
  on_index(state, [](jobs::JobIndex& index, const auto& lines) { index.remove_index_lines(lines); });
}

void validate_with_half_the_folders_gone(benchmark::State& state) {
  on_index(state, [](jobs::JobIndex& index, const auto&) { index.Validate_Index_File(); });
}

BENCHMARK(sort_file)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(remove_one_line)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(remove_every_line)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(validate_with_half_the_folders_gone)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
