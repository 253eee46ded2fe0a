#include "state/color_editor.h"

#include "system/ascii_text.h"
#include "system/translation.h"

#include <algorithm>
#include <cstddef>

namespace kv {
namespace {

// The colours that the dialog offers at first: the scheme's own, so that more of it can be in
// keeping.
CustomColors OwnColors(const ColorTable& table) {
  CustomColors custom{};
  custom.fill(0xFFFFFF);
  std::size_t count = 0;
  for (const ColorSlotRow& row : kColorSlotRows) {
    const std::int32_t color = ColorOf(table, row.slot);
    const auto end = custom.begin() + static_cast<std::ptrdiff_t>(count);
    if (count < custom.size() && std::find(custom.begin(), end, color) == end) {
      custom.at(count++) = color;
    }
  }
  return custom;
}

}  // namespace

ColorEditor::ColorEditor(ColorEditorHost& host, ColorSchemes& schemes, ColorTable& table,
                         Dialogs& dialogs)
    : host_(host), schemes_(schemes), table_(table), dialogs_(dialogs), custom_(OwnColors(table)) {}

void ColorEditor::Show(const std::string& name) {
  schemes_.SetCurrent(name);
  schemes_.LoadColorInfo();
  host_.SchemesChanged();
  host_.RefreshColors();
}

void ColorEditor::SelectScheme(const std::string& name) {
  Show(name);
}

bool ColorEditor::IsDefault() const {
  return LowerAscii(schemes_.Current()) == kDefaultScheme;
}

void ColorEditor::Refuse(const std::string& text) {
  dialogs_.ShowMessageBox({text, BoxIcon::kExclamation, BoxButtons::kOk, {}});
}

bool ColorEditor::Failed(const SchemeError& error) {
  if (error) Refuse(Fill(Tr("%1\nCode:%2"), error.text, std::to_string(error.code)));
  return static_cast<bool>(error);
}

bool ColorEditor::CurrentExists() {
  if (schemes_.Exists(schemes_.Current())) return true;
  Refuse(Tr("Error, file don't exist!"));
  return false;
}

std::string ColorEditor::AskName(const std::string& title, const std::string& text) {
  const std::optional<std::string> answer = host_.InputBox(Tr("Name:"), title, text);
  if (!answer) return {};
  std::string name(TrimBlanks(*answer));
  if (name.find_first_of(kSchemeForbidden) != std::string::npos) {
    Refuse(
        Fill(Tr("ERROR! The sceme name cannot contain these characters:\n%1"), kSchemeForbidden));
    return {};
  }
  if (schemes_.Exists(name)) {
    Refuse(Tr("ERROR! A sceme with that name already exists!"));
    return {};
  }
  return name;
}

void ColorEditor::NewScheme() {
  const std::string name = AskName(Tr("New color sceme:"), "");
  if (name.empty() || !CurrentExists() || Failed(schemes_.Copy(name))) return;
  Show(name);
}

void ColorEditor::RenameScheme() {
  if (IsDefault()) return Refuse(Tr("You can't rename the Default sceme!"));
  if (!CurrentExists()) return;
  const std::string name = AskName(Tr("Rename"), schemes_.Current());
  // The question pumps; what was there can be gone.
  if (name.empty() || !CurrentExists() || Failed(schemes_.Rename(name))) return;
  Show(name);
}

void ColorEditor::DeleteScheme() {
  if (IsDefault()) return Refuse(Tr("You can't delete the Default sceme!"));
  if (!CurrentExists()) return;
  const std::string name = schemes_.Current();
  const BoxAnswer answer = dialogs_.ShowMessageBox(
      {Fill(Tr("Delete \"%1\" ?"), name), BoxIcon::kQuestion, BoxButtons::kYesNo, {}});
  if (answer != BoxAnswer::kYes || schemes_.Current() != name || !CurrentExists()) return;
  if (Failed(schemes_.Delete())) return;
  // One that came with the program is there again, as it came.
  Show(schemes_.Exists(name) ? name : std::string(kDefaultScheme));
}

void ColorEditor::ChangeColors(const std::vector<ColorSlot>& slots) {
  if (slots.empty()) return;
  const std::int32_t initial = slots.size() == 1 ? ColorOf(table_, slots.front()) : 0;
  const ColorDialogResult picked = dialogs_.ShowColorDialog(initial, custom_);
  if (picked.color < 0) return;
  custom_ = picked.custom;
  SetColors(slots, picked.color);
}

void ColorEditor::SetColors(const std::vector<ColorSlot>& slots, std::int32_t color) {
  for (const ColorSlot slot : slots) ColorOf(table_, slot) = color;
  host_.RefreshColors();
  const bool listed = schemes_.Exists(schemes_.Current());
  if (!Failed(schemes_.SaveColorInfo()) && !listed) host_.SchemesChanged();
}

}  // namespace kv
