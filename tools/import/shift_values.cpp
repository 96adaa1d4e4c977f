#include "tools/import/shift_values.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>

#include "tools/import/amino_acids.h"

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
/// A shift beyond this size stands for no value (999.99 and the like).
constexpr double noShiftFrom = 900;
/// BMRB codes from here on leave open which residue or atom a shift belongs to.
constexpr int ambiguousFrom = 4;
/// Two measurements of one atom in one form may differ so much, ppm.
constexpr double sameProton = 0.05;
constexpr double sameHeavyAtom = 0.4;

struct Range {
  double lowest;
  double highest;

  bool holds(double value) const { return value >= lowest && value <= highest; }
};

/// Wider than any assigned shift of a folded diamagnetic protein, ppm; by `tableAtoms`.
constexpr Range usualRanges[] = {{85, 150},  {3, 14},  {0.5, 8}, {0.5, 8}, {0.5, 8},
                                 {160, 190}, {38, 75}, {10, 80}, {10, 185}};
/// No shift of that atom lies outside, whatever the referencing; ppm. Amines of first residues are
/// at 30 to 45, so that nitrogen begins below.
constexpr Range possibleRanges[] = {{15, 180},  {1, 25},  {0.2, 15}, {0.2, 15}, {0.2, 15},
                                    {140, 210}, {30, 90}, {5, 95},   {5, 200}};
/// Of proline: CB is at 29 to 37, CG at 22 to 29.
constexpr Range possibleCbOfProline = {18, 50};
constexpr Range possibleCgOfProline = {12, 42};

bool isPossible(char letter, std::uint8_t atom, double value) {
  if (letter == 'P' && (atom == atomCb || atom == atomCg)) {
    return (atom == atomCb ? possibleCbOfProline : possibleCgOfProline).holds(value);
  }
  return possibleRanges[atom].holds(value);
}

struct Reading {
  std::uint8_t atom;
  double value;
};

bool differ(const Reading& one, double other) {
  const bool proton = one.atom >= atomHn && one.atom <= atomHa3;
  return std::fabs(one.value - other) > (proton ? sameProton : sameHeavyAtom);
}

/// One form of a residue: a shift per atom, and the piece of the list that it came with.
struct Form {
  ShiftValues values{};
  std::array<std::size_t, tableAtoms.size()> pieces{};
  std::size_t count = 0;

  Form() { values.fill(none); }
  bool has(std::uint8_t atom) const { return present(values[atom]); }
};

using Piece = std::vector<Reading>;

/// One residue while its shifts are gathered from all its runs.
class ResidueShifts {
 public:
  ResidueShifts(int position, char letter, TakenShifts& taken)
      : position_(position), letter_(letter), taken_(taken) {}

  void addRun(const ShiftList& list, const ShiftRun& run) {
    Piece piece;
    label_ = residueLabel(run);
    const std::vector<std::uint8_t> atoms = atomsOf(list, run);
    for (std::uint32_t i = 0; i < run.count; ++i) {
      const Shift& shift = list.shifts[run.first + i];
      if (accept(shift, atoms[i])) {
        piece.push_back({atoms[i], shift.value});
      }
    }
    if (letter_ == 'P') {
      addPieces(piece);
    } else {
      pieces_.push_back(piece);
    }
  }

  ShiftValues take() { return letter_ == 'P' ? oneForm() : firsts(); }

 private:
  std::string place(std::uint8_t atom, double value) const {
    return label_ + " " + tableAtoms[atom] + " " + numberText(value);
  }

  /// The atoms of a run with the alpha protons of glycine told apart: two of one name are its two.
  std::vector<std::uint8_t> atomsOf(const ShiftList& list, const ShiftRun& run) {
    std::vector<std::uint8_t> atoms;
    for (std::uint32_t i = 0; i < run.count; ++i) {
      const std::uint8_t atom = list.shifts[run.first + i].atom;
      hasAlphaOne_ = hasAlphaOne_ || atom == alphaOneAtom;
      hasAlphaThree_ = hasAlphaThree_ || atom == atomHa3;
      atoms.push_back(atom);
    }
    for (std::uint8_t& atom : atoms) {
      if (atom == alphaAtom) {
        atom = alphas_++ == 0 ? atomHa2 : atomHa3;
      } else if (atom == alphaOneAtom) {
        atom = atomHa2;
      } else if (atom == atomHa2 && hasAlphaOne_ && !hasAlphaThree_) {
        atom = atomHa3;
      }
    }
    return atoms;
  }

  bool accept(const Shift& shift, std::uint8_t atom) {
    if (std::isnan(shift.value)) {
      taken_.noNumbers.add(position_, label_ + " " + tableAtoms[atom]);
      return false;
    }
    if (std::fabs(shift.value) >= noShiftFrom) {
      taken_.placeholders.add(position_, place(atom, shift.value));
      return false;
    }
    if (!isPossible(letter_, atom, shift.value)) {
      taken_.impossible.add(position_, place(atom, shift.value));
      return false;
    }
    if (shift.ambiguity >= ambiguousFrom) {
      taken_.ambiguous.add(position_, place(atom, shift.value));
    }
    if (!usualRanges[atom].holds(shift.value)) {
      taken_.unusual.add(position_, place(atom, shift.value));
    }
    return true;
  }

