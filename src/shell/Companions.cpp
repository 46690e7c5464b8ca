#include "shell/Companions.h"

#include "formkit/ActiveForms.h"
#include "formkit/Form.h"
#include "platform/FileSystem.h"
#include "platform/Messages.h"
#include "shell/SessionForm.h"

namespace kestrix::companions {
namespace {

const QString kHomeProgram = QStringLiteral("kestrixmodule.exe");
const QString kReportProgram = QStringLiteral("RiskBookRpts.exe");
const QString kManual = QStringLiteral("hlpAnnlyAdv.pdf");
const QString kHelpPage = QStringLiteral("acci_alys_help.htm");

Platform& PlatformOf(Context& context) {
  return context.kit.platform;
}

void TellPerson(Context& context, const QString& text) {
  PlatformOf(context).messages.Show(Tell(Icon::kInformation, title::kProgram, text));
}

bool IsOpen(Context& context, const QString& title) {
  context.session.WinHandle = static_cast<qint32>(PlatformOf(context).windows.Find(title));
  return context.session.WinHandle != 0;
}

void Activate(Context& context, const QString& title) {
  PassOver([&] {
    PlatformOf(context).windows.Activate(title);
    // The message that told of it has just closed, and the form below it would come back in front.
    context.kit.forms.GiveAwayFront();
  });
}

/// False when the file isn't there: the person was told.
bool HelpFileExists(Context& context, const QString& path) {
  if (PlatformOf(context).files.FileExists(path)) return true;
  TellPerson(context, QStringLiteral("Help file does not exisit, contact BELTROVAN"));
  return false;
}

void OpenHelpFile(Context& context, const QString& path, const QString& name) {
  if (!HelpFileExists(context, path)) return;
  PassOver(
      [&] {
        PlatformOf(context).files.ChangeFolder(context.installation.Path(QStringLiteral("\\")));
      },
      [&] { PlatformOf(context).shell.OpenDocument(name); });
}

}  // namespace

bool GoToHomePage(Context& context) {
  FileSystem& files = PlatformOf(context).files;
  try {
    files.ChangeFolder(context.installation.ApplicationFolder());
    files.ChangeFolder(QStringLiteral(".."));
  } catch (const Failure&) {
    // The folder of a running program is gone: there is nothing above it to go to.
    return false;
  }
  if (IsOpen(context, kHomePage)) {
    TellPerson(context, QStringLiteral("Home page already open."));
    Activate(context, kHomePage);
    return false;
  }
  if (!files.FileExists(JoinPath(files.CurrentFolder(), kHomeProgram))) {
    TellPerson(context, QStringLiteral("Installed files missing."));
    return false;
  }
  // Yes, which ends the program, is the default: whoever goes to the home page has mostly done
  // here.
  PlatformOf(context).messages.Beep();
  context.session.MsgAnswer = PlatformOf(context).messages.Show(
      Ask(Icon::kInformation, title::kProgram,
          QStringLiteral("Wish to close Risk Assessment Module?"), Button::kYes));
  PassOver([&] { PlatformOf(context).shell.StartCompanion(kHomeProgram); });
  return context.session.MsgAnswer == Button::kYes;
}

bool ReportWindowGuard(Context& context, const QString& title) {
  if (!IsOpen(context, title)) return false;
  TellPerson(context, QStringLiteral("Close Report preview."));
  Activate(context, kReportPreview);
  return true;
}

bool StartReportPreview(Context& context) {
  if (!PlatformOf(context).files.FileExists(context.installation.ReportProgram())) {
    PlatformOf(context).messages.Show(
        Tell(Icon::kCritical, title::kFilesMissing, QStringLiteral("1. Installed Files missing")));
    return false;
  }
  try {
    PlatformOf(context).files.ChangeFolder(context.installation.ApplicationFolder());
    if (IsOpen(context, kReportPreview)) {
      TellPerson(context, QStringLiteral("Report preview already open."));
      Activate(context, kReportPreview);
      return false;
    }
    PlatformOf(context).shell.StartCompanion(kReportProgram);
    return true;
  } catch (const Failure&) {
    // The command ends without a word, and nothing was started.
    return false;
  }
}

void OpenManual(Context& context) {
  OpenHelpFile(context, context.installation.Manual(), kManual);
}

void OpenHelpPage(Context& context) {
  OpenHelpFile(context, context.installation.HelpPage(), kHelpPage);
}

void OpenChapter(Context& context, const QString& form) {
  const bool is_frame = form == u"frmMain";
  const QString path = is_frame ? context.installation.Manual() : context.installation.HelpPage();
  if (!HelpFileExists(context, path)) return;
  PassOver([&] {
    Shell& shell = PlatformOf(context).shell;
    is_frame ? shell.OpenDocument(path) : shell.OpenPage(path, form.toLower());
  });
}

void SearchHelp(Context& context) {
  PlatformOf(context).messages.Show(
      Tell(Icon::kInformation, PlatformOf(context).environment.ApplicationTitle(),
           QStringLiteral("Unable to display Help Contents. There is no Help associated with "
                          "this project.")));
}

void ActivateHomePage(Context& context) {
  if (IsOpen(context, kHomePage)) Activate(context, kHomePage);
}

}  // namespace kestrix::companions
