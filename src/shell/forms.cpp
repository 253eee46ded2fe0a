#include "shell/forms.h"

#include "state/file_types.h"
#include "state/frm_colors.h"
#include "state/frm_settings.h"
#include "state/mime_types_qt.h"
#include "system/desktop_icons_qt.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/translation.h"
#include "view/frm_about.h"
#include "view/frm_help.h"

#include <QApplication>
#include <QFile>

#include <utility>

namespace kv {
namespace {

void BringUp(QWidget& window) {
  window.raise();
  window.activateWindow();
}

// The first page of the help, in the language of all other texts where there are such pages.
std::string HelpPage(const ProgramFolder& folder) {
  std::string page = folder.DataFile("help/" + TranslationLanguage() + "/index.htm");
  return FileExists(page) ? page : folder.DataFile("help/index.htm");
}

}  // namespace

Forms::Forms(Parts parts)
    : parts_(std::move(parts)),
      schemes_(parts_.settings, parts_.folder),
      theme_(QApplication::palette()),
      colors_(theme_) {}

Forms::~Forms() {
  UnloadAll();
}

void Forms::ShowAbout() {
  if (about_ != nullptr) {
    BringUp(*about_);
    return;
  }
  const QString logo = QFile::decodeName(parts_.folder.DataFile("art/kestrelview.svg").c_str());
  // Anything can happen while it is open, its owner's end included.
  about_ = new frmAbout({KV_VERSION_MAJOR, KV_VERSION_MINOR, KV_VERSION_PATCH}, logo, parts_.shell,
                        colors_, &parts_.main);
  style_.ApplyTo(*about_);
  about_->exec();
  delete about_.data();
}

void Forms::ShowHelp() {
  if (help_ == nullptr) {
    help_ = new frmHelp(HelpPage(parts_.folder), parts_.shell, &parts_.main);
    help_->setAttribute(Qt::WA_DeleteOnClose);
    parts_.adopt(*help_);
  }
  help_->show();
  BringUp(*help_);
}

bool Forms::ShowOptions() {
  if (options_ != nullptr) {
    BringUp(*options_);
    return false;
  }
  MimeTypesQt mime;
  FileTypes types(mime,
                  FileTypePlaces::OfThisProcess(parts_.folder.DataFile("art/kestrelview.svg")));
  options_ = new frmSettings(
      parts_.settings, types, parts_.session.SupportedExtensions, [] { RefreshDesktopIcons(); },
      &parts_.main);
  options_->exec();
  const bool wants_colors = options_ != nullptr && options_->WantsColors();
  delete options_.data();
  return wants_colors;
}

void Forms::ShowColors() {
  if (color_editor_ != nullptr && color_editor_->isVisible()) {
    BringUp(*color_editor_);
    return;
  }
  color_editor_ = new frmColors(schemes_, parts_.settings.Colors, parts_.windows,
                                parts_.refresh_colors, &parts_.main);
  parts_.adopt(*color_editor_);
  color_editor_->Form_Load();
}

bool Forms::DialogOpen() const {
  return about_ != nullptr || options_ != nullptr;
}

void Forms::UseScheme(const std::string& name) {
  if (!schemes_.Exists(name)) return;
  schemes_.SetCurrent(name);
  schemes_.LoadColorInfo();
  parts_.refresh_colors();
}

void Forms::SetColors() {
  colors_ = DialogPalette(parts_.settings.Colors, theme_);
  // Boxes and the toolkit's own dialogs take theirs from the program.
  QApplication::setPalette(colors_);
  if (about_ != nullptr) about_->setPalette(colors_);
  if (options_ != nullptr) options_->SetColors(parts_.settings.Colors);
  if (color_editor_ != nullptr) color_editor_->SetColors(parts_.settings.Colors);
}

void Forms::UnloadAll() {
  if (about_ != nullptr) about_->reject();
  if (color_editor_ != nullptr) color_editor_->Form_Unload();
  if (options_ != nullptr) options_->reject();
  delete help_.data();
}

}  // namespace kv
