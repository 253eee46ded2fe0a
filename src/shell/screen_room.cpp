#include "shell/screen_room.h"

#include <QAccessible>
#include <QApplication>
#include <QScreen>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kv {
namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kSizingQuietMilliseconds = 250;
constexpr int kRestoreMilliseconds = 200;
constexpr int kFrameAllowance = 30;  // for a title bar

int ToTwips(int pixels) {
  return pixels * kTwipsPerPixel;
}
int ToPixels(int twips) {
  return qRound(twips / double{kTwipsPerPixel});
}

// The desktop tells where the pointer is only while it is over one of our windows.
bool PointerIsPrivate() {
  return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

constexpr int kTrayWatchMilliseconds = 2000;

}  // namespace

ScreenRoom::ScreenRoom(ScreenRoomHost& host, const Parts& parts)
    : host_(host),
      parts_(parts),
      caption_(
          [&form = parts.form](const std::string& text) {
            // A form without any title would bear the name of the program's file.
            form.setWindowTitle(text.empty() ? QStringLiteral(" ") : QString::fromStdString(text));
          },
          parts.settings, parts.timers[MainTimer::NormalizeCaption],
          parts.timers[MainTimer::SetCaptionDelay], parts.BaseCaption),
      full_screen_(*this, parts.settings, parts.session,
                   {parts.timers[MainTimer::DelayAutoHide], parts.timers[MainTimer::PanelShowTimer],
                    parts.timers[MainTimer::PanelDelayTimer],
                    parts.timers[MainTimer::ToggleFullscreenTimer]},
                   MainPanel::kFullHeight),
      slide_(*this, full_screen_, parts.timers[MainTimer::PanelShowTimer],
             parts.timers[MainTimer::PanelDelayTimer]),
      pointer_(*this, *this, full_screen_, parts.settings, parts.session, parts.time, parts.pump,
               parts.timers[MainTimer::PanelDelayTimer], parts.timers[MainTimer::DelayAutoHide]),
      sizing_(parts.Movie, parts.settings, parts.session, parts.time, *this,
              [this] {
                const MovieScale scale = CurrentScale(PanelAccounted(false));
                return PictureRectangle{scale.Top, scale.Left, scale.Width, scale.Height};
              }),
      tray_([this](int code) { TrayClick(code); }) {
  sizing_quiet_.setSingleShot(true);
  sizing_quiet_.setInterval(kSizingQuietMilliseconds);
  QObject::connect(&sizing_quiet_, &QTimer::timeout, &parts_.form,
                   [this] { sizing_.NewMessage(WindowMessage::kExitSizeMove); });
  restore_.setSingleShot(true);
  restore_.setInterval(kRestoreMilliseconds);
  // A notification area that ends takes the way back to the window with it.
  QObject::connect(&tray_watch_, &QTimer::timeout, &parts_.form, [this] {
    if (parts_.form.isVisible()) {
      tray_watch_.stop();
    } else if (!tray_.Visible() && !parts_.session.Unloading) {
      TrayClick(TrayIcon::kLeft);
    }
  });
  QObject::connect(&restore_, &QTimer::timeout, &parts_.form, [this] { RestorePlace(); });
}

// --- Movie and window

bool ScreenRoom::PanelAccounted(bool force) const {
  return force || (panel_height_ <= 1 && !full_screen_.NoPanel());
}

MovieScale ScreenRoom::CurrentScale(bool panel_accounted) const {
  MovieScaleInput input;
  input.ScaleWidth = parts_.form.width();
  input.ScaleHeight = parts_.form.height();
  input.PanelHeight = panel_height_;
  input.AutoHide = full_screen_.GetAutoHide();
  input.PanelAccounted = panel_accounted;
  input.KeepAspect = IsOn(parts_.settings.KeepAspect);
  input.FitToWindow = IsOn(parts_.settings.FitToWindow);
  input.MovieWidth = parts_.session.MovieWidth;
  input.MovieHeight = parts_.session.MovieHeight;
  return GetMovieScale(input);
}

