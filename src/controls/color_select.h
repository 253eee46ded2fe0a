// `pucColorSelect`, a colour chooser: a caption, a swatch and a button that opens the desktop's
// colour dialog.
//
// The user's own colours are kept in the registry, shared by all choosers. Colours are 0x00BBGGRR;
// the swatch also shows system colours (0x80000000 + index). Owned by its parent widget. Interface
// thread only.
#pragma once

#include "controls/property_fields.h"
#include "system/dialogs.h"
#include "system/registry.h"

#include <QFrame>
#include <QLabel>
#include <QToolButton>
#include <QWidget>

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace kv {

// All stored properties with their defaults. An empty font is the parent's.
struct ColorSelectProperties {
  std::int32_t Colour = 0;
  std::string Caption = "&Colour:";  // "&" before the letter that Alt opens the dialog with
  std::string Font;                  // as the toolkit writes a font down
  bool Enabled = true;

  friend bool operator==(const ColorSelectProperties&, const ColorSelectProperties&) = default;
};

using ColorSelectField = PropertyField<ColorSelectProperties>;
inline constexpr std::array kColorSelectFields = {
    ColorSelectField{"Colour", &ColorSelectProperties::Colour, PropertyKind::kColor},
    ColorSelectField{"Caption", &ColorSelectProperties::Caption},
    ColorSelectField{"Font", &ColorSelectProperties::Font},
    ColorSelectField{"Enabled", &ColorSelectProperties::Enabled},
};

class pucColorSelect : public QWidget {
  Q_OBJECT

 public:
  // Both must outlive the control.
  pucColorSelect(Dialogs& dialogs, Registry& registry, QWidget* parent = nullptr);

  // The user has chosen a colour. Comes before the swatch shows it.
  std::function<void(std::int32_t OldColour, std::int32_t NewColour)> ColourChange;
  // A right click anywhere in the control.
  std::function<void()> RightClick;

  // Takes over a whole record as it was stored. Raises nothing.
  void LoadProperties(const ColorSelectProperties& properties);
  const ColorSelectProperties& Properties() const { return properties_; }

  std::int32_t Colour() const { return properties_.Colour; }
  void SetColour(std::int32_t colour);
  // The colour as it is shown, "#RRGGBB".
  QString ShownName() const;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Browse();
  void ShowColour();

  Dialogs& dialogs_;
  Registry& registry_;
  ColorSelectProperties properties_;
  QLabel* caption_;
  QFrame* shpColour_;
  QToolButton* cmdBrowse_;
};

}  // namespace kv
