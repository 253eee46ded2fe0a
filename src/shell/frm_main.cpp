#include "shell/frm_main.h"

#include "controls/svg_face_qt.h"
#include "state/color_file.h"
#include "system/special_folders.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDialog>
#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>

#include <algorithm>
#include <fstream>

namespace kv {
namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kWheelNotch = 120;  // eighths of a degree
constexpr int kSizingQuietMilliseconds = 250;
constexpr int kSmallestMovieHeight = 60;
constexpr int kFrameAllowance = 30;  // for a title bar
constexpr QSize kFirstSize(720, 480);

// Modifier keys under the numbers that key rules know them by.
constexpr int kShiftKeyCode = 16;
constexpr int kCtrlKeyCode = 17;

int ToTwips(int pixels) {
  return pixels * kTwipsPerPixel;
}
int ToPixels(int twips) {
  return static_cast<int>(qRound(twips / double{kTwipsPerPixel}));
}

// Drawn here, so that no image plug-in has to be loaded on the way to the first picture.
QIcon ProgramIcon(const QString& drawing) {
  QIcon icon;
  for (const int size : {16, 24, 32, 48}) {
    icon.addPixmap(RenderFace(drawing, QColor(), QSize(size, size), 1.0));
  }
  return icon;
}

MainPanel::ArtFile ArtFrom(const ProgramFolder& folder) {
  return [&folder](const char* name) {
    return QFile::decodeName(folder.DataFile(std::string("art/") + name + ".svg").c_str());
  };
}

}  // namespace

frmMain::frmMain(const ProgramParts& parts)
    : parts_(parts),
      dialogs_(this),
      shell_(dialogs_),
      windows_(parts.pump),
      timers_(parts.time, [this](MainTimer timer) { OnTimer(timer); }),
      Movie_(parts.engine, parts.pump),
      view_(*this, parts.engine.Video().Surfaces(), parts.pump, ArtFrom(parts.folder)),
      models_(view_.Models()),
      time_display_(Movie_, settings_, parts.text, view_),
      sliders_(models_, Movie_, settings_, session_, time_display_, parts.text, view_, *this),
      status_(view_, Movie_, dialogs_, parts.pump, timers_[MainTimer::tmrCheckBuffering],
              timers_[MainTimer::tmrCheckBufferingTimeout]),
      information_(view_, settings_, session_, parts.text, [this] { return PlaylistCount(); }),
      marks_(Movie_, session_, models_.Scroller1, view_),
      transport_(Movie_, settings_, session_, marks_, parts.pump, *this, *this, *this, *this),
      wheel_(Movie_, transport_, models_.Scroller2),
      tick_(Movie_, settings_, session_, models_.Scroller1, sliders_, transport_, *this),
      movie_events_(*this, parts.pump),
      sizing_(Movie_, settings_, session_, parts.time, *this,
              [this] {
                const MovieScale scale = CurrentScale(false);
                return PictureRectangle{scale.Top, scale.Left, scale.Width, scale.Height};
              }),
      opener_(*this, view_,
              {Movie_, settings_, session_, models_, sliders_, time_display_, status_, dialogs_,
               parts.pump, parts.text}),
      hand_over_(*this, dialogs_, timers_[MainTimer::LinkExeTimer],
                 timers_[MainTimer::OpeningCMDDelay]),
      settings_life_(*this, settings_, models_, parts.folder, shell_, parts.pump),
      form_life_(*this, Movie_, settings_, session_, dialogs_, parts.pump),
      run_once_(RunOnce::UserFolder()) {
  setObjectName(QStringLiteral("frmMain"));
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(MainPanel::kSmallestWidth, MainPanel::kFullHeight + kSmallestMovieHeight);
  resize(kFirstSize);
  Movie_.SetEvents(&movie_events_);
  ConnectPanel();
  sizing_quiet_.setSingleShot(true);
  sizing_quiet_.setInterval(kSizingQuietMilliseconds);
  connect(&sizing_quiet_, &QTimer::timeout, this,
          [this] { sizing_.NewMessage(WindowMessage::kExitSizeMove); });
  parts_.engine.Video().SetFirstPictureListener([this] { parts_.trace.Write("first-frame"); });
  connect(&trace_timer_, &QTimer::timeout, this, [this] { TracePosition(); });
}

