#include "shell/main_view.h"

#include "controls/color_qt.h"
#include "system/translation_qt.h"

#include <array>
#include <utility>

namespace kv {
namespace {

constexpr std::size_t kGeneralBack = 1;
constexpr std::size_t kGeneralText = 4;
constexpr int kMarksButton = 5;
constexpr int kRepeatButton = 6;

}  // namespace

MainView::MainView(QWidget& form, VideoSurfaces& surfaces, MessagePump& pump,
                   MainPanel::ArtFile art)
    : art_(std::move(art)),
      render_(new VideoSurface(surfaces, &form)),
      imgLogo_(new PictureView(art_("logo"), &form)),
      picInfo_(new StatusStrip(&form)),
      panel_(new MainPanel(art_, pump, &form)) {
  render_->setAccessibleName(QTr("Movie"));
  imgLogo_->setAccessibleName(QStringLiteral("Kestrelview"));
}

SliderModels MainView::Models() {
  return {panel_->Slider(SliderKind::kPosition).Model(),
          panel_->Slider(SliderKind::kVolume).Model(), panel_->Slider(SliderKind::kRate).Model(),
          panel_->Slider(SliderKind::kBalance).Model()};
}

void MainView::SetLogoVisible(bool visible) {
  imgLogo_->setVisible(visible);
}

void MainView::PlacePanel(int width, int height, int panel_height) {
  panel_->setGeometry(0, height - panel_height, width, panel_height);
}

void MainView::PlaceRender(int width, int height) {
  const QRect area(0, 0, width, height);
  render_->setGeometry(area);
  imgLogo_->setGeometry(area);
  picInfo_->setGeometry(area);
  if (VuMeter1_ != nullptr) VuMeter1_->setGeometry(area);
}

void MainView::PlaceMeter(QWidget& meter) {
  VuMeter1_ = &meter;
  meter.stackUnder(picInfo_);
}

void MainView::ApplyColors(const std::array<std::int32_t, kColorSlots>& colors) {
  panel_->ApplyColors(colors);
  picInfo_->SetColors(ToQColor(colors[kGeneralBack], picInfo_->palette()),
                      ToQColor(colors[kGeneralText], picInfo_->palette()));
}

void MainView::SetRepeatFace(int face) {
  constexpr std::array kFaces = {"repeat_0", "repeat_1", "repeat_2"};
  constexpr std::array kStates = {TrLater("Off"), TrLater("Repeats the file"),
                                  TrLater("Repeats the list")};
  panel_->SetFace(kRepeatButton, kFaces[static_cast<std::size_t>(face)]);
  panel_->Button(kRepeatButton).SetState(QTr(kStates[static_cast<std::size_t>(face)]), face != 0);
}

RenderTarget MainView::Render() const {
  return {render_->Handle(), render_->width(), render_->height()};
}

void MainView::ShowConnectionIcon(ConnectionIcon icon) {
  constexpr std::array<const char*, 3> kDrawings = {nullptr, "secure", "internet"};
  panel_->ShowConnection(kDrawings[static_cast<std::size_t>(icon)]);
}

void MainView::ShowResumeMark(bool visible) {
  panel_->ShowResumeMark(visible);
}

void MainView::SetTitleToolTip(const std::string& text) {
  panel_->SetTitleToolTip(ToQString(text));
}

void MainView::SetSlidersEnabled(bool enabled) {
  panel_->Slider(SliderKind::kPosition).setEnabled(enabled);
  panel_->Slider(SliderKind::kRate).setEnabled(enabled);
}

void MainView::ShowStatusStrip(StatusPicture picture, const std::string& text) {
  picInfo_->Show(art_(picture == StatusPicture::kConnecting ? "connecting" : "buffering"),
                 ToQString(text));
}

void MainView::HideStatusStrip() {
  picInfo_->hide();
}

void MainView::SetDisp(DispLabel label, const std::string& text) {
  panel_->SetDisp(label, ToQString(text));
}

void MainView::SetDispUnderline(DispLabel label, bool underline) {
  panel_->SetDispUnderline(label, underline);
}

void MainView::SetTrayTip(const std::string& text) {
  if (on_tray_tip) on_tray_tip(text);
}

int MainView::PanelTextWidth(std::string_view text) const {
  return panel_->TitleWidth(ToQString(text));
}

int MainView::PanelScaleWidth() const {
  return panel_->width();
}

int MainView::TitleLeft() const {
  return panel_->TitleLeft();
}

int MainView::DisplayPathWidth() const {
  return panel_->PathWidth();
}

void MainView::SetSliderLabel(SliderLabel which, const std::string& text, bool /*settled*/) {
  const SliderKind kind = which == SliderLabel::kVolume ? SliderKind::kVolume
                          : which == SliderLabel::kRate ? SliderKind::kRate
                                                        : SliderKind::kBalance;
  panel_->SetSliderLabel(kind, ToQString(text));
}

void MainView::SetAbFace(int face) {
  constexpr std::array kFaces = {"ab_0", "ab_1", "ab_2"};
  constexpr std::array kStates = {TrLater("No marks"), TrLater("A is set"),
                                  TrLater("Repeats from A to B")};
  panel_->SetFace(kMarksButton, kFaces[static_cast<std::size_t>(face)]);
  panel_->Button(kMarksButton).SetState(QTr(kStates[static_cast<std::size_t>(face)]), face != 0);
}

void MainView::SetAbToolTip(const std::string& text) {
  panel_->Button(kMarksButton).setToolTip(ToQString(text));
}

void MainView::Cls() {
  panel_->PicTime().Cls();
}

void MainView::Print(int x, const std::string& text) {
  panel_->PicTime().Print(x, ToQString(text));
}

}  // namespace kv
