#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/import/alternatives.h"

/// From a deposition to the program's input, without files and without printing: what the command,
/// a page or a module calls.

/// The warning of a deuterated sample. It is followed by asking for the isotope correction.
inline constexpr char isotopeAdvice[] = "a sample is deuterated: consider citrans -iso";

/// A deposition as the program reads it, and what there is to say of it.
struct Imported {
  std::string table;                 ///< the input table
  std::string map;                   ///< table number, author number and residue name
  std::vector<std::string> remarks;  ///< decisions, one line each
  std::vector<std::string> warnings; ///< what may be wrong, one line each
};

/// \param text  the bytes of an NMR-STAR or NEF file, gzipped or not
/// \param name  what the file is called in messages and in the table
/// Throws ToolError(badData) with one line for a text that cannot be used.
Imported importDeposition(std::string_view text, const std::string& name, const Choice& settings);
/// The same; `alternatives` becomes what there was to choose from.
Imported importDeposition(std::string_view text, const std::string& name, const Choice& settings,
                          Alternatives& alternatives);
/// Of a file; "-" is standard input. Throws ToolError(inputMissing) too.
Imported importDepositionFile(const std::string& path, const Choice& settings);

/// All bytes of a file; "-" is standard input. Throws ToolError(inputMissing).
std::string readInput(const std::string& path);

/// `listContents` of a text or file as above.
std::string depositionContents(std::string_view text, const std::string& name);
std::string depositionContentsOfFile(const std::string& path);
