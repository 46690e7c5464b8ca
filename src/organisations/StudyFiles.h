#pragma once

#include <functional>

namespace kestrix {

struct Context;

/// Makes the study database of ActiveStudyNo as a copy of the empty template. A study that exists
/// is never replaced: one that was left over under a number that is used again is taken up as it
/// stands. A missing template and a copy that couldn't be made are told to the person; it never
/// fails.
void CreateStudyDb(Context& context);

/// Deletes the study database and the picture folder of DeleteStudyNo, each as far as it can be
/// deleted, and clears ActiveOrgName when the study was in use. `release_study` makes this run let
/// go of the study; it is called when the study's lock sign stands. When somebody still has the
/// study open after that, the person is told and the database stays. It never fails.
void DeleteStudyFiles(Context& context, const std::function<void()>& release_study);

}  // namespace kestrix
