#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

#include "table/plain_locale.h"
#include "table/run_end.h"
#include "tools/analyse/analyse.h"
#include "tools/common/tool.h"
#include "tools/import/import.h"

/// The native part of the Python module: takes bytes, gives tuples of numbers and texts, which the
/// package makes its classes of. Other Python threads run while it works.
namespace py = pybind11;

namespace {

/// Depositions may hold bytes that are no UTF-8; a replacement character stands for those.
py::str text(std::string_view bytes) {
  PyObject* const decoded =
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<py::ssize_t>(bytes.size()), "replace");
  if (decoded == nullptr) {
    throw py::error_already_set();
  }
  return py::reinterpret_steal<py::str>(decoded);
}

py::tuple texts(const std::vector<std::string>& lines) {
  py::tuple all(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    all[i] = text(lines[i]);
  }
  return all;
}

/// The double with the fewest digits that is this number in single precision, in which the program
/// computes: 24.6 for what would show as 24.600000381469727.
double inDouble(float value) {
  std::array<char, 32> digits{};
  const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  double same = 0;
  std::from_chars(digits.data(), end, same); // whatever the locale
  return same;
}

py::object number(bool present, float value) {
  return present && std::isfinite(value) ? py::object(py::float_(inDouble(value))) : py::none();
}

/// The fields of Term, in order. Shifts and statistics are in single precision, as the program
/// reads them.
py::tuple termFields(const Report& report, const Term& term) {
  const bool shift = term.kind != Term::Kind::neighbour;
  const auto single = [](double value) { return static_cast<float>(value); };
  return py::make_tuple(
      kindName(term.kind), term.place, term.residue, text(report.inputs.number(term.residue)),
      term.atom, stateName(term), number(shift && term.present, single(term.shift)),
      number(shift && term.present, single(term.used)), number(true, single(term.cis)),
      number(shift, single(term.cisDeviation)), number(true, single(term.trans)),
      number(shift, single(term.transDeviation)), term.logRatio);
}

py::object evidence(const Report& report, const ProlineReport& proline) {
  const std::vector<Term>& terms = proline.evidence.terms;
  py::tuple all(terms.size());
  for (std::size_t i = 0; i < terms.size(); ++i) {
    all[i] = termFields(report, terms[i]);
  }
  return all;
}

/// The fields of Proline, in order. The likelihoods are those of the prediction: the report's come
/// from its printed summary.
py::tuple prolineFields(const Report& report, const Prediction& prediction, bool withEvidence) {
  const ProlineReport& proline = *report.proline(prediction.residue);
  const auto& counts = prediction.shiftCounts;
  return py::make_tuple(
      prediction.residue, text(report.inputs.number(prediction.residue)), prediction.names[0],
      prediction.names[2], py::make_tuple(counts[0], counts[1], counts[2]),
      number(static_cast<double>(prediction.cgShift) < shift::missingFrom, prediction.cgShift),
      inDouble(prediction.likelihood.cis), inDouble(prediction.likelihood.normalised),
      callName(proline.verdict.call), number(proline.row.comparable(), prediction.referenceOmega),
      withEvidence ? evidence(report, proline) : py::none());
}

/// Runs a piece of work while other Python threads run. What ends it is the line that the programs
/// print, as InputError.
template <class Work>
auto unlocked(const Work& work) {
  const py::gil_scoped_release released;
  const PlainLocale point;
  try {
    return work();
  } catch (const RunEnd& refusal) {
    throw ToolError(ToolStatus::badData, GDB::simplifyWhiteSpace(refusal.message()));
  } catch (const std::out_of_range& fault) { // from lines that hold less than they should
    throw ToolError(ToolStatus::badData, fault.what());
  }
}

/// What `predict` has found, until the package asks for its parts.
struct Analysis {
  analyse::Result result;

  py::list prolines(bool withEvidence) const {
    py::list all;
    for (const analyse::Proline& proline : result.prolines) {
      all.append(prolineFields(result.report, proline.used, withEvidence));
    }
    return all;
  }

  py::dict notPredicted() const {
    py::dict reasons;
    for (const ProlineReport& proline : result.report.prolines) {
      if (!proline.predicted) {
        reasons[py::int_(proline.residue)] = text(proline.verdict.evidence);
      }
    }
    return reasons;
  }