frmMain::~frmMain() {
  Movie_.SetEvents(nullptr);
}

void frmMain::ConnectPanel() {
  MainPanel& panel = view_.Panel();
  for (int index = 0; index < kButtons; ++index) {
    SmartButton& button = panel.Button(index);
    connect(&button, &SmartButton::clicked, this, [this, index] { BUtton_Click(index); });
    button.on_double_click = [this, index] { transport_.Button_DblClick(index); };
  }
  panel.on_menu = [this] { transport_.BottonPanel_MouseUp(kRightButton); };
  for (const SliderKind kind :
       {SliderKind::kPosition, SliderKind::kVolume, SliderKind::kRate, SliderKind::kBalance}) {
    // Keys belong to the form, whatever was clicked last.
    panel.Slider(kind).got_focus = [this] { setFocus(); };
    panel.Slider(kind).setToolTip(
        QString::fromUtf8(kSliderDesign[static_cast<std::size_t>(kind)].tool_tip.data()));
  }
}

void frmMain::Form_Load() {
  // A stray call while the program goes down must not bring the form up again.
  if (session_.Unloading) return;
  run_once_.Clear();
  QGuiApplication::setWindowIcon(ProgramIcon(ArtFrom(parts_.folder)("kestrelview")));
  ReadFileSupport();
  hand_over_.ReadCommandLine(parts_.start_up.CommandLine());
  // A box can stand long enough for the login session to end meanwhile.
  if (session_.Unloading) return;
  if (hand_over_.HaveCommandFile()) parts_.engine.Expect(hand_over_.CommandFile());
  session_.StartingUp = true;
  BaseCaption_ = std::string(kAppTitle) + " " + std::to_string(KV_VERSION_MAJOR);
  setWindowTitle(QString::fromStdString(BaseCaption_));
  panel_height_ = 1;
  sliders_.Configure();
  sliders_.Connect();
  const int plugins = ScanPlugins();
  settings_life_.LoadSettings();
  if (session_.Unloading) return;
  if (plugins == 0) settings_.UseExternalPlugin = FromBool(false);
  BuildMenu();
  RefreshColors();
  transport_.SetRepeatButtonColor();
  settings_life_.UpdateSettings();
  LoadIcons();
  if (IsOn(settings_.UseExternalPlugin) && !settings_.PluginProgId.empty()) LoadExternalPlugin();
  if (!parts_.start_up.IsDebugMode()) StartWheelHook();
  PlaceWindow();
  if (settings_.PlaylistFile.empty()) {
    settings_.PlaylistFile = parts_.folder.AppFolder() + "playlist.m3u";
    settings_.PlaylistIndex = 0;
    settings_.PreviousItemPosition = kNoPosition;
  }
  LoadPlaylist(settings_.PlaylistFile);
  if (IsOn(settings_.PlaylistVisible)) ShowPlaylistWindow();
  if (IsOn(settings_.VumeterVisible)) ShowMeterWindow();
  view_.SetLogoVisible(true);
  if (IsOn(settings_.FullScreen)) {
    // Left in full screen: the toggle goes back there, and until it has the panel is shown.
    settings_.FullScreen = FromBool(false);
    SetPanelVisible(true);
    ToggleFullScreen();
  } else {
    ScaleMovie(false);
  }
  SetMeterStyle(settings_.PluginStyle);
  const auto state = static_cast<WindowState>(settings_.LastWindowState);
  session_.StartingUp = false;
  Form_Resize();
  shown_ = true;
  if (state == WindowState::kMaximised) {
    showMaximized();
  } else if (state == WindowState::kMinimised) {
    showMinimized();
  } else {
    show();
  }
  parts_.trace.Write("window");
  timers_[MainTimer::MouseTimer].SetEnabled(true);
  if (!parts_.start_up.IsDebugMode()) DockWindow();
  session_.FormLoaded = true;
  if (!hand_over_.FinishLoading() && IsOn(settings_.AutoLoadLast)) {
    timers_[MainTimer::LoadLast].SetEnabled(true);
  }
  timers_[MainTimer::PosTimer].SetEnabled(true);
  SetVumeterVisible();
  if (parts_.trace.Active()) trace_timer_.start(1000);
}

