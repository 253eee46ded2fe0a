// `Panel`: the strip below the movie with display, sliders and buttons, and where each lies in it.
//
// It knows its controls and their looks, none of their rules; `frmMain` connects them. Owned by
// `frmMain`. Lengths are device-independent pixels. Interface thread only.
#pragma once

#include "controls/line3d.h"
#include "controls/scroller.h"
#include "controls/smart_button.h"
#include "shell/display_line.h"
#include "shell/panel_keys.h"
#include "shell/time_strip.h"
#include "state/settings.h"
#include "system/message_pump.h"

#include <QLabel>
#include <QString>
#include <QWidget>

#include <array>
#include <functional>

namespace kv {

inline constexpr int kButtons = 12;

// The sliders by what they move.
enum class SliderKind { kPosition = 0, kVolume = 1, kRate = 2, kBalance = 3 };

class MainPanel : public QWidget {
  Q_OBJECT

 public:
  // `art` answers the whole path of a drawing by its name.
  using ArtFile = std::function<QString(const char* name)>;

  MainPanel(ArtFile art, MessagePump& pump, QWidget* parent);

  // `PanelFullHeight`, what the controls need.
  static constexpr int kFullHeight = 148;
  // Below this width controls would be cut off.
  static constexpr int kSmallestWidth = 440;

  // A picture is about to be painted, and what follows the time along with it.
  void PictureComes();
  Scroller& Slider(SliderKind kind) { return *sliders_[static_cast<std::size_t>(kind)]; }
  SmartButton& Button(int index) { return *buttons_[static_cast<std::size_t>(index)]; }
  TimeStrip& PicTime() { return *pic_time_; }

  // Tab has brought the keyboard to one of the controls, which hands on what it has no use for.
  bool HoldsFocus() const { return keys_->HoldFocus(); }

  // The labels `Disp` 0, 1, 2 and 5; other numbers do nothing.
  void SetDisp(int index, const QString& text);
  QString DispText(int index) const { return disp_texts_[static_cast<std::size_t>(index)]; }
  void SetDispUnderline(int index, bool underline);
  void SetTitleToolTip(const QString& text);
  // The hand that shows a link, or the ordinary pointer, over a label.
  void SetDispPointer(int index, bool hand);
  void SetSliderLabel(SliderKind kind, const QString& text);

  // The strip of buttons, as the parent of the graph that stands to their right.
  QWidget& BottonPanel() { return *bottom_; }
  void SetGraph(QWidget& graph);
  // Shows or hides the line in front of the graph.
  void SetGraphVisible(bool visible);

  // `ic_https` and `picKVR`; an empty name hides the connection.
  void ShowConnection(const char* drawing);
  void ShowResumeMark(bool visible);

  void SetFace(int button, const char* drawing);
  void ApplyColors(const std::array<std::int32_t, kColorSlots>& colors);

  int TitleWidth(const QString& text) const;
  int TitleLeft() const;
  // What a path in the title may take.
  int PathWidth() const;

  // A right click on the panel or on any of the labels.
  std::function<void()> on_menu;
  // A left click on a label `Disp`.
  std::function<void(int index)> on_disp_click;
  // The right button went down on a label.
  std::function<void()> on_disp_mouse_down;
  // The pointer moves over a label.
  std::function<void(int index)> on_disp_move;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  DisplayLine* MakeDisp(int index, const QString& name, int pixels, bool bold);
  void MakeSmallSliders(MessagePump& pump);
  void MakeButtons();
  void MakeKeys();
  void MakeSpeech();
  void LayOut();
  void ElideDisp(int index);

  ArtFile art_;
  std::array<Scroller*, 4> sliders_{};
  std::array<QLabel*, 4> slider_faces_{};
  std::array<DisplayLine*, 4> slider_labels_{};
  std::array<SmartButton*, kButtons> buttons_{};
  std::array<line3d*, 3> sLine_{};
  line3d* line3d1_ = nullptr;  // in front of the graph
  QWidget* graph_ = nullptr;   // `TrendChart1`
  QWidget* display_ = nullptr;
  QWidget* small_controls_ = nullptr;  // `PicSControls`
  QWidget* bottom_ = nullptr;          // `BottonPanel`
  TimeStrip* pic_time_ = nullptr;
  PanelKeys* keys_ = nullptr;
  std::array<DisplayLine*, 6> disp_{};  // by index; 3 and 4 do not exist
  std::array<QString, 6> disp_texts_;   // in full
  QLabel* ic_https_ = nullptr;
  QLabel* pic_kvr_ = nullptr;
  QString connection_;
  QColor display_ink_ = Qt::white;
};

}  // namespace kv
