#!/usr/bin/env bash
# style_test.sh <folder of the tools>: runs a copy of the style script on small projects, one for each
# breach, and on one without any.
set -euo pipefail

project="$(mktemp -d)"
trap 'rm -rf "$project"' EXIT
mkdir -p "$project/src/platform" "$project/src/projects"
cp -r "$1" "$project/tools"
style="$project/tools/style"

fail() {
  printf 'FAILED: %s\n' "$1" >&2
  exit 1
}

# found <file> <line of code>: the script must name the file and its third line.
found() {
  printf '// first\n\n%s\n' "$2" >"$project/src/$1"
  if "$style" --calls >"$project/out" 2>&1; then
    fail "accepted in $1: $2"
  fi
  grep -qF "src/$1:3:" "$project/out" || fail "$2 is not reported by its line: $(cat "$project/out")"
  rm "$project/src/$1"
}

# accepted <file> <line of code>
accepted() {
  printf '%s\n' "$2" >"$project/src/$1"
  "$style" --calls >"$project/out" 2>&1 || fail "refused in $1: $2: $(cat "$project/out")"
  rm "$project/src/$1"
}

found projects/mnfrm.cpp '#include <QMessageBox>'
found projects/mnfrm.cpp 'QMessageBox::information(this, title, text);'
found projects/mnfrm.cpp 'const QString path = QFileDialog::getOpenFileName(this);'
found projects/mnfrm.cpp 'QDesktopServices::openUrl(url);'
found projects/mnfrm.cpp 'QProcess::startDetached(program, {});'
found projects/mnfrm.cpp 'std::system(command);'
found projects/mnfrm.cpp '  system("ls");'
found projects/mnfrm.cpp 'FILE* pipe = popen(command, "r");'
found projects/mnfrm.cpp 'const auto today = QDate::currentDate();'
found projects/mnfrm.cpp 'const auto now = QDateTime::currentDateTime();'
found projects/mnfrm.cpp 'QSettings settings;'
found projects/mnfrm.cpp 'QGuiApplication::clipboard()->clear();'
found projects/mnfrm.cpp 'QClipboard* board = nullptr;'
found projects/mnfrm.cpp 'QPrintDialog dialog;'
found projects/mnfrm.cpp 'connect(button, SIGNAL(clicked()), this, SLOT(close()));'
found platform/QtShell.cpp 'connect(button, SIGNAL(clicked()), this, SLOT(close()));'
found projects/mnfrm.h 'void on_simultn1_clicked();'
found projects/mnfrm.ui '<connection>'

accepted platform/QtMessages.cpp 'QMessageBox box;'
accepted projects/mnfrm.cpp '// Never a QMessageBox here.'
accepted projects/mnfrm.cpp 'const QLocale locale = QLocale::system();'
accepted projects/mnfrm.cpp 'file_system(path); files.system(); connect(a, &A::clicked, this, &B::simultn1_Click);'