void frmMain::ReadFileSupport() {
  std::ifstream file(parts_.folder.DataFile("filesupport.dat"), std::ios::binary);
  const auto next_line = [&file] {
    std::string line;
    std::getline(file, line);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
  };
  session_.SupportedExtensions = next_line();
  session_.OpenFilter = next_line();
}

void frmMain::RefreshColors() {
  view_.ApplyColors(settings_.Colors);
}

void frmMain::PlaceWindow() {
  if (IsOn(settings_.RememberSize) && settings_.WindowWidth > 0 && settings_.WindowHeight > 0) {
    resize(ToPixels(settings_.WindowWidth), ToPixels(settings_.WindowHeight));
  }
  if (IsOn(settings_.RememberWindowPos)) {
    move(ToPixels(settings_.WindowLeft), ToPixels(settings_.WindowTop));
  }
  KeepOnScreen();
}

// A screen that has gone, or is smaller now, must not keep the window out of sight.
void frmMain::KeepOnScreen() {
  const QScreen* screen = QGuiApplication::screenAt(geometry().center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  const QRect room = screen->availableGeometry();
  // The desktop has not put its frame around the window yet.
  const QSize most(room.width(), room.height() - kFrameAllowance);
  const QSize size = this->size().boundedTo(most).expandedTo(minimumSize());
  if (size != this->size()) resize(size);
  const QPoint corner(std::clamp(x(), room.left(),
                                 std::max(room.left(), room.left() + most.width() - size.width())),
                      std::clamp(y(), room.top(),
                                 std::max(room.top(), room.top() + most.height() - size.height())));
  if (corner != pos()) move(corner);
}

void frmMain::OnTimer(MainTimer timer) {
  switch (timer) {
    case MainTimer::PosTimer:
      tick_.PosTimer();
      break;
    case MainTimer::LinkExeTimer:
      hand_over_.OnLinkExeTimer();
      break;
    case MainTimer::OpeningCMDDelay:
      hand_over_.OnOpeningCMDDelay();
      break;
    case MainTimer::LoadLast:
      timers_[MainTimer::LoadLast].SetEnabled(false);
      form_life_.OnLoadLast(hand_over_.HaveCommandFile());
      break;
    case MainTimer::UnloadTimer:
      timers_[MainTimer::UnloadTimer].SetEnabled(false);
      close();
      break;
    case MainTimer::UpdateDispTimer:
      timers_[MainTimer::UpdateDispTimer].SetEnabled(false);
      UpdateFileDisp("");
      break;
    case MainTimer::tmrCheckBuffering:
      status_.OnCheckBuffering();
      break;
    case MainTimer::tmrCheckBufferingTimeout:
      status_.OnCheckBufferingTimeout();
      break;
    case MainTimer::FadeInTimer:
      FadeIn();
      break;
    default:
      break;
  }
}

void frmMain::FadeIn() {
  if (models_.Scroller2.Value() < models_.Scroller2.Max()) {
    models_.Scroller2.SetValue(models_.Scroller2.Value() + 1.0);
  } else {
    timers_[MainTimer::FadeInTimer].SetEnabled(false);
  }
}

void frmMain::TracePosition() {
  if (Movie_.DS_IsOpen()) {
    parts_.trace.WriteSeconds("position", Movie_.DS_GetPosition());
    parts_.trace.Write("pictures", std::to_string(parts_.engine.Video().PaintedPictures()));
  }
}

// --- The form's own events

void frmMain::closeEvent(QCloseEvent* event) {
  if (!form_life_.Form_QueryUnload(UnloadMode::kUser)) {
    event->ignore();
    return;
  }
  event->accept();
  Form_Unload();
}

void frmMain::EndSession() {
  if (!form_life_.Form_QueryUnload(UnloadMode::kSessionEnd)) return;
  Form_Unload();
  // A question that is still open has a loop of its own, which may stand before the program's.
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* dialog = qobject_cast<QDialog*>(window)) dialog->done(QDialog::Rejected);
  }
}

