#include "organisations/StudyFiles.h"

#include "formkit/Controls.h"
#include "formkit/Form.h"
#include "platform/FileSystem.h"
#include "shell/SessionForm.h"
#include "store/Database.h"
#include "store/Schema.h"

namespace kestrix {
namespace {

/// What the database engine leaves beside a study when it was killed in the middle of a change.
/// Such a journal would be played back into the next study of that name.
QString JournalOf(const QString& study) {
  return study + QStringLiteral("-journal");
}

void DeleteIfThere(FileSystem& files, const QString& path) {
  if (files.FileExists(path)) files.DeleteFile(path);
}

/// Whether anyone has the study open at this moment; a sign that a killed process left is removed.
bool IsOpen(const FileSystem& files, const QString& study) {
  const QString sign = LockSign::PathFor(study);
  if (!files.FileExists(sign)) return false;
  {
    // Whoever holds the sign last takes it away: if that can be this one, nobody else does.
    const LockSign probe(study);
  }
  return files.FileExists(sign);
}

void DeleteStudy(FileSystem& files, const QString& study) {
  // A file can be unlinked below the feet of those who work on it. Theirs stays.
  if (!files.FileExists(study) || IsOpen(files, study)) return;
  const WaitCursor waiting;
  files.DeleteFile(study);
  DeleteIfThere(files, JournalOf(study));
  for (const QString& copy : CopiesOfVersions(study)) DeleteIfThere(files, copy);
}

}  // namespace

void CreateStudyDb(Context& context) {
  FileSystem& files = context.kit.platform.files;
  Messages& messages = context.kit.platform.messages;
  SessionState& session = context.session;
  const QString source = context.installation.StudyTemplate();
  const QString study = context.installation.Study(session.ActiveStudyNo);

  session.FileFoundA = files.FileExists(source);
  if (!session.FileFoundA) {
    messages.Show(Tell(Icon::kInformation, QStringLiteral("BELTROVAN: File missing."),
                       QStringLiteral("Installed files missing.")));
    return;
  }
  session.FileFoundB = files.FileExists(study);
  if (session.FileFoundB) return;

  PassOver([&] { DeleteIfThere(files, JournalOf(study)); },
           [&] {
             const WaitCursor waiting;
             files.CopyFile(source, study);
           });
  session.FileFoundC = files.FileExists(study);
  if (!session.FileFoundC) {
    messages.Show(Tell(Icon::kInformation, title::kProgram,
                       QStringLiteral("Failed to create files. Seek Administrator approval for "
                                      "File installation.")));
  }
}

void DeleteStudyFiles(Context& context, const std::function<void()>& release_study) {
  FileSystem& files = context.kit.platform.files;
  SessionState& session = context.session;
  const int number = session.DeleteStudyNo;
  const QString sign = context.installation.StudySign(number);
  const QString pictures = context.installation.PictureFolder(number);

  session.FileFoundA = files.FileExists(sign);
  if (session.FileFoundA) PassOver(release_study, [&] { session.ActiveOrgName.clear(); });
  session.FileFoundA = files.FileExists(sign);
  if (session.FileFoundA) {
    context.kit.platform.messages.Show(
        Tell(Icon::kCritical, title::kProgram,
             QStringLiteral("Failed to delete records as more than one user has opened this "
                            "file.")));
  }
  PassOver([&] { DeleteStudy(files, context.installation.Study(number)); },
           [&] {
             session.FileFoundC = files.FolderExists(pictures);
             if (!session.FileFoundC) return;
             const WaitCursor waiting;
             files.DeleteFolder(pictures);
           });
}

}  // namespace kestrix
