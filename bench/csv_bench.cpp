// A statistics file of a million rows (60 MB, made once per run in the temporary folder): what the grid does
// with it.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>

#include "adapters/byte_source_posix.h"
#include "csv/csv_file.h"
#include "csv/csv_find.h"
#include "csv/csv_sort.h"

namespace {

using namespace qvrcom::csv;

constexpr std::uint32_t kRows = 1'000'000;

class MillionRows {
 public:
  MillionRows() : path_(std::filesystem::temp_directory_path() / "qvrcom_csv_bench.csv") {
    std::ofstream file(path_, std::ios::binary);
    file << "SiteName,USA_Office\r\nNode,Name,Calls,Seconds In Use,Last Call\r\n";
    std::mt19937 random(1);
    for (std::uint32_t i = 0; i < kRows; ++i) {
      file << "MSG" << random() % 1000 << (i % 5 == 0 ? ",\"Opening hours, holidays\"," : ",Front desk,")
           << random() % 5000 << ',' << random() % 90'000 << ",2026-11-" << 10 + random() % 19
           << " 12:" << 10 + random() % 50 << ":05\r\n";
    }
  }
  ~MillionRows() { std::filesystem::remove(path_); }
  MillionRows(const MillionRows&) = delete;
  MillionRows& operator=(const MillionRows&) = delete;

  std::unique_ptr<CsvFile> open() const {
    return std::make_unique<CsvFile>(qvrcom::adapters::ByteSourcesPosix().open(path_.string()));
  }
  std::unique_ptr<CsvFile> indexed() const {
    auto file = open();
    file->index().index_all();
    file->find_tables();
    return file;
  }
  std::int64_t bytes() const { return static_cast<std::int64_t>(std::filesystem::file_size(path_)); }

 private:
  std::filesystem::path path_;
};

const MillionRows& million_rows() {
  static const MillionRows rows;
  return rows;
}

RowOrder sorted_by(CsvFile& file, std::uint32_t column) {
  SortTask task(file, {2, file.index().row_count()}, column, SortDirection::kAscending);
  while (task.step(5'000)) {
  }
  return task.take_order();
}

void first_screen(benchmark::State& state) {
  million_rows();
  for (auto _ : state) {
    auto file = million_rows().open();
    file->index().index_some(1U << 20U);
    file->find_tables();
    benchmark::DoNotOptimize(file->cell(50, 2));
  }
}

void index_file(benchmark::State& state) {
  million_rows();
  for (auto _ : state)
    benchmark::DoNotOptimize(million_rows().indexed()->index().row_count());
  state.SetBytesProcessed(state.iterations() * million_rows().bytes());
}

void random_cell(benchmark::State& state) {
  const auto file = million_rows().indexed();
  std::mt19937 random(2);
  for (auto _ : state)
    benchmark::DoNotOptimize(file->cell(static_cast<std::uint32_t>(random()) % kRows, 3));
}

void sort(benchmark::State& state) {
  const auto file = million_rows().indexed();
  for (auto _ : state)
    benchmark::DoNotOptimize(sorted_by(*file, static_cast<std::uint32_t>(state.range(0))));
}

// Nothing is found, so that every row is looked at; in the file's order or in a sorted one.
void find(benchmark::State& state) {
  const auto file = million_rows().indexed();
  const RowOrder order = state.range(0) == 0 ? RowOrder{2, kRows} : sorted_by(*file, 2);
  for (auto _ : state) {
    FindTask task(*file, order, state.range(1) == 0 ? "nowhere" : "nirgendwo \xC3\xA4", {},
                  FindDirection::kForward);
    while (task.step(5'000)) {
    }
  }
}

BENCHMARK(first_screen)->Unit(benchmark::kMillisecond);
BENCHMARK(index_file)->Unit(benchmark::kMillisecond);
BENCHMARK(random_cell)->Unit(benchmark::kMicrosecond);
BENCHMARK(sort)->ArgName("column")->Arg(0)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(find)
    ->ArgNames({"sorted", "not_ascii"})
    ->Args({0, 0})
    ->Args({1, 0})
    ->Args({0, 1})
    ->Unit(benchmark::kMillisecond);

}  // namespace
