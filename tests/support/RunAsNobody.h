#pragma once

#include <QString>
#include <functional>
#include <optional>

namespace kestrix {

/// Whether a child of ours can run without rights of its own: folder permissions don't bite on a
/// process of root, so a test of them needs one.
[[nodiscard]] bool CanRunAsNobody();

/// Gives `folder` and all in it to the user that RunAsNobody runs as. Nothing to do where we run
/// without special rights anyway.
void GiveToNobody(const QString& folder);

/// Runs `work` in a forked child without rights of its own and returns its text; nothing when there
/// can be no such child, or when it died or took longer than 30 seconds. A Failure that leaves
/// `work` comes back as "Failure <number>: <description>".
[[nodiscard]] std::optional<QString> RunAsNobody(const std::function<QString()>& work);

/// As RunAsNobody, with the rights that we have: for limits that must not stay with the tests.
[[nodiscard]] std::optional<QString> RunInChild(const std::function<QString()>& work);

}  // namespace kestrix

/// Leaves a test that needs a process without rights where there can be none.
#define KESTRIX_SKIP_WITHOUT_NOBODY()                         \
  if (!::kestrix::CanRunAsNobody())                           \
  GTEST_SKIP() << "no process without rights can be started " \
                  "here"