void frmMain::Form_Unload() {
  if (!windows_.TaskBarVisible()) windows_.SetTaskBarVisible(true);
  SetCursor(true, true);
  if (!parts_.start_up.IsDebugMode()) UndockWindow();
  parts_.trace.Write("quit");
  QCoreApplication::quit();
}

void frmMain::resizeEvent(QResizeEvent* event) {
  if (shown_ && event->spontaneous() && !isMaximized()) {
    sizing_.NewMessage(WindowMessage::kSizing);
    sizing_quiet_.start();
    if (sizing_.NewMessage(WindowMessage::kSize)) return;
  }
  Form_Resize();
}

void frmMain::moveEvent(QMoveEvent* /*event*/) {
  if (shown_) sizing_.NewMessage(WindowMessage::kWindowPosChanging);
}

void frmMain::changeEvent(QEvent* event) {
  if (event->type() == QEvent::WindowStateChange && shown_) Form_Resize();
  QWidget::changeEvent(event);
}

void frmMain::wheelEvent(QWheelEvent* event) {
  const Qt::KeyboardModifiers keys = event->modifiers();
  const bool shift = keys.testFlag(Qt::ShiftModifier);
  const bool ctrl = keys.testFlag(Qt::ControlModifier);
  const int mode =
      ctrl ? (shift ? kWheelSecond : kWheelFrame) : (shift ? kWheelMinute : kWheelVolume);
  // Some desktops turn the wheel sideways while a key is held.
  const QPoint angle = event->angleDelta();
  wheel_angle_ += angle.y() != 0 ? angle.y() : angle.x();
  for (; wheel_angle_ >= kWheelNotch; wheel_angle_ -= kWheelNotch) wheel_.WheelMove(false, mode);
  for (; wheel_angle_ <= -kWheelNotch; wheel_angle_ += kWheelNotch) wheel_.WheelMove(true, mode);
  event->accept();
}

void frmMain::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Open)) {
    RunMenuCommand("mOpen");
  } else {
    QWidget::keyPressEvent(event);
  }
}

void frmMain::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Control) wheel_.KeyUp(kCtrlKeyCode);
  if (event->key() == Qt::Key_Shift) wheel_.KeyUp(kShiftKeyCode);
  QWidget::keyReleaseEvent(event);
}

void frmMain::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) BUtton_Click(Transport::kMenu);
}

void frmMain::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) RunMenuCommand("mOpen");
}

// --- Layout

int frmMain::PanelHeight() const {
  return panel_visible_ ? panel_height_ : 0;
}

MovieScale frmMain::CurrentScale(bool force_panel) const {
  MovieScaleInput input;
  input.ScaleWidth = width();
  input.ScaleHeight = height();
  input.PanelHeight = PanelHeight();
  input.AutoHide = GetAutoHide();
  input.PanelAccounted =
      force_panel || (PanelHeight() <= 1 &&
                      !(IsOn(settings_.HideControlsInFullscreen) && IsOn(settings_.FullScreen)));
  input.KeepAspect = IsOn(settings_.KeepAspect);
  input.FitToWindow = IsOn(settings_.FitToWindow);
  input.MovieWidth = session_.MovieWidth;
  input.MovieHeight = session_.MovieHeight;
  return GetMovieScale(input);
}

void frmMain::ScaleMovie(bool ForcePanel) {
  const MovieScale scale = CurrentScale(ForcePanel);
  view_.PlaceRender(scale.AreaWidth, scale.AreaHeight);
  Movie_.DS_SetScale(scale.Top, scale.Left, scale.Width, scale.Height);
  PrintCurScale();
  parts_.pump.PumpOnce();
}

void frmMain::PrintCurScale() {
  if (IsOn(settings_.FullScreen)) return;
  SetTempWindowCaption(ScaleText(CurrentScale(false), session_.MovieWidth, session_.MovieHeight));
}

