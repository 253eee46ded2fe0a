// What the window of colours does: choosing a scheme, making, renaming and deleting one, and
// changing colours, each of which is seen and written at once.
//
// It knows no widget. Owned by `frmColors`; interface thread only. Questions pump messages.
#pragma once

#include "state/color_file.h"
#include "state/color_scheme.h"
#include "state/color_slots.h"
#include "system/dialogs.h"

#include <optional>
#include <string>
#include <vector>

namespace kv {

class ColorEditorHost {
 public:
  virtual ~ColorEditorHost() = default;

  // Asks for one line of text, beginning with `text`; nothing when the user cancels.
  virtual std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                              const std::string& text) = 0;

  // Brings the colours of the settings to every control of every window.
  virtual void RefreshColors() = 0;

  // The list of schemes, or which of them is in force, is another one.
  virtual void SchemesChanged() = 0;
};

class ColorEditor {
 public:
  // All must outlive this object. `table` are the colours that `schemes` loads and saves.
  ColorEditor(ColorEditorHost& host, ColorSchemes& schemes, ColorTable& table, Dialogs& dialogs);

  // Puts a scheme in force.
  void SelectScheme(const std::string& name);

  // The three buttons; they refuse with a box.
  void NewScheme();
  void RenameScheme();
  void DeleteScheme();

  // Asks for a colour and gives it to all of `slots`; with one slot its colour is offered.
  void ChangeColors(const std::vector<ColorSlot>& slots);

  // Gives `color` to all of `slots` and writes the scheme.
  void SetColors(const std::vector<ColorSlot>& slots, std::int32_t color);

 private:
  // A name by the rules that new and rename share; empty when there is none.
  std::string AskName(const std::string& title, const std::string& text);
  bool IsDefault() const;
  bool CurrentExists();
  void Refuse(const std::string& text);
  bool Failed(const SchemeError& error);
  void Show(const std::string& name);

  ColorEditorHost& host_;
  ColorSchemes& schemes_;
  ColorTable& table_;
  Dialogs& dialogs_;
  CustomColors custom_{};
};

}  // namespace kv
