#pragma once

#include <QFileSystemWatcher>
#include <QFutureWatcher>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

#include "platform/PagePrinter.h"
#include "platform/Services.h"
#include "preview/Maker.h"
#include "preview/Thumbnails.h"

namespace kestrix::preview {

namespace Ui {
class RiskBookRpts;
}

/// What a start asks for; each may be empty.
struct Request {
  QString organisation;
  QString project;
  qint64 task = 0;  ///< its number; 0 for none
};

/// The projects of a study, or why they can't be read.
struct ProjectsRead {
  std::vector<records::ProjectLine> lines;
  QString failure;
};

/// The window of the report preview: what to show on the left, its pages on the right. It reads an
/// installation and writes nothing into it. Reading and laying out go on beside the events.
class RiskBookRpts : public QMainWindow {
  Q_OBJECT

 public:
  RiskBookRpts(Platform& platform, PagePrinter& printer, Installation installation);
  ~RiskBookRpts() override;

  /// Shows what is asked for; without a wish the organisation that was opened last and the project
  /// of its newest task.
  void Open(const Request& request);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void FillChoices();
  void ConnectControls();
  void ReadOrganisations(const Request& request);
  void ReadProjects();
  void TakeProjects();
  [[nodiscard]] std::optional<Wish> CurrentWish() const;

  void Make();
  void TakeCover();
  void TakeWhole();
  void ShowMade(MadeReport made);
  void ShowNothing(const QString& why);
  void Watch();

  void Export();
  void TakeExported();
  void Print();
  void PrintNext();
  void EndPrinting();
  void Stop();

  void Find(bool backwards);
  void TakeZoom();
  void ShowPage(int page);
  void ShowZoom(double zoom);
  void SetBusy(const QString& message, int most);
  void SetIdle(const QString& message);
  /// Runs `work`; what it fails with stands in the message.
  void Guarded(const std::function<void()>& work);
  [[nodiscard]] std::shared_ptr<const paper::Layout> Pages() const;

  struct Printing;

  Platform& platform_;
  PagePrinter& printer_;
  Installation installation_;
  std::unique_ptr<Ui::RiskBookRpts> ui_;
  Thumbnails thumbnails_;
  std::vector<records::Organisation> organisations_;
  QString wanted_project_;
  qint64 wanted_task_ = 0;

  MadeReport made_;
  QFutureWatcher<ProjectsRead> projects_;
  QFutureWatcher<MadeReport> cover_;
  QFutureWatcher<MadeReport> whole_;
  QFutureWatcher<QString> exported_;  ///< one sentence where it failed
  std::unique_ptr<Printing> printing_;
  QTimer print_next_;
  QTimer make_soon_;
  QTimer read_again_;
  QFileSystemWatcher watcher_;
};

}  // namespace kestrix::preview
