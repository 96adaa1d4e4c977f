#include "tools/common/tool.h"
#include "tools/import/gzip_text.h"

// The page unpacks gzip files before it hands them over.

bool isGzip(std::string_view bytes) {
  return bytes.substr(0, 2) == "\x1f\x8b";
}

std::string unpackGzip(std::string_view /*bytes*/, const std::string& name) {
  throw ToolError(ToolStatus::badData, name + ": packed more than once");
}