void frmMain::ScaleWindow(float Factor) {
  const auto area = zoom_.ScaleWindow(Factor, IsOn(settings_.FullScreen), session_.MovieWidth,
                                      session_.MovieHeight);
  if (!area) return;
  if (State() != WindowState::kNormal) showNormal();
  resize(area->width, area->height + PanelHeight());
}

void frmMain::Form_Resize() {
  if (session_.StartingUp) return;
  settings_.LastWindowState = static_cast<std::int16_t>(State());
  if (State() == WindowState::kMinimised) return;
  view_.PlacePanel(width(), height(), PanelHeight());
  ScaleMovie(false);
  timers_[MainTimer::UpdateDispTimer].SetEnabled(true);
}

WindowState frmMain::State() const {
  if (isMinimized()) return WindowState::kMinimised;
  return isMaximized() ? WindowState::kMaximised : WindowState::kNormal;
}

WindowPlace frmMain::Place() const {
  return {ToTwips(x()), ToTwips(y()), ToTwips(width()), ToTwips(height())};
}

// --- What leads to the rooms' classes

void frmMain::OpenFile(const std::string& File, OpenArguments arguments) {
  opener_.OpenFile(File, arguments);
  if (parts_.trace.Active()) {
    parts_.trace.Write(Movie_.DS_CurFile().empty() ? "failed" : "open", settings_.CurrentFile);
  }
}

void frmMain::OpenCommandFile(const std::string& path) {
  settings_.CurrentFile = path;
  OpenFile(path, {.StartPlaying = true, .KeepWindowSize = true});
  // Another medium may have come in its place.
  if (IsOn(settings_.AutoZoom) && settings_.CurrentFile == path) ScaleWindow(1.0F);
}

void frmMain::AbandonOpen() {
  opener_.AbandonOpen();
}
void frmMain::UpdateFileDisp(const std::string& text) {
  information_.UpdateFileDisp(text);
}
void frmMain::UpdateFileDataDisplay() {
  information_.UpdateFileDataDisplay();
}
void frmMain::ResetAB() {
  marks_.ResetAB();
}
void frmMain::BUtton_Click(int Index) {
  transport_.BUtton_Click(Index);
}
void frmMain::ShowStatus(int kind) {
  status_.ShowStatus(kind);
}
void frmMain::SetRepeatFace(int face) {
  view_.SetRepeatFace(face);
}

void frmMain::LoadColorInfo() {
  ReadColorFile(parts_.folder.DataFile("colorscemes/" + settings_.ColorScheme), settings_.Colors);
}

void frmMain::SetBusyPointer(bool busy) {
  windows_.SetBusyPointer(busy);
}

void frmMain::SetAutoHideMode() {
  panel_height_ = MainPanel::kFullHeight;
}

void frmMain::SetPanelVisible(bool visible) {
  panel_visible_ = visible;
  view_.Panel().setVisible(visible);
}

void frmMain::HideForm() {
  hide();
}

void frmMain::StopAllTimers() {
  timers_.StopAllTimers();
  trace_timer_.stop();
  sizing_quiet_.stop();
}

void frmMain::RegisterRestart() {
  run_once_.Register(QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString());
}

void frmMain::SaveSettings() {
  settings_life_.SaveSettings(parts_.start_up.CommandLine());
}

void frmMain::RestoreFromTray() {
  if (isMinimized() || !isVisible()) showNormal();
  raise();
  activateWindow();
}

void frmMain::RunMenuCommand(std::string_view key) {
  if (key == "mOpen") OpenFile("", {.StartPlaying = true});
}

void frmMain::SetRenderVisible(bool visible) {
  view_.Surface().setVisible(visible);
}
void frmMain::SetLogoVisible(bool visible) {
  view_.SetLogoVisible(visible);
}
bool frmMain::RenderVisible() const {
  return view_.RenderVisible();
}
WindowHandle frmMain::RenderHandle() const {
  return view_.Render().hWnd;
}

void frmMain::LockWindowRedraw(bool lock) {
  windows_.LockWindowRedraw(lock ? this : nullptr);
}

}  // namespace kv
