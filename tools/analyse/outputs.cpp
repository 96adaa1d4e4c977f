#include "tools/analyse/analyse.h"
#include "tools/common/tool.h"
#include "tools/report/exports.h"
#include "tools/report/page.h"
#include "tools/report/pictures_export.h"
#include "tools/report/viewer.h"

namespace analyse {
namespace {

std::string overviewOf(const Result& result) {
  return pictureFiles(result.report, "-").at(0).text;
}

struct Kind {
  const char* name;
  const char* ending; ///< of the file's name
  std::string (*text)(const Result&);
};

constexpr Kind kinds[] = {
    {"html", ".html", [](const Result& result) { return htmlPage(result.report); }},
    {"tsv", ".evidence.tsv", [](const Result& result) { return tsvText(result.report); }},
    {"json", ".json", [](const Result& result) { return jsonText(result.report); }},
    {"svg", ".svg", overviewOf},
    {"chimerax", ".cxc", [](const Result& result) { return chimeraxText(result.report, {}).text; }},
    {"pymol", ".pml", [](const Result& result) { return pymolText(result.report, {}).text; }},
    {"table", ".tab", [](const Result& result) { return result.table; }},
    {"map", ".map", [](const Result& result) { return result.map; }},
    {"summary", ".pred.tab", [](const Result& result) { return result.summary; }},
    {"secondary", ".predAdjCS.tab", [](const Result& result) { return result.secondary; }},
    {"structure", "", [](const Result& result) { return result.structure; }}};

} // namespace

NamedText makeOutput(const Result& result, std::string_view kind) {
  for (const Kind& each : kinds) {
    if (kind == each.name) {
      const bool own = *each.ending == '\0';
      return {own ? result.structureName : result.name + each.ending, each.text(result)};
    }
  }
  throw ToolError(ToolStatus::usage, "no output called " + std::string(kind));
}

} // namespace analyse
