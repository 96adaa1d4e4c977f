#pragma once

#include <string>
#include <vector>

/// Residues and atoms to name in one warning: all are counted, few are kept, prolines and their
/// neighbours before others.
class Places {
 public:
  /// \param letters  the sequence, to tell prolines and their neighbours; must outlive this
  explicit Places(const std::string& letters) : letters_(letters) {}

  /// \param position  1-based; 0 for a residue that is not in the sequence
  void add(int position, const std::string& place);
  std::size_t count() const { return count_; }
  /// "PRO 18 CB 331, ALA 3 C 0 and 5 more".
  std::string text() const;

 private:
  bool nearProline(int position) const;

  const std::string& letters_;
  std::vector<std::string> prolines_;
  std::vector<std::string> others_;
  std::size_t count_ = 0;
};

/// "1 proline", "2 prolines".
std::string counted(std::size_t count, const std::string& one, const std::string& many);
