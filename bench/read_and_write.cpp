/// The cost of files alone: reads each file line by line and writes so many bytes.
///
///   bench_read_and_write [NAME:BYTES...] -- FILE...
///
/// Each NAME is created with that many bytes, in lines of 60; "-" is standard output.

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

namespace {

void writeLines(std::ostream& out, std::size_t bytes) {
  const std::string line = std::string(59, '.') + "\n";
  for (; bytes >= line.size(); bytes -= line.size()) {
    out << line;
  }
  out << line.substr(0, bytes);
}

} // namespace

int main(int argc, char** argv) {
  int at = 1;
  while (at < argc && std::strcmp(argv[at], "--") != 0) {
    ++at;
  }
  std::size_t characters = 0;
  for (int file = at + 1; file < argc; ++file) {
    std::ifstream in(argv[file]);
    for (std::string line; std::getline(in, line);) {
      characters += line.size();
    }
  }
  for (int output = 1; output < at; ++output) {
    const std::string text = argv[output];
    const std::size_t colon = text.rfind(':');
    const std::size_t bytes = std::strtoul(text.c_str() + colon + 1, nullptr, 10);
    if (text.substr(0, colon) == "-") {
      writeLines(std::cout, bytes);
    } else {
      std::ofstream out(text.substr(0, colon));
      writeLines(out, bytes);
    }
  }
  return characters > 0 ? 0 : 1;
}
