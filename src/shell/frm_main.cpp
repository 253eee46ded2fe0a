#include "shell/frm_main.h"

#include "controls/svg_face_qt.h"
#include "shell/hand_over_channel.h"
#include "state/file_support.h"
#include "state/open_filter.h"
#include "system/language_name_qt.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/translation_qt.h"
#include "view/key_codes_qt.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
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
#include <utility>

namespace kv {
namespace {

constexpr int kWheelNotch = 120;  // eighths of a degree
constexpr int kSmallestMovieHeight = 60;
constexpr QSize kFirstSize(720, 480);
// When nothing of a start waits any more.
constexpr int kWishesMilliseconds = 1500;
constexpr const char* kHighContrast = "High contrast";

// Modifier keys under the numbers that key rules know them by.
constexpr int kShiftKeyCode = 16;
constexpr int kCtrlKeyCode = 17;

// The caption to return to.
std::string BaseCaption() {
  return std::string(kAppTitle) + " " + std::to_string(KV_VERSION_MAJOR);
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
      docking_(parts.time),
      timers_(parts.time, [this](MainTimer timer) { OnTimer(timer); }),
      Movie_(parts.engine, parts.pump),
      view_(*this, parts.engine.Video().Surfaces(), parts.pump, ArtFrom(parts.folder)),
      models_(view_.Models()),
      cpu_graph_(parts.time, view_.Panel().BottonPanel()),
      playlist_(*this, {Movie_, settings_, session_, dialogs_, parts.pump,
                        timers_[MainTimer::PlayFromPlaylist], parts.text, parts.folder}),
      list_windows_(*this, {*this, playlist_, settings_, session_, dialogs_, playlist_.Store(),
                            shell_, parts.time, parts.pump, parts.text, ArtFrom(parts.folder),
                            [this](QWidget& window) { Adopt(window); }}),
      medium_(*this, {*this, Movie_, playlist_, list_windows_, settings_, session_, dialogs_,
                      parts.pump, shell_, parts.time, parts.text}),
      visual_(*this, {*this, Movie_, settings_, session_, parts.folder, parts.time, parts.pump,
                      windows_, parts.text, timers_[MainTimer::UpdateVuRunning],
                      [this](QWidget& window) { Adopt(window); }}),
      time_display_(Movie_, settings_, parts.text, view_),
      sliders_(models_, Movie_, settings_, session_, time_display_, parts.text, view_, visual_),
      status_(view_, Movie_, dialogs_, parts.pump, timers_[MainTimer::tmrCheckBuffering],
              timers_[MainTimer::tmrCheckBufferingTimeout]),
      information_(
          view_, settings_, session_, parts.text, [this] { return PlaylistCount(); }, readers_),
      disp_events_(information_, *this, shell_),
      marks_(Movie_, session_, models_.Scroller1, view_),
      transport_(Movie_, settings_, session_, marks_, parts.pump, playlist_, *this, visual_, *this),
      wheel_(Movie_, transport_, models_.Scroller2),
      tick_(Movie_, settings_, session_, models_.Scroller1, sliders_, transport_, playlist_),
      movie_events_(*this, parts.pump),
      screen_(*this, {*this, view_, Movie_, settings_, session_, timers_, parts.time, parts.pump,
                      windows_, parts.text, BaseCaption()}),
      opener_(*this, view_,
              {Movie_, settings_, session_, models_, sliders_, time_display_, status_, dialogs_,
               parts.pump, parts.text}),
      hand_over_(*this, dialogs_, timers_[MainTimer::LinkExeTimer],
                 timers_[MainTimer::OpeningCMDDelay]),
      settings_life_(*this, settings_, models_, parts.folder, shell_, parts.pump),
      form_life_(*this, Movie_, settings_, session_, dialogs_, parts.pump),
      run_once_(RunOnce::UserFolder()),
      forms_({*this, parts.folder, shell_, windows_, settings_, session_,
              [this] { RefreshColors(); }, [this](QWidget& window) { Adopt(window); }}),
      menu_(settings_, visual_, parts.text, parts.folder, *this),
      tracks_(menu_.Model(), Movie_, dialogs_, session_, LanguageName),
      commands_(menu_.Model(), settings_, session_, dialogs_, parts.pump, parts.time,
                {timers_[MainTimer::mnuTimer], timers_[MainTimer::ToggleFullscreenTimer],
                 timers_[MainTimer::UnloadTimer]},
                {*this, *this, *this, *this, visual_, tracks_}),
      keys_(Movie_, session_, {models_.Scroller1, models_.Scroller2, models_.Scroller3}, commands_,
            *this),
      icons_(parts.time),
      desktop_(*this, {*this, Movie_, settings_, session_, models_, parts.time,
                       timers_[MainTimer::UnloadTimer], dialogs_,
                       FolderOfPath(HandOverSocketPath(parts.folder.AppFolder()))}),
      wishes_([this](const DesktopWishes& wishes) { FollowWishes(wishes); }, this) {
  setObjectName(QStringLiteral("frmMain"));
  setFocusPolicy(Qt::StrongFocus);
  setAcceptDrops(true);
  setMinimumSize(MainPanel::kSmallestWidth, MainPanel::kFullHeight + kSmallestMovieHeight);
  resize(kFirstSize);
  Movie_.SetEvents(&movie_events_);
  menu_.SetOnClick([this](int id) { commands_.MENU_Click(id); });
  view_.on_tray_tip = [this](const std::string& text) { screen_.Tray().SetTip(text); };
  view_.PlaceMeter(visual_.VuMeter1());
  visual_.VuMeter1().Events().OLEDragDrop = [this](QDropEvent& drop) { medium_.Drop(drop); };
  view_.Panel().SetGraph(cpu_graph_.Chart());
  ConnectPanel();
  parts_.engine.Video().SetPictureListener([this] { view_.Panel().PictureComes(); });
  parts_.engine.Video().SetFirstPictureListener([this] { parts_.trace.Write("first-frame"); });
  connect(&trace_timer_, &QTimer::timeout, this, [this] { TracePosition(); });
}

frmMain::~frmMain() {
  Movie_.SetEvents(nullptr);
  parts_.engine.Video().SetPictureListener(nullptr);
  parts_.engine.Video().SetFirstPictureListener(nullptr);
}

void frmMain::ConnectPanel() {
  MainPanel& panel = view_.Panel();
  for (int index = 0; index < kButtons; ++index) {
    SmartButton& button = panel.Button(index);
    connect(&button, &SmartButton::clicked, this, [this, index] { BUtton_Click(index); });
    button.on_double_click = [this, index] { transport_.Button_DblClick(index); };
  }
  panel.on_menu = [this] { transport_.BottonPanel_MouseUp(kRightButton); };
  panel.on_disp_click = [this](int index) { disp_events_.Disp_Click(index); };
  panel.on_disp_mouse_down = [this] { disp_events_.Disp_MouseDown(kRightButton); };
  panel.on_disp_move = [this](int index) { disp_events_.Disp_MouseMove(index); };
  for (const SliderKind kind :
       {SliderKind::kPosition, SliderKind::kVolume, SliderKind::kRate, SliderKind::kBalance}) {
    panel.Slider(kind).setToolTip(QTr(kSliderDesign[static_cast<std::size_t>(kind)].tool_tip));
  }
  // Keys belong to the form from the start, and whatever was clicked last.
  setFocus();
  panel.Slider(SliderKind::kPosition).got_focus = [this] { setFocus(); };
}

void frmMain::Form_Load() {
  // A stray call while the program goes down must not bring the form up again.
  if (session_.Unloading) return;
  run_once_.Clear();
  first_run_ = !FileExists(parts_.folder.AppFolder() + "config.dat");
  wishes_.AskLater(kWishesMilliseconds);
  const QIcon icon = ProgramIcon(ArtFrom(parts_.folder)("kestrelview"));
  QGuiApplication::setWindowIcon(icon);
  screen_.Tray().SetIcon(icon);
  ReadFileSupport();
  hand_over_.ReadCommandLine(parts_.start_up.CommandLine());
  // A box can stand long enough for the login session to end meanwhile.
  if (session_.Unloading) return;
  if (hand_over_.HaveCommandFile()) parts_.engine.Expect(hand_over_.CommandFile());
  session_.StartingUp = true;
  setWindowTitle(QString::fromStdString(screen_.Caption().WindowBaseCaption()));
  screen_.CollapsePanel();
  sliders_.Configure();
  sliders_.Connect();
  const int plugins = visual_.ScanPlugins();
  settings_life_.LoadSettings();
  if (session_.Unloading) return;
  if (plugins == 0) settings_.UseExternalPlugin = FromBool(false);
  BuildMenu();
  RefreshColors();
  transport_.SetRepeatButtonColor();
  settings_life_.UpdateSettings();
  icons_.LoadIcons(session_.SupportedExtensions);
  visual_.Hosting().LoadExternalPlugin();
  if (!parts_.start_up.IsDebugMode()) StartWheelHook();
  screen_.PlaceWindow();
  if (settings_.PlaylistFile.empty()) {
    settings_.PlaylistFile = parts_.folder.AppFolder() + "playlist.m3u";
    settings_.PlaylistIndex = 0;
    settings_.PreviousItemPosition = kNoPosition;
  }
  playlist_.Files().LoadPlaylist(settings_.PlaylistFile);
  if (session_.Unloading) return;
  if (IsOn(settings_.PlaylistVisible)) ShowPlaylistWindow();
  if (IsOn(settings_.VumeterVisible)) visual_.ShowMeterWindow();
  view_.SetLogoVisible(true);
  if (IsOn(settings_.FullScreen)) {
    // Left in full screen: the toggle goes back there, and until it has the panel is shown.
    settings_.FullScreen = FromBool(false);
    SetPanelVisible(true);
    ToggleFullScreen();
  } else {
    ScaleMovie(false);
  }
  visual_.MainMeter().SetStyle(settings_.PluginStyle);
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
  desktop_.Begin();
  if (parts_.trace.Active()) trace_timer_.start(1000);
}

void frmMain::ReadFileSupport() {
  const FileSupport support = kv::ReadFileSupport(parts_.folder.DataFile("filesupport.dat"));
  session_.SupportedExtensions = support.SupportedExtensions;
  session_.OpenFilter = TranslatedFilter(support.OpenFilter);
}

void frmMain::RefreshColors() {
  forms_.SetColors();
  medium_.SetColors(QApplication::palette());
  view_.ApplyColors(settings_.Colors);
  menu_.ApplyColors(settings_.Colors);
  list_windows_.UpdateColors();
  cpu_graph_.SetColors(settings_.Colors);
  visual_.SetColors(QApplication::palette());
}

// Colours are asked for once, before the user has had a chance to choose any.
void frmMain::FollowWishes(const DesktopWishes& wishes) {
  screen_.SetReducedMotion(wishes.reduced_motion);
  if (wishes.high_contrast && std::exchange(first_run_, false)) forms_.UseScheme(kHighContrast);
}

void frmMain::OnTimer(MainTimer timer) {
  struct Row {
    MainTimer timer;
    bool one_shot;
    void (*run)(frmMain&);
  };
  static constexpr std::array kRows = {
      Row{MainTimer::PosTimer, false, [](frmMain& form) { form.PosTick(); }},
      Row{MainTimer::LinkExeTimer, false, [](frmMain& form) { form.hand_over_.OnLinkExeTimer(); }},
      Row{MainTimer::OpeningCMDDelay, false,
          [](frmMain& form) { form.hand_over_.OnOpeningCMDDelay(); }},
      Row{MainTimer::LoadLast, true,
          [](frmMain& form) { form.form_life_.OnLoadLast(form.hand_over_.HaveCommandFile()); }},
      Row{MainTimer::UnloadTimer, true, [](frmMain& form) { form.close(); }},
      Row{MainTimer::UpdateDispTimer, true, [](frmMain& form) { form.UpdateFileDisp(""); }},
      Row{MainTimer::tmrCheckBuffering, false,
          [](frmMain& form) { form.status_.OnCheckBuffering(); }},
      Row{MainTimer::tmrCheckBufferingTimeout, false,
          [](frmMain& form) { form.status_.OnCheckBufferingTimeout(); }},
      Row{MainTimer::FadeInTimer, false, [](frmMain& form) { form.FadeIn(); }},
      Row{MainTimer::PlayFromPlaylist, false,
          [](frmMain& form) { form.playlist_.Steps().OnPlayFromPlaylist(); }},
      Row{MainTimer::DemoTimer, false, [](frmMain& form) { form.visual_.Hosting().DemoTick(); }},
      Row{MainTimer::mnuTimer, false, [](frmMain& form) { form.commands_.OnmnuTimer(); }},
  };
  if (screen_.OnTimer(timer)) return;
  const auto* const row = std::find_if(kRows.begin(), kRows.end(),
                                       [timer](const Row& each) { return each.timer == timer; });
  if (row == kRows.end()) return;
  if (row->one_shot) timers_[timer].SetEnabled(false);
  row->run(*this);
}

// A player that has nothing open is woken less often: there is nothing to follow.
void frmMain::PosTick() {
  tick_.PosTimer();
  Timer& timer = timers_[MainTimer::PosTimer];
  const int interval = Movie_.DS_IsOpen() ? kFollowMilliseconds : kIdleMilliseconds;
  if (timer.Interval() != interval) timer.SetInterval(interval);
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

void frmMain::SaveAtOnce() {
  if (session_.Unloading) return;  // is being saved already
  settings_life_.SaveAtOnce();
  if (IsOn(settings_.SavePlaylist)) SavePlaylist(settings_.PlaylistFile);
}

void frmMain::Form_Unload() {
  if (!windows_.TaskBarVisible()) windows_.SetTaskBarVisible(true);
  SetCursor(true, true);
  if (!parts_.start_up.IsDebugMode()) UndockWindow();
  parts_.trace.Write("quit");
  // Not quit(), which does nothing while the form is still being loaded, and asks every window.
  QCoreApplication::exit();
}

void frmMain::resizeEvent(QResizeEvent* event) {
  screen_.Resized(shown_ && event->spontaneous());
}

void frmMain::moveEvent(QMoveEvent* /*event*/) {
  if (shown_) screen_.Moved();
}

void frmMain::changeEvent(QEvent* event) {
  if (event->type() == QEvent::WindowStateChange && shown_) Form_Resize();
  // What was held is let go where we do not hear of it.
  if (event->type() == QEvent::ActivationChange && !isActiveWindow()) keys_.ReleaseAll();
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

// The mouse brings the menu by rules of its own; this is the Menu key.
void frmMain::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard) PopUpMenuAtWindow();
}

void frmMain::keyPressEvent(QKeyEvent* event) {
  const KeyStroke key = KeyStrokeOf(*event);
  if (!keys_.Form_KeyDown(key.key_code, key.shift)) QWidget::keyPressEvent(event);
}

void frmMain::keyReleaseEvent(QKeyEvent* event) {
  if (event->isAutoRepeat()) return;
  const std::int16_t code = KeyStrokeOf(*event).key_code;
  wheel_.KeyUp(code);
  keys_.Form_KeyUp(code);
  QWidget::keyReleaseEvent(event);
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
  medium_.Drag(*event);
}

void frmMain::dragMoveEvent(QDragMoveEvent* event) {
  medium_.Drag(*event);
}

void frmMain::dropEvent(QDropEvent* event) {
  medium_.Drop(*event);
}

// The wheel over another window of the program, where nothing there has a use for it.
bool frmMain::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Wheel || watched == this)
    return QWidget::eventFilter(watched, event);
  wheelEvent(static_cast<QWheelEvent*>(event));
  return true;
}

void frmMain::Adopt(QWidget& window) {
  window.installEventFilter(this);
  if (!parts_.start_up.IsDebugMode()) docking_.DockWindow(window);
}

void frmMain::mousePressEvent(QMouseEvent* event) {
  screen_.MousePressed(event->button());
}

// --- What leads to the rooms' classes

void frmMain::OpenFile(const std::string& File, OpenArguments arguments) {
  opener_.OpenFile(File, arguments);
  if (parts_.trace.Active()) {
    parts_.trace.Write(Movie_.DS_CurFile().empty() ? "failed" : "open", settings_.CurrentFile);
  }
}

void frmMain::OpenCommandFile(const std::string& path) {
  OpenFromOutside(path, false);
}

void frmMain::OpenForProgram(const std::string& path) {
  OpenFromOutside(path, true);
}

void frmMain::OpenFromOutside(const std::string& path, bool unattended) {
  const std::string before = settings_.CurrentFile;
  settings_.CurrentFile = path;
  OpenFile(path, {.StartPlaying = true, .KeepWindowSize = true, .Unattended = unattended});
  // A list that the user does not want, or that is empty, leaves the medium in hand.
  if (settings_.CurrentFile == path && IsM3UFile(path) && !session_.Unloading) {
    settings_.CurrentFile = before;
    UpdateFileDisp("");
  }
  // Another medium may have come in its place.
  if (IsOn(settings_.AutoZoom) && settings_.CurrentFile == path) ScaleWindow(1.0F);
}

void frmMain::AbandonOpen() {
  opener_.AbandonOpen();
  playlist_.Abandon();
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

void frmMain::ShowRepeatMode() {
  transport_.SetRepeatButtonColor();
}

void frmMain::LoadColorInfo() {
  forms_.LoadColorInfo();
}

void frmMain::SetBusyPointer(bool busy) {
  windows_.SetBusyPointer(busy);
}

void frmMain::HideForm() {
  hide();
}

void frmMain::StopAllTimers() {
  timers_.StopAllTimers();
  trace_timer_.stop();
  screen_.StopTimers();
  icons_.Stop();
  desktop_.End();
}

void frmMain::RegisterRestart() {
  run_once_.Register(QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString());
}

void frmMain::SaveSettings() {
  visual_.EndSession();  // nothing, if the windows have been unloaded
  settings_life_.SaveSettings(parts_.start_up.CommandLine());
}

}  // namespace kv
