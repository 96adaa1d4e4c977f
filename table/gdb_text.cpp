#include <algorithm>
#include <cstring>

#include "table/gdb.h"

std::string GDB::simplifyWhiteSpace(const std::string& text) {
  std::string simple;
  bool gap = false;
  for (const char c : text) {
    if (isSpace(c)) {
      gap = true;
      continue;
    }
    if (gap && !simple.empty()) {
      simple += ' ';
    }
    gap = false;
    simple += c;
  }
  return simple;
}

std::vector<std::string> GDB::split_WhiteSpace(const std::string& text) {
  if (text.empty()) {
    return {std::string()};
  }
  return split(" ", simplifyWhiteSpace(text));
}

std::vector<std::string> GDB::split(const std::string& separator, const std::string& text) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t cut = separator.empty() ? std::string::npos : text.find(separator, start);
    const std::size_t end = std::min(cut, text.size());
    if (end > start) {
      pieces.push_back(text.substr(start, end - start));
    }
    start = end + separator.size();
    if (cut == std::string::npos) {
      break;
    }
  }
  return pieces;
}

std::vector<std::string> GDB::split(const char& separator, const std::string& text) {
  return split(std::string(1, separator), text);
}

char* GDB::section(const std::string& text, const char& separator, char* out, int from, int to) {
  const std::vector<std::string> pieces = split(separator, text);
  std::string joined;
  const int last = std::min(to, static_cast<int>(pieces.size()) - 1);
  for (int i = std::max(from, 0); i <= last; ++i) {
    joined += pieces[static_cast<std::size_t>(i)];
    if (i < last) {
      joined += separator;
    }
  }
  std::memcpy(out, joined.c_str(), joined.size() + 1);
  return out;
}

int GDB::contains(const std::string& text, const char& wanted) {
  return static_cast<int>(std::count(text.begin(), text.end(), wanted));
}

int GDB::contains(const std::string& text, const std::string& wanted) {
  int places = 0;
  for (std::size_t at = text.find(wanted); at != std::string::npos && at < text.size();
       at = text.find(wanted, at + 1)) {
    ++places;
  }
  return places;
}
