#pragma once

// The functions of POSIX, which <clocale> need not have.
#include <locale.h> // NOLINT(modernize-deprecated-headers)

/// While one lives, the C library reads and prints numbers with a point in this thread, whatever
/// locale the program around it has set with `setlocale`. Other threads see nothing of it.
class PlainLocale {
 public:
  PlainLocale() : before_(uselocale(plain())) {}
  PlainLocale(const PlainLocale&) = delete;
  PlainLocale& operator=(const PlainLocale&) = delete;
  ~PlainLocale() { uselocale(before_); }

 private:
  /// Made once and kept to the end of the process.
  static locale_t plain() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
  }
  locale_t before_;
};
