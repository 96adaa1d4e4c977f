#pragma once

#include <cstddef>

/// The functions that the page calls. Texts go in as bytes and come out as bytes of the last call,
/// which hold until the next; one caller at a time.
extern "C" {

/// Analyses one file.
///
/// \param settings  JSON object with any of "entity", "list", "copy", "chain", "model" (texts) and
///                  "isotope", "rereference", "noclip" (booleans)
/// \param structure  null for none
/// \return 0, and the outcome as JSON: the fields "name", "structureName", "protein", "imported",
///         "residues", "notes", "warnings", "entities", "lists", "copies", "chains", "prolines" and
///         "entry", which is for `citrans_page_index`; 1, and the outcome is one line that says why
///         not
int citrans_page_analyse(const char* settings, const char* name, const char* bytes,
                         std::size_t size, const char* structureName, const char* structure,
                         std::size_t structureSize);

/// An output of the last analysis, by the kinds of `analyse::makeOutput`.
/// \return 0, and the outcome is its text; 1 and a line
int citrans_page_output(const char* kind);

/// The list of many files, as citrans-report and citrans-batch make it.
///
/// \param rows  JSON array of objects with a "name", and either with "page" (the name's link)
///              and "entry" (of the file's analysis) or with "message" (why there is no report)
/// \return 0, and the outcome is the page; 1 and a line
int citrans_page_index(const char* rows);

const char* citrans_page_text(); ///< the outcome of the last call
std::size_t citrans_page_size(); ///< its bytes
}