  py::dict offsets() const {
    py::dict all;
    for (std::size_t i = 0; result.referencing && i < referencing::nucleusCount; ++i) {
      const referencing::Estimate& estimate = (*result.referencing)[i];
      all[referencing::describe(static_cast<referencing::Nucleus>(i))] =
          py::make_tuple(estimate.offset, estimate.error, estimate.points, estimate.applies);
    }
    return all;
  }

  py::str output(const std::string& kind) const {
    return text(unlocked([&] { return analyse::makeOutput(result, kind).text; }));
  }
};

using Bytes = std::pair<std::string, py::bytes>; ///< name without folders, contents

analyse::File fileOf(const Bytes& bytes) {
  return {bytes.first, std::string_view(bytes.second)};
}

Choice choiceFrom(const std::string& entity, const std::string& list, const std::string& copy,
                  bool oxidisedByCb) {
  Choice choice;
  choice.entity = entity;
  choice.list = list;
  choice.copy = copy;
  choice.oxidisedByCb = oxidisedByCb;
  return choice;
}

std::unique_ptr<Analysis> analyseFiles(const Bytes& shifts, const std::optional<Bytes>& structure,
                                       const Choice& choice, const StructureChoice& place,
                                       bool isotope, bool rereference, bool clip) {
  analyse::Settings settings;
  settings.choice = choice;
  settings.structure = place;
  settings.isotope = isotope;
  settings.rereference = rereference;
  settings.clip = clip;
  const analyse::File file = fileOf(shifts);
  const std::optional<analyse::File> reference =
      structure ? std::optional(fileOf(*structure)) : std::nullopt;
  return unlocked([&] {
    return std::make_unique<Analysis>(Analysis{analyse::analyse(file, reference, settings)});
  });
}

/// The fields of ImportedTable, in order.
py::tuple importFile(const Bytes& deposition, const Choice& choice) {
  const analyse::File file = fileOf(deposition);
  const Imported imported =
      unlocked([&] { return importDeposition(file.bytes, std::string(file.name), choice); });
  return py::make_tuple(text(imported.table), text(imported.map), texts(imported.remarks),
                        texts(imported.warnings));
}

void defineError(py::module_& module) {
  // Lives as long as the process: the interpreter may end before this library does.
  static PyObject* const inputError =
      py::exception<ToolError>(module, "InputError", PyExc_ValueError).release().ptr();
  py::handle(inputError).attr("__module__") = "citrans";
  py::handle(inputError).attr("__doc__") =
      "Input that cannot be used; says what the program would print.";
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      std::rethrow_exception(std::move(thrown));
    } catch (const ToolError& error) {
      PyErr_SetObject(inputError, text(error.what()).ptr());
    }
  });
}

} // namespace

PYBIND11_MODULE(_core, module) {
  using namespace py::literals;
  module.attr("__version__") = CITRANS_VERSION;
  defineError(module);

  py::class_<Choice>(module, "Choice")
      .def(py::init(&choiceFrom), "entity"_a, "shift_list"_a, "copy"_a, "oxidised_by_cb"_a);
  py::class_<StructureChoice>(module, "StructureChoice")
      .def(py::init([](const std::string& chain, const std::string& model) {
             return StructureChoice{chain, model};
           }),
           "chain"_a, "model"_a);
  py::class_<Analysis>(module, "Analysis")
      .def("prolines", &Analysis::prolines, "evidence"_a)
      .def("not_predicted", &Analysis::notPredicted)
      .def("offsets", &Analysis::offsets)
      .def("text", &Analysis::output, "kind"_a)
      .def("sequence", [](const Analysis& analysis) { return text(analysis.result.sequence); })
      .def("notes", [](const Analysis& analysis) { return texts(analysis.result.decisions()); })
      .def("warnings", [](const Analysis& analysis) { return texts(analysis.result.warnings()); });
  module.def("analyse", &analyseFiles, "shifts"_a, "structure"_a, "choice"_a, "place"_a,
             "isotope"_a, "rereference"_a, "clip"_a);
  module.def("import_file", &importFile, "deposition"_a, "choice"_a);
}
