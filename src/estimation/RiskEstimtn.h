#pragma once

#include <array>
#include <functional>
#include <memory>

#include "estimation/RiskGraphState.h"
#include "estimation/model/RiskModel.h"
#include "formkit/PictureView.h"
#include "shell/SessionForm.h"

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;

namespace kestrix {

namespace Ui {
class RiskEstimtn;
}

/// Estimates the risk of the task in hand, before and after its recommendations, with one set of
/// controls for both stages. It works on the current row of the evaluation form's tasks and writes
/// each choice into that row at once; the row reaches the file with the task's next save.
///
/// Four boxes walk the risk graph, each opened by the one before it; five statements score the
/// parameter whose box had the focus last. Stored choices come back by running the same handlers as
/// a person's choices do. It never decides by itself what a number means: the model does.
class RiskEstimtn : public SessionForm {
  Q_OBJECT

 public:
  explicit RiskEstimtn(Context& context);
  ~RiskEstimtn() override;

 Q_SIGNALS:
  /// This form was unloaded by its button.
  void Done();

 protected:
  void Load() override;
  void QueryUnload() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  using Parameter = model::Parameter;
  using Stage = model::Stage;

  void ConnectLevels();
  void ConnectStatements();
  void ConnectStages();
  void ConnectPictures();
  void ShowTask();
  void CutTask();

  // The chain of level boxes.
  void SevertyCbo_Click();
  void ExposureCbo_Click();
  void occurrenceCbo_Click();
  void avoidanceCbo_Click();
  void TakeParameter(Parameter parameter);
  void Offer(Parameter parameter, std::span<const QStringView> items);
  void CloseFrom(Parameter first);
  void StoreUnsetLevelsBehindSeverity();
  void ResetStage();
  void EndPath(int index, QStringView index_label);
  void ShowLevel(Parameter parameter, const QString& text);

  // The statements.
  void Chk_Click(int number);
  void LoadStatements(Parameter parameter);
  void ClearActiveStatement();
  void RestartStatements();
  void RestartBtn_Click();
  void ShowStatementLabels();
  void MarkActiveParameter();
  void TickByKey(int number);
  void PressOnResult(const QObject* pressed);
  [[nodiscard]] std::array<QLabel*, 2> ResultsOf(Parameter parameter) const;

  // The results.
  void RefreshRiskDisplay();
  void ShowIndexBand(int index, QFrame* shape, QFrame* shape_of_zero, QLabel* label);
  void ShowMatrix();
  void DescribePath();

  // The two stages.
  enum class Replay { kAtLoad, kOnSwitch };
  void ReplayStage(Replay when);
  void ResetChain();
  void SwitchStage();
  void RsltDsplRiskLbl_Click();
  void clsfrm_Click();
  void ShowToolTips();

  // The pictures.
  struct PictureSlot {
    PictureView view;
    QStringView field;         ///< that names it
    bool by_title;             ///< the file dialog's title tells that one was chosen, else its name
    bool chosen_anew = false;  ///< a person has been at it since the form came up
  };
  void LoadPictures();
  void LoadStoredPicture(PictureSlot& slot, const std::function<void()>& then);
  void GoOnLoading(bool failed, const std::function<void()>& then);
  void ReplaceMissingPictures();
  void SelectPicture(PictureSlot& slot);
  void AskForPicture();
  [[nodiscard]] bool IsCopied(const QString& source, const QString& title);
  void PictureFailed(PictureSlot& slot, const QString& title);
  [[nodiscard]] bool IsPictureOfATask(const QString& title) const;
  void ClearPicture(PictureSlot& slot);
  [[nodiscard]] QString PicturePath(const QString& name) const;

  [[nodiscard]] Recordset& Task() const;
  [[nodiscard]] Stage StageInHand() const;
  [[nodiscard]] const model::StageFields& Fields() const;
  [[nodiscard]] QString Stored(QStringView field) const;
  void Store(QStringView field, const QVariant& value);
  [[nodiscard]] std::optional<Parameter> ActiveParameter() const;
  [[nodiscard]] QComboBox* BoxOf(Parameter parameter) const;
  [[nodiscard]] QString LevelText(Parameter parameter) const;
  [[nodiscard]] QCheckBox* Chk(int number) const;

  std::unique_ptr<Ui::RiskEstimtn> ui_;
  RiskGraphState graph_;
  std::unique_ptr<PictureSlot> before_;
  std::unique_ptr<PictureSlot> after_;
};

}  // namespace kestrix
