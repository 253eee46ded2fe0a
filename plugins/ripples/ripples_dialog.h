// What can be set about the pond, and the dialog for it.
#pragma once

#include <QDialog>

#include <functional>

class QCheckBox;
class QComboBox;
class QSlider;

struct RipplesOptions {
  int rain = 60;      // percent
  int run = 50;       // percent: how long waves live
  int colors = 0;     // row of the list of colours; 0: the scheme's
  bool glint = true;  // highlights on the crests

  friend bool operator==(const RipplesOptions&, const RipplesOptions&) = default;
};

// As they were saved; the defaults where nothing sensible was.
RipplesOptions LoadRipplesOptions();
void SaveRipplesOptions(const RipplesOptions& options);

// The colours of the water that do not come from the scheme, from row 1.
struct RipplesColors {
  const char* name;
  QRgb deep;
  QRgb water;
  QRgb light;
};
// Null for row 0 and for any that does not exist.
const RipplesColors* RipplesColorsOf(int row);

class RipplesDialog : public QDialog {
  Q_OBJECT

 public:
  // `try_out` is called with every change, and with the first options again on Cancel.
  RipplesDialog(const RipplesOptions& options,
                const std::function<void(const RipplesOptions&)>& try_out, QWidget* parent);

  RipplesOptions Options() const;

 private:
  QSlider* AddSlider(int value, const QString& least, const QString& most, class QFormLayout& page,
                     const QString& label);
  void Show(const RipplesOptions& options);

  QSlider* rain_;
  QSlider* run_;
  QComboBox* colors_;
  QCheckBox* glint_;
};