void ScreenRoom::ScaleMovie(bool ForcePanel) {
  const MovieScale scale = CurrentScale(PanelAccounted(ForcePanel));
  parts_.view.PlaceRender(scale.AreaWidth, scale.AreaHeight);
  parts_.Movie.DS_SetScale(scale.Top, scale.Left, scale.Width, scale.Height);
  PrintCurScale();
  parts_.pump.PumpOnce();
}

void ScreenRoom::PrintCurScale() {
  if (IsOn(parts_.settings.FullScreen)) return;
  caption_.SetTempWindowCaption(ScaleText(CurrentScale(PanelAccounted(false)),
                                          parts_.session.MovieWidth, parts_.session.MovieHeight,
                                          parts_.text.DecimalSeparator()));
}

void ScreenRoom::ScaleWindow(float Factor) {
  const auto area = zoom_.ScaleWindow(Factor, IsOn(parts_.settings.FullScreen),
                                      parts_.session.MovieWidth, parts_.session.MovieHeight);
  if (!area) return;
  if (State() != WindowState::kNormal) parts_.form.showNormal();
  parts_.form.resize(area->width, area->height + panel_height_);
}

void ScreenRoom::Form_Resize() {
  if (parts_.session.StartingUp) return;
  QWidget& form = parts_.form;
  const WindowState state = State();
  parts_.settings.LastWindowState = static_cast<std::int16_t>(state);
  if (state == WindowState::kMinimised && tray_.Visible()) {
    // In this order: on X11 taking a window out of the minimised state maps it.
    form.setWindowState(form.windowState() & ~Qt::WindowMinimized);
    form.hide();
    tray_watch_.start(kTrayWatchMilliseconds);
  }
  if (State() != PreviousWindowState_) host_.SetVumeterVisible();
  PreviousWindowState_ = State();
  if (State() == WindowState::kMinimised) return;
  parts_.view.PlacePanel(form.width(), form.height(), panel_height_);
  ScaleMovie(false);
  parts_.timers[MainTimer::UpdateDispTimer].SetEnabled(true);
}

void ScreenRoom::PlaceWindow() {
  const Settings& settings = parts_.settings;
  if (IsOn(settings.RememberSize) && settings.WindowWidth > 0 && settings.WindowHeight > 0) {
    parts_.form.resize(ToPixels(settings.WindowWidth), ToPixels(settings.WindowHeight));
  }
  if (IsOn(settings.RememberWindowPos)) {
    parts_.form.move(ToPixels(settings.WindowLeft), ToPixels(settings.WindowTop));
  }
  KeepOnScreen();
}

