#include "platform/QtPlatform.h"

namespace kestrix {

QtPlatform::QtPlatform()
    : platform_{messages_, files_,    shell_,     windows_, settings_,
                dialogs_,  printing_, clipboard_, clock_,   environment_} {}

}  // namespace kestrix
