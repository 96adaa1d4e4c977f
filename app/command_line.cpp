#include "app/command_line.h"

#include "table/message_text.h"

namespace {

bool isPlainSwitch(const std::string& name) {
  return name == "noclip" || name == "nodetail" || name == "check";
}

} // namespace

CITRANS::Options readCommandLine(const CITRANS& run, int argumentCount, char* const* arguments) {
  std::string text;
  for (int i = 1; i < argumentCount; ++i) {
    text += " ";
    text += arguments[i];
  }
  CITRANS::Options options;
  for (const std::string& token : GDB::split(" -", text)) {
    const std::size_t blank = token.find(' ');
    const std::string name = token.substr(0, blank);
    const std::string value = blank == std::string::npos ? token : token.substr(blank + 1);
    if (!run.acceptsOption(name)) {
      throw RunEnd(0, " Invaid arg name -" + messageText(name) + "\n");
    }
    options[name] = isPlainSwitch(name) ? "true" : GDB::simplifyWhiteSpace(value);
  }
  return options;
}
