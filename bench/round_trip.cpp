/// Loads a table and saves it: bench_round_trip IN OUT

#include "table/gdb.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    return 2;
  }
  const GDB table(argv[1]);
  table.saveGDB(argv[2]);
  return 0;
}
