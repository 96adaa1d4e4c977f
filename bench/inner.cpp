/// The inner operations under Google Benchmark: bench_inner DATA EXAMPLES [benchmark options]

#include <benchmark/benchmark.h>
#include <string>

#include "app/citrans.h"
#include "table/cell_format.h"
#include "table/number.h"

namespace {

std::string dataFolder;
std::string examplesFolder;

void loadTable(benchmark::State& state) {
  for (auto _ : state) {
    const GDB table(dataFolder + "/rows-300000.tab");
    benchmark::DoNotOptimize(table.rowCount());
  }
}
BENCHMARK(loadTable)->Unit(benchmark::kMillisecond);

void saveTable(benchmark::State& state) {
  const GDB table(dataFolder + "/rows-300000.tab");
  for (auto _ : state) {
    table.saveGDB("/dev/null");
  }
}
BENCHMARK(saveTable)->Unit(benchmark::kMillisecond);

void findRowByTwoColumns(benchmark::State& state) {
  const GDB table(dataFolder + "/residues-30000.tab");
  int residue = 0;
  for (auto _ : state) {
    residue = residue % 30000 + 1;
    benchmark::DoNotOptimize(table.findRow("RESID", std::to_string(residue), "ATOMNAME", "CA"));
  }
}
BENCHMARK(findRowByTwoColumns);

void readCell(benchmark::State& state) {
  const GDB table(examplesFolder + "/ybbr.tab");
  std::size_t row = 0;
  for (auto _ : state) {
    row = row + 1 < table.rowCount() ? row + 1 : 0;
    benchmark::DoNotOptimize(table.cell(row, "SHIFT"));
  }
}
BENCHMARK(readCell);

void printCell(benchmark::State& state) {
  const CellFormat format("%8.3f");
  std::string out;
  for (auto _ : state) {
    out.clear();
    format.append(out, "171.100");
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(printCell);

void readNumber(benchmark::State& state) {
  for (auto _ : state) {
    std::string_view text = "171.100";
    benchmark::DoNotOptimize(text);
    benchmark::DoNotOptimize(parseDouble(text));
  }
}
BENCHMARK(readNumber);

/// A run up to the prepared shifts; the tables are sought from the current directory.
void prepare(CITRANS& run) {
  run.setArgs({{"in", examplesFolder + "/ybbr.tab"}});
  run.init();
  run.sequence = run.inputTable.residueNames();
  run.residueCount = static_cast<int>(run.sequence.size());
  run.shiftTable.copyHeader(run.inputTable);
  run.shiftTable.addVAR("CS_OBS", "%9.3f");
  run.shiftTable.addVAR("CS_ADJ", "%9.3f");
}

void prepareShifts(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    CITRANS run;
    prepare(run);
    state.ResumeTiming();
    run.fillShiftTable();
  }
}
BENCHMARK(prepareShifts)->Unit(benchmark::kMicrosecond);

void predictOneProline(benchmark::State& state) {
  CITRANS run;
  prepare(run);
  run.fillShiftTable();
  for (auto _ : state) {
    const CITRANS::Triplet triplet = run.getTriplet(82);
    benchmark::DoNotOptimize(run.getLikelihood(triplet, run.cgShifts[82]));
  }
}
BENCHMARK(predictOneProline)->Unit(benchmark::kMicrosecond);

void readStructure(benchmark::State& state) {
  for (auto _ : state) {
    PDB structure(dataFolder + "/atoms-100000.pdb");
    benchmark::DoNotOptimize(structure.lastResID);
  }
}
BENCHMARK(readStructure)->Unit(benchmark::kMillisecond);

void everyOmega(benchmark::State& state) {
  PDB structure(dataFolder + "/atoms-100000.pdb");
  for (auto _ : state) {
    for (int residue = structure.firstResID; residue <= structure.lastResID; ++residue) {
      benchmark::DoNotOptimize(structure.getOmega(1, residue));
    }
  }
}
BENCHMARK(everyOmega)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: bench_inner DATA EXAMPLES [benchmark options]\n", stderr);
    return 2;
  }
  dataFolder = argv[1];
  examplesFolder = argv[2];
  argv[2] = argv[0];
  int count = argc - 2;
  benchmark::Initialize(&count, argv + 2);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
