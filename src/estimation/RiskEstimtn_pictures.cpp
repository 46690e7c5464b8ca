#include "estimation/RiskEstimtn.h"
#include "formkit/ClickLabel.h"
#include "platform/FileSystem.h"
#include "shell/CommonDialog.h"
#include "store/DataControl.h"
#include "store/RecordSources.h"
#include "store/Recordset.h"
#include "ui_RiskEstimtn.h"

namespace kestrix {
namespace {

const QString kNoPicture = QStringLiteral("NoPicSlted.jpg");

}  // namespace

void RiskEstimtn::ConnectPictures() {
  before_.reset(new PictureSlot{.view = PictureView(ui_->ImgBfore),
                                .field = model::FieldsOf(Stage::kBefore).picture,
                                .by_title = true});
  after_.reset(new PictureSlot{.view = PictureView(ui_->ImgAfter),
                               .field = model::FieldsOf(Stage::kAfter).picture,
                               .by_title = false});
  On(ui_->ImgSltdDwgBfr, &QPushButton::clicked, [this] { SelectPicture(*before_); });
  On(ui_->ImgSltdDwgAfter, &QPushButton::clicked, [this] { SelectPicture(*after_); });
  On(ui_->ImgBfore, &ClickLabel::DblClick, [this] { ClearPicture(*before_); });
  On(ui_->ImgAfter, &ClickLabel::DblClick, [this] { ClearPicture(*after_); });
}

/// The name is appended as it stands: a field that holds a whole path names no file here.
QString RiskEstimtn::PicturePath(const QString& name) const {
  return installation().PictureFolder(session().ActiveStudyNo) + u'/' + name;
}

/// The last steps of the load, each behind the one before it: a picture that can't be read ends
/// them, also when that turns out only while the form is in use.
void RiskEstimtn::LoadPictures() {
  const auto tips = [this] { ShowToolTips(); };
  LoadStoredPicture(*before_, [this, tips] {
    if (after_->chosen_anew) return tips();
    LoadStoredPicture(*after_, tips);
  });
}

void RiskEstimtn::LoadStoredPicture(PictureSlot& slot, const std::function<void()>& then) {
  slot.view.Clear();
  const QString name = Stored(slot.field);
  if (!name.isEmpty() && files().FileExists(PicturePath(name))) {
    slot.view.LoadBesideEvents(PicturePath(name), [this, then](PictureView::Outcome outcome) {
      GoOnLoading(outcome == PictureView::Outcome::kFailed, then);
    });
    return;
  }
  // A name that stands for nothing any more goes only when the default picture is there to see.
  if (name.isEmpty()) Store(slot.field, kNoPicture);
  slot.view.Load(installation().NoPicture());
  if (!name.isEmpty()) Store(slot.field, kNoPicture);
  then();
}

void RiskEstimtn::GoOnLoading(bool failed, const std::function<void()>& then) {
  if (IsUnloading()) return;
  if (failed) return ReplaceMissingPictures();
  try {
    then();
  } catch (const Failure&) {
    ReplaceMissingPictures();
  }
}

/// Nothing is told of what fails here as well: the form opens all the same.
void RiskEstimtn::ReplaceMissingPictures() {
  const auto replace = [this](PictureSlot& slot) {
    if (files().FileExists(PicturePath(Stored(slot.field)))) return;
    slot.view.Load(installation().NoPicture());
  };
  PassOver([&] { replace(*before_); }, [&] { replace(*after_); });
}

void RiskEstimtn::SelectPicture(PictureSlot& slot) {
  slot.chosen_anew = true;
  try {
    AskForPicture();
    const QString title = dialog().FileTitle();
    if (!dialog().FileName.isEmpty() && !IsCopied(dialog().FileName, title)) return;
    const bool chosen = !(slot.by_title ? title : dialog().FileName).isEmpty();
    if (chosen) Store(slot.field, title);
    const auto then = [this, &slot, title](PictureView::Outcome outcome) {
      if (outcome != PictureView::Outcome::kFailed) return;
      Guarded([&] { PictureFailed(slot, title); });
    };
    slot.view.LoadBesideEvents(PicturePath(Stored(slot.field)), then);
    if (chosen) dialog().FileName.clear();
  } catch (const Failure&) {
    PictureFailed(slot, dialog().FileTitle());
  }
}

void RiskEstimtn::AskForPicture() {
  dialog().FileName.clear();
  dialog().DialogTitle = QStringLiteral("BELTROVAN : Select Pictures/Drawing Files");
  dialog().Filter = QStringLiteral(
      "All Picture Files|*.bmp;*.jpg;*.gif|JPEG (*.jpg)|*.jpg|Bitmap (*.bmp)|*.bmp|"
      "GIF (*.gif)|*.gif|");
  dialog().FilterIndex = 1;
  dialog().ShowOpen();
}

/// Copies a chosen picture into the folder of the organisation, and tells the person when the
/// folder or the disk refuses it. Fails where the picture lies in that folder already.
bool RiskEstimtn::IsCopied(const QString& source, const QString& title) {
  bool copied = false;
  try {
    files().CopyFile(source, PicturePath({}));
    copied = files().FileExists(PicturePath(title));
  } catch (const Failure&) {
    if (files().IsSameFile(source, PicturePath(title))) throw;
  }
  if (!copied) {
    Tell(Icon::kInformation, title::kProgram,
         QStringLiteral("Failed to copy picture file. Seek Administrator approval for writing. "
                        "Unable to continue."));
  }
  return copied;
}

/// Only a task without a picture of its own gets the default picture back; a picture that was
/// chosen and can't be shown leaves its box clear and its name in the row.
void RiskEstimtn::PictureFailed(PictureSlot& slot, const QString& title) {
  if (Stored(slot.field) != kNoPicture) return;
  Store(slot.field, kNoPicture);
  slot.view.Load(installation().NoPicture());
  const QString copy = PicturePath(title);
  if (files().FileExists(copy) && !IsPictureOfATask(title)) files().DeleteFile(copy);
}

/// Whether a row of the study, as it is stored or as it stands in the row in hand, names this file.
/// The name of the default picture says that there is none.
bool RiskEstimtn::IsPictureOfATask(const QString& title) const {
  if (title == kNoPicture) return false;
  if (Stored(before_->field) == title || Stored(after_->field) == title) return true;
  DataControl tasks(QStringLiteral("tasksOfPicture"));
  tasks.SetDatabaseName(installation().Study(session().ActiveStudyNo));
  tasks.SetRecordSource(sources::TasksOfPicture(title));
  tasks.Refresh();
  return tasks.Recordset().RecordCount() > 0;
}

void RiskEstimtn::ClearPicture(PictureSlot& slot) {
  slot.chosen_anew = true;
  Store(slot.field, installation().NoPicture());
  slot.view.Load(installation().NoPicture());
}

}  // namespace kestrix
