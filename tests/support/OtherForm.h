#pragma once

#include "shell/SessionForm.h"

namespace kestrix {

/// Another form of the program, with nothing on it.
class OtherForm : public Form {
 public:
  explicit OtherForm(Context& context) : Form(context.kit) {
    setObjectName(QStringLiteral("OtherForm"));
  }
};

}  // namespace kestrix