// A screen that has gone, or is smaller now, must not keep the window out of sight.
void ScreenRoom::KeepOnScreen() {
  QWidget& form = parts_.form;
  const QScreen* screen = QGuiApplication::screenAt(form.geometry().center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  const QRect room = screen->availableGeometry();
  // The desktop has not put its frame around the window yet.
  const QSize most(room.width(), room.height() - kFrameAllowance);
  const QSize size = form.size().boundedTo(most).expandedTo(form.minimumSize());
  if (size != form.size()) form.resize(size);
  const QPoint corner(std::clamp(form.x(), room.left(),
                                 std::max(room.left(), room.left() + most.width() - size.width())),
                      std::clamp(form.y(), room.top(),
                                 std::max(room.top(), room.top() + most.height() - size.height())));
  if (corner != form.pos()) form.move(corner);
}

WindowState ScreenRoom::State() const {
  if (parts_.form.isMinimized()) return WindowState::kMinimised;
  return parts_.form.isMaximized() ? WindowState::kMaximised : WindowState::kNormal;
}

WindowPlace ScreenRoom::Place() const {
  const QWidget& form = parts_.form;
  // What full screen covers is not the window's own place.
  const QRect place = form.isFullScreen() && form.normalGeometry().isValid()
                          ? form.normalGeometry()
                          : QRect(form.pos(), form.size());
  return {ToTwips(place.x()), ToTwips(place.y()), ToTwips(place.width()), ToTwips(place.height())};
}

bool ScreenRoom::MeEffectSize() const {
  constexpr int kEffectPixels = 1500;
  const WindowPlace place = Place();
  return std::abs(place.width + place.height) / kTwipsPerPixel >= kEffectPixels;
}

// --- Full screen, strip and pointer

FormPlace ScreenRoom::PlaceOfForm() const {
  const WindowPlace place = Place();
  return {place.left, place.top, place.width, place.height};
}

void ScreenRoom::SetActiveHwnd() {
  parts_.windows.SetActiveHwnd(parts_.form);
}

void ScreenRoom::EnterFullScreen() {
  parts_.form.setWindowState(parts_.form.windowState() | Qt::WindowFullScreen);
}

void ScreenRoom::LeaveFullScreen(const std::optional<FormPlace>& place, int state) {
  QWidget& form = parts_.form;
  Qt::WindowStates states = Qt::WindowNoState;
  if (state == static_cast<int>(WindowState::kMaximised)) states |= Qt::WindowMaximized;
  if (state == static_cast<int>(WindowState::kMinimised)) states |= Qt::WindowMinimized;
  form.setWindowState(states);
  if (place) normal_place_ = *place;
  if (place) restore_.start();
}

// The desktop brings the window back to where it was, in its own time, and a move in the middle of
// that would lose. A window that began in full screen was nowhere.
void ScreenRoom::RestorePlace() {
  QWidget& form = parts_.form;
  if (form.isFullScreen() || State() != WindowState::kNormal) return;
  const QSize size(ToPixels(normal_place_.width), ToPixels(normal_place_.height));
  if (form.size() != size) form.resize(size);
  const QPoint corner(ToPixels(normal_place_.left), ToPixels(normal_place_.top));
  if (form.pos() != corner) form.move(corner);
}

void ScreenRoom::SetPanelVisible(bool visible) {
  panel_visible_ = visible;
  parts_.view.Panel().setVisible(visible);
}

void ScreenRoom::SetPanelHeight(int pixels) {
  panel_height_ = pixels;
  parts_.view.PlacePanel(parts_.form.width(), parts_.form.height(), panel_height_);
}

void ScreenRoom::SetFullScreenChecked(bool checked) {
  host_.SetMenuChecked("mFullScreen", checked);
}

bool ScreenRoom::RenderVisible() const {
  return parts_.view.RenderVisible();
}

void ScreenRoom::ChangeTarget() {
  const MovieScale scale = CurrentScale(false);
  parts_.Movie.DS_ChangeTarget(scale.Top, scale.Left, scale.Width, scale.Height, RenderHandle());
}

Foreground ScreenRoom::ForegroundWindow() const {
  const QWidget* active = parts_.windows.GetActiveHwnd();
  if (active == nullptr) return Foreground::kOtherProcess;
  // A menu stands over the form without taking the foreground from it.
  if (QApplication::activePopupWidget() != nullptr) return Foreground::kOtherWindow;
  return active == &parts_.form ? Foreground::kMainForm : Foreground::kOtherWindow;
}

FormArea ScreenRoom::AreaOfForm() const {
  const QWidget& form = parts_.form;
  const QRect frame = form.frameGeometry();
  return {.left = frame.left(),
          .top = frame.top(),
          .width = frame.width(),
          .height = frame.height(),
          .ScaleWidth = form.width(),
          .ScaleHeight = form.height(),
          .PanelTop = form.height() - panel_height_,
          .PanelHeight = panel_height_};
}

std::optional<ScreenPoint> ScreenRoom::Pointer() const {
  if (const auto over = sight_.Over(parts_.form)) return ScreenPoint{over->x(), over->y()};
  // Elsewhere the pointer matters only to what hides itself.
  const bool watched = full_screen_.GetAutoHide() || IsOn(parts_.settings.FullScreen);
  if (!watched || PointerIsPrivate()) return std::nullopt;
  const QPoint point = parts_.windows.GetMouseScreenPos();
  return ScreenPoint{point.x(), point.y()};
}

int ScreenRoom::MouseButtonDown() {
  const int pressed = std::exchange(pressed_, 0);
  return pressed != 0 ? pressed : parts_.windows.MouseButtonDown();
}

void ScreenRoom::ShowCursor(bool show) {
  if (show == cursor_shown_) return;
  cursor_shown_ = show;
  parts_.windows.SetCursorHidden(!show);
}

void ScreenRoom::SetReducedMotion(bool reduced) {
  reduced_motion_ = reduced;
  slide_.SetReducedMotion(reduced);
  QApplication::setEffectEnabled(Qt::UI_General, effects_ && !reduced);
}

// A control of the strip that Tab has come to hands every key of the player on to the form.
void ScreenRoom::TakeFocus() {
  if (parts_.form.hasFocus() || parts_.view.Panel().HoldsFocus()) return;
  parts_.form.setFocus();
}

// --- Tray

void ScreenRoom::UpdateTraySettings() {
  if (!parts_.form.isVisible() && !parts_.session.StartingUp) return;
  parts_.windows.SetWindowExStyle(parts_.form, !parts_.session.StartingUp,
                                  State() == WindowState::kMinimised ? 0 : kWsExAppWindow);
  tray_.SetVisible(IsOn(parts_.settings.MinimizeToTray));
}

void ScreenRoom::TrayClick(int code) {
  kv::TrayClick(code, *this, parts_.settings);
}

void ScreenRoom::ShowForm() {
  QWidget& form = parts_.form;
  if (form.isMinimized()) form.setWindowState(form.windowState() & ~Qt::WindowMinimized);
  form.show();
  form.raise();
}

// --- Events of the form

bool ScreenRoom::OnTimer(MainTimer timer) {
  switch (timer) {
    case MainTimer::MouseTimer:
      pointer_.OnMouseTimer();
      return true;
    case MainTimer::PanelShowTimer:
      slide_.OnPanelShowTimer();
      return true;
    case MainTimer::PanelDelayTimer:
      slide_.OnPanelDelayTimer();
      return true;
    case MainTimer::DelayAutoHide:
      full_screen_.OnDelayAutoHide();
      return true;
    case MainTimer::ToggleFullscreenTimer:
      full_screen_.OnToggleFullscreenTimer();
      return true;
    case MainTimer::NormalizeCaption:
      // A tool that reads the window's name aloud would read every letter that is typed.
      caption_.SetReducedMotion(reduced_motion_ || QAccessible::isActive());
      caption_.OnNormalizeCaption();
      return true;
    case MainTimer::SetCaptionDelay:
      caption_.OnSetCaptionDelay();
      return true;
    default:
      return false;
  }
}

void ScreenRoom::Resized(bool by_user) {
  if (by_user && State() == WindowState::kNormal && !parts_.form.isFullScreen()) {
    sizing_.NewMessage(WindowMessage::kSizing);
    sizing_quiet_.start();
    if (sizing_.NewMessage(WindowMessage::kSize)) return;
  }
  Form_Resize();
}

void ScreenRoom::StopTimers() {
  sizing_quiet_.stop();
  restore_.stop();
}

void ScreenRoom::MousePressed(Qt::MouseButton button) {
  if (button == Qt::LeftButton) pressed_ = TrayIcon::kLeft;
  if (button == Qt::RightButton) pressed_ = TrayIcon::kRight;
  parts_.form.setFocus();
}

void ScreenRoom::SetRenderVisible(bool visible) {
  parts_.view.Surface().setVisible(visible);
}

WindowHandle ScreenRoom::RenderHandle() const {
  return parts_.view.Render().hWnd;
}

void ScreenRoom::LockWindowRedraw(bool lock) {
  parts_.windows.LockWindowRedraw(lock ? &parts_.form : nullptr);
}

}  // namespace kv
