#pragma once

#include <locale.h>

namespace orn {

/// As long as it lives, the C library's functions on this thread write and read numbers with a point, whatever the
/// host's locale says.
class PointForDecimals {
 public:
  PointForDecimals() : plain_(newlocale(LC_NUMERIC_MASK, "C", nullptr)), before_(uselocale(plain_)) {}
  ~PointForDecimals() {
    uselocale(before_);
    if (plain_) freelocale(plain_);
  }
  PointForDecimals(const PointForDecimals&) = delete;
  PointForDecimals& operator=(const PointForDecimals&) = delete;

 private:
  locale_t plain_;
  locale_t before_;
};

}  // namespace orn
