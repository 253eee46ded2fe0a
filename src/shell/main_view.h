// The widgets of the main window, behind the narrow views that the rooms' rules write to.
//
// Shows what it is told and decides nothing. Owned by `frmMain`, whose children the widgets are.
// Lengths are device-independent pixels. Interface thread only.
#pragma once

#include "engine/video_surface.h"
#include "shell/main_panel.h"
#include "shell/marks.h"
#include "shell/media_opener.h"
#include "shell/picture_view.h"
#include "shell/playback_tick.h"
#include "shell/sliders.h"
#include "shell/status_overlay.h"
#include "shell/status_strip.h"
#include "shell/time_display.h"
#include "view/information_display.h"

#include <functional>
#include <string>

namespace kv {

class MainView : public OpenerView,
                 public StatusView,
                 public InformationView,
                 public SliderLabels,
                 public MarksView,
                 public PicTime {
 public:
  // `art` answers the whole path of a drawing.
  MainView(QWidget& form, VideoSurfaces& surfaces, MessagePump& pump, MainPanel::ArtFile art);

  // Takes the meter in, which covers the movie area where it shows.
  void PlaceMeter(QWidget& meter);

  VideoSurface& Surface() { return *render_; }
  MainPanel& Panel() { return *panel_; }
  SliderModels Models();

  // `imgLogo`, which covers the video area while a medium is prepared and before the first.
  void SetLogoVisible(bool visible);
  bool RenderVisible() const { return render_->isVisible(); }

  // Places the strip along the lower edge and the rest where `Render` is.
  void PlacePanel(int width, int height, int panel_height);
  void PlaceRender(int width, int height);
  void ApplyColors(const std::array<std::int32_t, kColorSlots>& colors);
  void SetRepeatFace(int face);
  std::string DispText(DispLabel label) const { return panel_->DispText(label).toStdString(); }
  void SetDispPointer(DispLabel label, bool hand) { panel_->SetDispPointer(label, hand); }

  // Hears the text that the tray icon is to show.
  std::function<void(const std::string&)> on_tray_tip;

  // OpenerView
  RenderTarget Render() const override;
  void ShowConnectionIcon(ConnectionIcon icon) override;
  void ShowResumeMark(bool visible) override;
  void SetTitleToolTip(const std::string& text) override;
  void SetSlidersEnabled(bool enabled) override;

  // StatusView
  void ShowStatusStrip(StatusPicture picture, const std::string& text) override;
  void HideStatusStrip() override;

  // InformationView
  void SetDisp(DispLabel label, const std::string& text) override;
  void SetDispUnderline(DispLabel label, bool underline) override;
  void SetTrayTip(const std::string& text) override;
  int PanelTextWidth(std::string_view text) const override;
  int PanelScaleWidth() const override;
  int TitleLeft() const override;
  int DisplayPathWidth() const override;

  // SliderLabels
  void SetSliderLabel(SliderLabel which, const std::string& text, bool settled) override;

  // MarksView
  void SetAbFace(int face) override;
  void SetAbToolTip(const std::string& text) override;

  // PicTime
  void Cls() override;
  void Print(int x, const std::string& text) override;

 private:
  MainPanel::ArtFile art_;
  VideoSurface* render_;
  PictureView* imgLogo_;
  QWidget* VuMeter1_ = nullptr;
  StatusStrip* picInfo_;
  MainPanel* panel_;
};

}  // namespace kv