  /// Cuts the shifts of a run where an atom comes again with another shift: there a second form
  /// begins. Forms that alternate atom by atom come apart altogether.
  void addPieces(const Piece& run) {
    bool alternate = false;
    for (std::size_t i = 1; i < run.size(); ++i) {
      alternate = alternate || (run[i].atom == run[i - 1].atom && differ(run[i], run[i - 1].value));
    }
    Piece piece;
    Form seen;
    for (const Reading& reading : run) {
      const bool again = seen.has(reading.atom) && differ(reading, seen.values[reading.atom]);
      if (!piece.empty() && (again || alternate)) {
        pieces_.push_back(piece);
        piece.clear();
        seen = Form();
      }
      piece.push_back(reading);
      seen.values[reading.atom] = reading.value;
    }
    pieces_.push_back(piece);
  }

  void addTo(Form& form, std::size_t piece) {
    for (const Reading& reading : pieces_[piece]) {
      if (!form.has(reading.atom)) {
        form.values[reading.atom] = reading.value;
        form.pieces[reading.atom] = piece;
        ++form.count;
      } else if (form.values[reading.atom] != reading.value) {
        taken_.twice.add(position_, place(reading.atom, form.values[reading.atom]) + " and " +
                                        numberText(reading.value));
      }
    }
  }

  ShiftValues firsts() {
    Form form;
    for (std::size_t piece = 0; piece < pieces_.size(); ++piece) {
      addTo(form, piece);
    }
    return form.values;
  }

  /// Puts every piece to the first form that it does not contradict, and takes the largest form.
  ShiftValues oneForm() {
    std::vector<Form> forms(1);
    for (std::size_t piece = 0; piece < pieces_.size(); ++piece) {
      const auto fits = [&](const Form& form) {
        return std::none_of(
            pieces_[piece].begin(), pieces_[piece].end(), [&form](const Reading& reading) {
              return form.has(reading.atom) && differ(reading, form.values[reading.atom]);
            });
      };
      auto form = std::find_if(forms.begin(), forms.end(), fits);
      if (form == forms.end() && forms.size() == mostForms) {
        continue;
      }
      form = form == forms.end() ? forms.insert(form, Form()) : form;
      addTo(*form, piece);
    }
    const auto chosen =
        std::max_element(forms.begin(), forms.end(), [](const Form& one, const Form& other) {
          return one.count < other.count;
        });
    Form form = *chosen;
    if (forms.size() > 1) {
      std::string kept = label_ + formText(form);
      for (auto other = forms.begin(); other != forms.end(); ++other) {
        if (other != chosen) {
          kept += ", not" + formText(*other);
          dropOfUnknownForm(*other, form);
        }
      }
      taken_.forms.add(position_, kept);
    }
    return form.values;
  }

  /// Where two forms differ in one of CB and CG, and the other was told once and apart, nobody
  /// knows which form it belongs to.
  static void dropOfUnknownForm(const Form& other, Form& form) {
    for (const auto& [told, lone] : {std::pair(atomCb, atomCg), std::pair(atomCg, atomCb)}) {
      if (form.has(told) && other.has(told) && form.has(lone) && !other.has(lone) &&
          form.pieces[told] != form.pieces[lone]) {
        form.values[lone] = none;
      }
    }
  }

  static std::string formText(const Form& form) {
    std::string text;
    for (std::uint8_t atom = atomN; atom <= atomCg; ++atom) {
      const bool telling = atom == atomCb || atom == atomCg;
      text += form.has(atom) && (telling || form.count < 3)
                  ? std::string(" ") + tableAtoms[atom] + " " + numberText(form.values[atom])
                  : "";
    }
    return text;
  }

  static constexpr std::size_t mostForms = 8;

  int position_;
  char letter_;
  TakenShifts& taken_;
  std::string label_;
  std::vector<Piece> pieces_;
  std::size_t alphas_ = 0;
  bool hasAlphaOne_ = false;
  bool hasAlphaThree_ = false;
};

} // namespace

TakenShifts::TakenShifts(const std::string& letters)
    : placeholders(letters), noNumbers(letters), impossible(letters), forms(letters),
      twice(letters), ambiguous(letters), unusual(letters) {
  ShiftValues empty;
  empty.fill(none);
  values.assign(letters.size(), empty);
}

bool present(double shift) {
  return !std::isnan(shift);
}

std::string numberText(double shift) {
  char text[32];
  std::snprintf(text, sizeof text, "%.7g", shift);
  return text;
}

std::string residueLabel(const ShiftRun& run) {
  return capitals(run.name) + (run.name.empty() ? "" : " ") + std::string(run.index);
}

TakenShifts takeShifts(const std::string& letters, const ShiftList& list,
                       const std::vector<const ShiftRun*>& runs,
                       const std::vector<int>& positions) {
  TakenShifts taken(letters);
  std::vector<std::uint32_t> order(runs.size());
  std::iota(order.begin(), order.end(), 0U);
  const auto before = [&positions](std::uint32_t one, std::uint32_t other) {
    return positions[one] < positions[other];
  };
  if (!std::is_sorted(order.begin(), order.end(), before)) {
    std::stable_sort(order.begin(), order.end(), before);
  }
  for (std::size_t first = 0; first < order.size();) {
    const int position = positions[order[first]];
    std::size_t last = first;
    while (last < order.size() && positions[order[last]] == position) {
      ++last;
    }
    if (position > 0) {
      const std::size_t at = static_cast<std::size_t>(position) - 1;
      ResidueShifts residue(position, letters[at], taken);
      for (std::size_t i = first; i < last; ++i) {
        residue.addRun(list, *runs[order[i]]);
      }
      taken.values[at] = residue.take();
    }
    first = last;
  }
  return taken;
}
