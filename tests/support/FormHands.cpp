#include "support/FormHands.h"

#include <array>
#include <memory>

namespace kestrix {
namespace {

/// Makes the application when tests are run and not when they are listed.
class ApplicationOfTests : public ::testing::Environment {
 public:
  void SetUp() override {
    if (qApp) return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    application_ = std::make_unique<QApplication>(argc_, argv_.data());
    QApplication::setQuitOnLastWindowClosed(false);
    LeaveOutComplaints();
  }
  void TearDown() override { application_.reset(); }

 private:
  int argc_ = 1;
  std::string name_ = "KestrixStudy";
  std::array<char*, 2> argv_ = {name_.data(), nullptr};
  std::unique_ptr<QApplication> application_;
};

const auto* const kApplication =
    ::testing::AddGlobalTestEnvironment(new ApplicationOfTests);  // NOLINT: owned by the framework

}  // namespace

FormHands::FormHands(ActiveForms& forms) : Hands(forms) {}

}  // namespace kestrix
