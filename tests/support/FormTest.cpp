#include "support/FormTest.h"

#include "store/RecordSources.h"

namespace kestrix {

FormTest::FormTest() : FormTest(std::make_unique<Watch>()) {}

FormTest::FormTest(std::unique_ptr<Watch> watch)
    : FormHands(watch->forms),
      watch_(std::move(watch)),
      kit{desk.platform(), watch_->focus, watch_->forms},
      paths(installation.Folder()),
      dialog(desk.platform()),
      context{kit, session, paths, frame, dialog, project, task} {
  desk.environment.SetApplicationFolder(installation.Folder());
  desk.environment.SetDocumentsFolder(installation.Outside(QString()));
  desk.environment.SetVariable(QStringLiteral("TEMP"), installation.Outside(QString()));
}

FormTest::~FormTest() {
  for (const QPointer<QWidget>& form : std::as_const(opened_)) delete form;
  Settle();
  QDir::setCurrent(folder_before_);
}

void FormTest::GivenTaskInHand(int study, const QString& project_number) {
  project.number = project_number;
  task.source.SetConnectionString(DataControl::ConnectionStringFor(installation.Study(study)));
  task.source.SetRecordSource(sources::RiskSql(project_number));
  task.source.Refresh();
}

}  // namespace kestrix
