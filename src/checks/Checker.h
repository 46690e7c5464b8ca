#pragma once

#include <QDate>
#include <functional>
#include <vector>

#include "checks/Finding.h"
#include "records/Source.h"

namespace kestrix::checks {

/// Asks all rules of what is stored. It only reads; a study that can't be read is a finding like
/// any other, and the others are checked all the same.
class Checker {
 public:
  /// Fails as reading the lists does.
  Checker(records::Source& source, QDate today);

  /// All of an installation: every organisation in the register's order, then files of nobody.
  /// Fails as reading the register does.
  [[nodiscard]] std::vector<Finding> CheckAll();
  [[nodiscard]] std::vector<Finding> CheckOrganisation(const records::Organisation& of);
  /// A project that was read already. It can't fail.
  [[nodiscard]] std::vector<Finding> CheckProject(const records::Organisation& of,
                                                  const records::Project& project);

 private:
  records::Source& source_;
  records::Lists lists_;
  QDate today_;
};

}  // namespace kestrix::checks
