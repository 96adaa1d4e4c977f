#include "tools/report/files.h"

#include <filesystem>
#include <unistd.h>

#include "table/file_io.h"
#include "tools/common/tool.h"

std::string shiftTableName(const std::string& summary) {
  return summary.substr(0, summary.rfind('.')) + "AdjCS.tab";
}

NamedText readText(const std::string& path) {
  std::error_code error;
  std::optional<std::string> text;
  if (!std::filesystem::is_directory(path, error)) {
    text = readWholeFile(path == "-" ? "/dev/stdin" : path);
  }
  if (!text) {
    throw ToolError(ToolStatus::inputMissing, path + ": cannot read");
  }
  return {path == "-" ? "standard input" : path, std::move(*text)};
}

void makeFolder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) {
    throw ToolError(ToolStatus::cannotWrite, path + ": cannot make the folder");
  }
}

Database readDatabase(const std::string& folder) {
  CITRANS run;
  run.keepSilent();
  run.limitsName = folder + "/sslimit.tab";
  run.proCSName = folder + "/Pro.cs.tab";
  run.proSeqName = folder + "/Pro.seq.tab";
  for (const std::string& table : {run.limitsName, run.proCSName, run.proSeqName,
                                   folder + "/calls.tab", folder + "/reref.tab"}) {
    if (access(table.c_str(), R_OK) != 0) {
      throw ToolError(ToolStatus::inputMissing, table + ": cannot read (see --tab)");
    }
  }
  run.limitsTable.loadGDB(run.limitsName);
  run.getProCSValue(run.proCSName);
  run.getProSeqOccurence(run.proSeqName);
  const GDB statistics(run.proCSName);
  return {std::move(run), calls::Rules::load(folder), referencing::loadModel(folder),
          statisticsMadeBy(statistics)};
}

Sources readSources(const InputPaths& paths) {
  Sources sources;
  sources.summary = readText(paths.summary);
  sources.shifts = readText(paths.shifts.empty() ? shiftTableName(paths.summary) : paths.shifts);
  if (!paths.map.empty()) {
    sources.map = readText(paths.map);
  }
  return sources;
}
