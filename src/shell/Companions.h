#pragma once

#include <QString>

namespace kestrix {

struct Context;

/// The programs and help files that stand beside this one, as the frame and the project form reach
/// them: a home page in the folder above, a report preview and help files in the application's
/// folder. They are known by their window titles and file names alone. Nothing here waits for a
/// program, unloads a form, or lets a failure out; what was looked for last stays in `WinHandle`.
namespace companions {

inline const QString kHomePage = QStringLiteral("kestrixmodule");
inline const QString kReportPreview = QStringLiteral("RiskBookRpts");
/// The preview of the sibling module. It is only looked for.
inline const QString kSiblingPreview = QStringLiteral("CaseBookRpts");

/// Brings the home page to the front, or starts it after asking whether this program is to end. The
/// current folder becomes the one above the application's folder and stays so. True when the caller
/// is to unload its forms and the frame.
[[nodiscard]] bool GoToHomePage(Context& context);

/// True when a window titled `title` exists, which may read the same files: the person is told to
/// close the report preview, the preview comes to the front if it can, and the caller's command
/// ends.
[[nodiscard]] bool ReportWindowGuard(Context& context, const QString& title = kReportPreview);

/// Brings the report preview to the front, or starts it from the application's folder. True when it
/// was started.
[[nodiscard]] bool StartReportPreview(Context& context);

/// Opens the user manual, or tells that it isn't there.
void OpenManual(Context& context);
/// Opens the help page of the project form, or tells that it isn't there.
void OpenHelpPage(Context& context);
/// What F1 opens on the form of that name: its chapter of the help page, and the manual on the
/// frame. The current folder stays.
void OpenChapter(Context& context, const QString& form);
/// The search in the help of the program, which has no help file set: it tells so.
void SearchHelp(Context& context);

/// Brings the home page to the front if it runs.
void ActivateHomePage(Context& context);

}  // namespace companions
}  // namespace kestrix
