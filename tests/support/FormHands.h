#pragma once

#include <gtest/gtest.h>

#include "hands/Hands.h"
#include "support/Printers.h"

namespace kestrix {

/// The hands of a test. The application is there when the tests of a program that uses them run; an
/// exception of the hands fails the test and ends it.
class FormHands : public Hands {
 public:
  explicit FormHands(ActiveForms& forms);
};

}  // namespace kestrix
