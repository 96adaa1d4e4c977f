#include "tools/import/foreign_file.h"

#include "table/number.h"
#include "tools/import/star_tokens.h"

namespace {

struct Beginning {
  std::string_view bytes;
  std::string_view kind;
};

constexpr Beginning packed[] = {
    {"PK\x03\x04", "a zip file: unpack it first"},
    {"BZh", "a bzip2 file: unpack it first"},
    {{"\xfd"
      "7zXZ\0",
      6},
     "an xz file: unpack it first"},
    {"\x1f\x9d", "a file of compress: unpack it first"},
    {"\xff\xfe", "text in UTF-16: save it as plain text"},
    {"\xfe\xff", "text in UTF-16: save it as plain text"},
};

/// What a server answers in place of a file, or another form of an entry.
constexpr Beginning pages[] = {
    {"<!doctype html", "a web page"},
    {"<html", "a web page"},
    {"<?xml", "an XML file"},
    {"{", "a JSON file"},
};

bool begins(std::string_view text, std::string_view start) {
  return equalWithoutCase(text.substr(0, start.size()), start);
}

} // namespace

std::string_view foreignKind(std::string_view bytes) {
  for (const Beginning& one : packed) {
    if (bytes.substr(0, one.bytes.size()) == one.bytes) {
      return one.kind;
    }
  }
  const std::string_view text = trimmed(bytes);
  for (const Beginning& one : pages) {
    if (begins(text, one.bytes)) {
      return one.kind;
    }
  }
  return "";
}
