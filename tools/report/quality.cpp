#include "tools/report/quality.h"

#include <cstdio>
#include <unistd.h>

#include "table/file_io.h"
#include "table/number.h"
#include "tools/common/tool.h"

namespace {

/// Sends a standard stream into a nameless file for as long as it lives.
class StreamCapture {
 public:
  explicit StreamCapture(std::FILE* stream) : stream_(stream), file_(std::tmpfile()) {
    std::fflush(stream_);
    saved_ = dup(fileno(stream_));
    if (file_ == nullptr || saved_ < 0 || dup2(fileno(file_), fileno(stream_)) < 0) {
      throw ToolError(ToolStatus::cannotWrite, "cannot make a temporary file");
    }
  }
  ~StreamCapture() {
    restore();
    std::fclose(file_);
  }
  StreamCapture(const StreamCapture&) = delete;
  StreamCapture& operator=(const StreamCapture&) = delete;

  std::string text() {
    restore();
    std::rewind(file_);
    std::string all;
    for (int c = std::fgetc(file_); c != EOF; c = std::fgetc(file_)) {
      all += static_cast<char>(c);
    }
    return all;
  }

 private:
  void restore() {
    if (saved_ >= 0) {
      std::fflush(stream_);
      dup2(saved_, fileno(stream_));
      ::close(saved_);
      saved_ = -1;
    }
  }

  std::FILE* stream_;
  std::FILE* file_;
  int saved_ = -1;
};

void takeOutlier(const std::string& line, ShiftCheck& check) {
  char name[32];
  char atom[32];
  Outlier outlier;
  if (std::sscanf(line.c_str(), "%d %31s %31s Secondary Shift: %lf Limit: %lf", &outlier.residue,
                  name, atom, &outlier.shift, &outlier.limit) == 5) {
    outlier.name = name;
    outlier.atom = atom;
    outlier.marked = line.back() == '!';
    check.outliers.push_back(outlier);
  }
}

/// The check prints an estimate after these words; that of HA on a line of its own.
constexpr struct {
  const char* words;
  const char* nuclei;
} estimates[] = {{"Referencing Offset for CA/CB:", "CA and CB"},
                 {"Referencing Offset for HA:", "HA"},
                 {"Referencing Offset for C':", "C'"}};

constexpr struct {
  const char* words;
  const char* nuclei;
} shortageLines[] = {{"Not enough CA shifts", "CA and CB"},
                     {"Not enough HA shifts", "HA"},
                     {"Not enough C' shifts", "C'"}};

void takeEstimates(const Printed& printed, ShiftCheck& check) {
  for (const auto& [words, nuclei] : estimates) {
    const std::size_t at = printed.standardOutput.find(words);
    ReportedOffset estimate;
    estimate.nuclei = nuclei;
    if (at != std::string::npos &&
        std::sscanf(printed.standardOutput.c_str() + at + std::string(words).size(),
                    " %lf +/- %lfppm %*s %d", &estimate.offset, &estimate.error,
                    &estimate.points) == 3) {
      check.offsets.push_back(estimate);
    }
  }
  for (const auto& [words, nuclei] : shortageLines) {
    if (printed.standardError.find(words) != std::string::npos) {
      check.shortages.emplace_back(nuclei);
    }
  }
}

} // namespace

Printed capture(const std::function<void()>& function) {
  StreamCapture output(stdout);
  StreamCapture error(stderr);
  function();
  return {output.text(), error.text()};
}

ShiftCheck checkShifts(CITRANS& run) {
  const Printed printed = capture([&run] { run.checkCS(); });
  ShiftCheck check;
  std::string_view rest = printed.standardOutput;
  for (std::string_view line; takeLine(rest, line);) {
    takeOutlier(std::string(line), check);
  }
  takeEstimates(printed, check);
  return check;
}

void subtractOffsets(CITRANS& run) {
  GDB& table = run.shiftTable;
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const double secondary = parseDouble(table.cell(row, "SHIFT"));
    const auto known = run.offsets.find(table.cell(row, "ATOMNAME"));
    if (!(secondary < shift::missingFrom) || known == run.offsets.end()) {
      continue;
    }
    const float corrected = static_cast<float>(secondary - static_cast<double>(known->second));
    char text[32];
    table.setCell(row, "SHIFT", CITRANS::ftoa(corrected, text, 'g', 6));
    const std::string_view name = table.cell(row, "RESNAME");
    float& cg = run.cgShifts[parseInt(table.cell(row, "RESID"))];
    if ((name == "P" || name == "PRO") && cg != 0 && static_cast<double>(cg) < shift::missingFrom) {
      cg -= known->second;
    }
  }
}
