#include "fuzz/support.h"

#include <algorithm>

#include "app/command_line.h"

namespace {
using fuzzing::require;
}

/// Any bytes as arguments, one a line: accepted names and tidy values, or one plain refusal.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> arguments = fuzzing::linesOf(fuzzing::textOf(data, size));
  arguments.insert(arguments.begin(), "citrans");
  std::vector<char*> pointers;
  pointers.reserve(arguments.size());
  for (std::string& argument : arguments) {
    pointers.push_back(argument.data());
  }
  CITRANS citrans;
  std::string printed;
  citrans.errors = [&printed](std::string_view text) { printed += text; };
  CITRANS::Options options;
  const fuzzing::Outcome outcome = fuzzing::run([&] {
    options = readCommandLine(citrans, static_cast<int>(pointers.size()), pointers.data());
    citrans.setArgs(options);
  });
  require(outcome.end != fuzzing::End::outOfRange && outcome.status == 0, "no other end");
  printed += outcome.messages;
  require(fuzzing::plainMessages(printed), "plain messages");
  for (const auto& [name, value] : options) {
    require(citrans.acceptsOption(name), "accepted names");
    require(value == GDB::simplifyWhiteSpace(value), "tidy values");
  }
  if (outcome.end == fuzzing::End::refused) {
    const bool help = printed.rfind("General Options:", 0) == 0;
    const bool refusal = printed.rfind(" Invaid arg name -", 0) == 0 &&
                         std::count(printed.begin(), printed.end(), '\n') == 1;
    require(help || refusal, "the usage text or one line");
  } else {
    require(citrans.sumName.compare(0, citrans.sumBase.size(), citrans.sumBase) == 0, "base name");
    require(!citrans.inTitle.empty() && !citrans.refTitle.empty(), "a title is never empty");
  }
  return 0;
}
