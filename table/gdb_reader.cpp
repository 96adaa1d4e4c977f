#include <algorithm>

#include "table/file_io.h"
#include "table/gdb.h"
#include "table/message_text.h"
#include "table/number.h"
#include "table/run_end.h"

namespace {

/// Takes the next token off `rest`; false when only white space is left.
bool takeToken(std::string_view& rest, std::string_view& token) {
  const char* const end = rest.data() + rest.size();
  const char* first = rest.data();
  while (first != end && GDB::isSpace(*first)) {
    ++first;
  }
  const char* last = first;
  while (last != end && !GDB::isSpace(*last)) {
    ++last;
  }
  token = {first, static_cast<std::size_t>(last - first)};
  rest = {last, static_cast<std::size_t>(end - last)};
  return last != first;
}

/// `keyword` is in upper case.
bool isKeyword(std::string_view token, std::string_view keyword) {
  if (token.size() != keyword.size()) {
    return false;
  }
  for (std::size_t i = 0; i < token.size(); ++i) {
    const char c = token[i];
    const char upper = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    if (upper != keyword[i]) {
      return false;
    }
  }
  return true;
}

/// Number of the next residue name; at the largest number there is, names replace each other.
int nextResidueNumber(int first, std::size_t stored) {
  constexpr long long largest = 2147483647;
  const long long number = first + static_cast<long long>(stored);
  return static_cast<int>(number < largest ? number : largest);
}

/// The name that a sequence character stands for; 'X' for one that is no residue. Kept: 'Z' is
/// none, unlike the other capitals.
char sequenceName(char c) {
  const bool known = (c >= 'A' && c <= 'Y') || c == 'c' || c == 'p' || c == 'h' || c == '?';
  return known ? c : 'X';
}

/// How many rows may follow when they are like this line, limited so that room for them takes no
/// more than the file.
std::size_t rowsExpected(std::string_view line, std::string_view rest) {
  constexpr std::size_t shortestLine = 16;
  return rest.size() / std::max(line.size() + 1, shortestLine) + 2;
}

} // namespace

/// Where the reading of one file stands.
struct GDB::Reading {
  std::shared_ptr<const std::string> text;
  int rowNumber = 1;
  bool formatSeen = false;
  std::vector<std::string_view> tokens; ///< of one line; kept to spare an allocation a line
};

void GDB::loadGDB(const std::string& fileName) {
  fileName_ = fileName;
  std::optional<std::string> text = readWholeFile(fileName);
  if (!text) {
    throw RunEnd(0, "\tCan't open file " + messageText(fileName) + " for reading\n");
  }
  loadText(std::move(*text));
}

void GDB::loadText(std::string text) {
  Reading reading;
  reading.text = std::make_shared<const std::string>(std::move(text));
  std::string_view rest = *reading.text;
  for (std::string_view line; takeLine(rest, line);) {
    if (rows_.size() == 1) {
      rows_.reserve(rowsExpected(line, rest));
    }
    // A row whose first cell is a keyword is also that keyword's line. Kept.
    if (reading.formatSeen && readRow(line, reading)) {
      ++reading.rowNumber;
    }
    readKeyword(line, reading);
  }
  readSequence();
}

bool GDB::readRow(std::string_view line, Reading& reading) {
  const std::size_t columns = columnNames_.size();
  std::vector<std::string_view>& tokens = reading.tokens;
  tokens.clear();
  std::string_view token;
  // One token more than fits tells a long line; reading on would only cost memory.
  while (tokens.size() <= columns && takeToken(line, token)) {
    tokens.push_back(token);
  }
  if (columns == 0 || tokens.size() != columns) {
    return false;
  }
  rows_.setRow(rows_.findOrInsert(reading.rowNumber), columnSlots_, tokens, reading.text);
  return true;
}

void GDB::readKeyword(std::string_view line, Reading& reading) {
  std::string_view rest = line;
  std::string_view token;
  if (!takeToken(rest, token)) {
    return;
  }
  // The cuts below count from the start of the line, or of the simplified line, not from the
  // keyword, and throw on a line that holds nothing more. Kept.
  if (isKeyword(token, "REMARK")) {
    addRemark(std::string(line).substr(token.size() + 1));
  } else if (isKeyword(token, "DATA")) {
    dataItems_.push_back(simplifyWhiteSpace(std::string(line)).substr(token.size() + 1));
  } else if (isKeyword(token, "VARS")) {
    varsText_ = simplifyWhiteSpace(std::string(rest));
    VARS_str_parser(varsText_);
  } else if (isKeyword(token, "FORMAT")) {
    formatText_ = std::string(line).substr(token.size());
    FORMAT_str_parser(formatText_);
    reading.formatSeen = true;
  }
}

void GDB::readSequence() {
  const std::string first = getData("FIRST_RESID");
  firstResidue_ = first.empty() ? 1 : parseInt(first);
  for (const char c : getData("SEQUENCE")) {
    if (c != ' ') {
      residueNames_[nextResidueNumber(firstResidue_, residueNames_.size())] =
          std::string(1, sequenceName(c));
    }
  }
}
