#pragma once

#include <memory>

#include "shell/SessionForm.h"

namespace kestrix {

namespace Ui {
class reqfrm;
}

/// The notice of what a person has to do when a form couldn't load because what the data files need
/// isn't working. Its button starts no setup: it leaves word for others in "ktxopnd.txt", if that
/// file is there, and ends the program.
class reqfrm : public SessionForm {
  Q_OBJECT

 public:
  explicit reqfrm(Context& context);
  ~reqfrm() override;

 Q_SIGNALS:
  /// The button was pressed. This form unloads itself right after, and the program ends.
  void ProgramEndRequested();

 private:
  void runsetp_Click();
  void LeaveWord();

  std::unique_ptr<Ui::reqfrm> ui_;
};

}  // namespace kestrix
