#include "shell/forms.h"

#include "view/frm_about.h"
#include "view/frm_help.h"

#include <QFile>

namespace kv {

Forms::Forms(QWidget& main, const ProgramFolder& folder, ShellServices& shell)
    : main_(main), folder_(folder), shell_(shell), colors_(main.palette()) {}

Forms::~Forms() {
  UnloadAll();
}

void Forms::ShowAbout() {
  if (about_ != nullptr) {
    about_->raise();
    about_->activateWindow();
    return;
  }
  const QString logo = QFile::decodeName(folder_.DataFile("art/kestrelview.svg").c_str());
  // Anything can happen while it is open, its owner's end included.
  about_ = new frmAbout({KV_VERSION_MAJOR, KV_VERSION_MINOR, KV_VERSION_PATCH}, logo, shell_,
                        colors_, &main_);
  about_->exec();
  delete about_.data();
}

bool Forms::AboutOpen() const {
  return about_ != nullptr;
}

void Forms::ShowHelp() {
  if (help_ == nullptr) {
    help_ = new frmHelp(folder_.DataFile("help/index.htm"), shell_, &main_);
    help_->setAttribute(Qt::WA_DeleteOnClose);
  }
  help_->show();
  help_->raise();
  help_->activateWindow();
}

void Forms::SetColors(const QPalette& colors) {
  colors_ = colors;
  if (about_ != nullptr) about_->setPalette(colors);
}

void Forms::UnloadAll() {
  if (about_ != nullptr) about_->reject();
  delete help_.data();
}

}  // namespace kv
