#include "playlist/frm_playlist.h"

#include "controls/smart_menu_style_qt.h"
#include "playlist/playlist_files.h"
#include "playlist/window_place_qt.h"
#include "system/paths.h"
#include "system/text_platform_qt.h"
#include "system/translation_qt.h"

#include <QAction>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr int kTwips = 15;  // to a pixel
constexpr QSize kFirstSize(760, 440);
constexpr QSize kSmallestSize(240, 160);
constexpr int kPanelMilliseconds = 100;
constexpr int kGeometryMilliseconds = 1000;
constexpr int kResizeMilliseconds = 10;
constexpr int kStatusMargin = 8;
constexpr const char* kLastFolder = "LastPlaylistAddFolder";
constexpr const char* kAdding = TrLater("Adding files...");

}  // namespace

struct frmPlaylist::CommandRow {
  ListCommand command;
  void (frmPlaylist::*run)();
};

const frmPlaylist::CommandRow frmPlaylist::kCommands[] = {
    {ListCommand::kAdd, &frmPlaylist::AddFiles},
    {ListCommand::kAutoNext, &frmPlaylist::AutoNext},
    {ListCommand::kClear, &frmPlaylist::ClearList},
    {ListCommand::kCopy, &frmPlaylist::CopySel},
    {ListCommand::kCopyFileName, &frmPlaylist::CopyFileName},
    {ListCommand::kDeleteSel, &frmPlaylist::DelSel},
    {ListCommand::kDown, &frmPlaylist::MoveFilesDown},
    {ListCommand::kFind, &frmPlaylist::Find},
    {ListCommand::kFindNext, &frmPlaylist::FindNext},
    {ListCommand::kFindPlaying, &frmPlaylist::FindPlaying},
    {ListCommand::kOpen, &frmPlaylist::OpenList},
    {ListCommand::kOpenSourceFolder, &frmPlaylist::OpenSourceFolder},
    {ListCommand::kPlay, &frmPlaylist::pList_DblClick},
    {ListCommand::kQuickFind, &frmPlaylist::QuickFind},
    {ListCommand::kRandomize, &frmPlaylist::RList},
    {ListCommand::kRedraw, &frmPlaylist::Redraw},
    {ListCommand::kRemoveSel, &frmPlaylist::RemoveSel},
    {ListCommand::kSave, &frmPlaylist::SaveList},
    {ListCommand::kSaveAs, &frmPlaylist::SaveAs},
    {ListCommand::kSelectAll, &frmPlaylist::SelectAll},
    {ListCommand::kShowDetails, &frmPlaylist::ShowDetails},
    {ListCommand::kSort, &frmPlaylist::SList},
    {ListCommand::kUnload, &frmPlaylist::Unload},
    {ListCommand::kUp, &frmPlaylist::MoveFilesUp},
};

frmPlaylist::Working::~Working() {
  if (--form_.working_ == 0 && form_.Closing_) form_.deleteLater();
}

frmPlaylist::frmPlaylist(PlaylistWindowHost& host, Parts parts, QWidget* owner)
    : QWidget(owner, Qt::Window),
      host_(host),
      parts_(std::move(parts)),
      model_(parts_.rows, this),
      Toolbar_(new PlaylistToolbar(parts_.art, this)),
      pList_(new PlaylistView(parts_.rows, model_, parts_.art, this)),
      StatusBar1_(new QWidget(this)),
      panel1_(new TextLine(TextLine::Shorten::kEnd, StatusBar1_)),
      panel2_(new TextLine(TextLine::Shorten::kEnd, StatusBar1_)),
      menu_style_(new SmartMenuStyle),
      mnu_(new QMenu(this)),
      PanelTimer_(parts_.timers.MakeTimer(TimerKind::kOrdinary, kPanelMilliseconds,
                                          [this] { PanelTimer(); })),
      Timer2_(parts_.timers.MakeTimer(TimerKind::kOrdinary, kGeometryMilliseconds,
                                      [this] { Timer2(); })),
      ResizeTimer_(parts_.timers.MakeTimer(TimerKind::kOrdinary, kResizeMilliseconds,
                                           [this] { ResizeTimer(); })) {
  setObjectName(QStringLiteral("frmPlaylist"));
  setWindowTitle(QTr("Kestrelview - Playlist"));
  setAttribute(Qt::WA_QuitOnClose, false);
  setMinimumSize(kSmallestSize);
  setFocusProxy(pList_);
  setTabOrder(pList_, Toolbar_);
  MakeMenu();
  MakeKeys();
  MakeStatusBar();
  connect(&model_, &RowsModel::StatusTextChanged, this,
          [this](const QString& text) { panel1_->SetText(FromQString(text)); });
  panel1_->SetText(parts_.rows.Status());
  connect(Toolbar_, &PlaylistToolbar::Clicked, this, &frmPlaylist::Run);
  connect(pList_, &PlaylistView::RowDoubleClicked, this, [this] { Run(ListCommand::kPlay); });
  connect(pList_, &PlaylistView::MenuWanted, this, &frmPlaylist::PopUpMenu);
  connect(pList_, &PlaylistView::HeaderClicked, this, [this](int column) {
    const Working working(*this);
    parts_.order.ColumnClick(column);
  });
  // When the drop is over, so that the program it came from does not wait for a walk of folders.
  connect(pList_, &PlaylistView::MediaDropped, this, [this](const DroppedMedia& media) {
    QMetaObject::invokeMethod(
        this, [this, media] { OLEDragDrop(media); }, Qt::QueuedConnection);
  });
}

frmPlaylist::~frmPlaylist() {
  if (loaded_ && !Closing_) Form_Unload(false);
}

void frmPlaylist::MakeMenu() {
  menu_style_->setParent(this);
  mnu_->setObjectName(QStringLiteral("mnu"));
  mnu_->setStyle(menu_style_);
  for (const ListMenuEntry& entry : kListMenu) {
    if (entry.name.empty()) {
      mnu_->addSeparator();
      continue;
    }
    QAction* const action = mnu_->addAction(QTr(entry.caption));
    action->setObjectName(ToQString(entry.name));
    // Shown, and nothing more: the keys are the form's.
    const QKeySequence keys(ToQString(KeysOf(entry.command)), QKeySequence::PortableText);
    if (!keys.isEmpty()) {
      action->setText(action->text() + QLatin1Char('\t') + keys.toString(QKeySequence::NativeText));
    }
    action->setData(static_cast<int>(entry.needs));
    connect(action, &QAction::triggered, this, [this, command = entry.command] { Run(command); });
  }
}

void frmPlaylist::MakeKeys() {
  for (const ListKey& key : kListKeys) {
    auto* const action = new QAction(this);
    action->setShortcut(QKeySequence(ToQString(key.keys), QKeySequence::PortableText));
    action->setAutoRepeat(key.repeats);
    connect(action, &QAction::triggered, this, [this, command = key.command] { Run(command); });
    addAction(action);
  }
}

void frmPlaylist::MakeStatusBar() {
  StatusBar1_->setObjectName(QStringLiteral("StatusBar1"));
  panel1_->setObjectName(QStringLiteral("Panel1"));
  panel1_->setAccessibleName(QTr("List"));
  panel2_->setObjectName(QStringLiteral("Panel2"));
  panel2_->setAccessibleName(QTr("Player"));
  auto* const panels = new QHBoxLayout(StatusBar1_);
  panels->setContentsMargins(kStatusMargin, 4, kStatusMargin, 4);
  panels->setSpacing(2 * kStatusMargin);
  panels->addWidget(panel1_, 1);
  panels->addWidget(panel2_, 2);
}

void frmPlaylist::PopUpMenu(QPoint position) {
  const bool rows = parts_.rows.RowCount() > 0;
  const bool selection = pList_->SelectedRow() > 0;
  for (QAction* const action : mnu_->actions()) {
    const auto needs = static_cast<ListMenuNeeds>(action->data().toInt());
    action->setEnabled(needs == ListMenuNeeds::kNothing ||
                       (needs == ListMenuNeeds::kRows ? rows : selection));
  }
  mnu_->popup(position);
}

void frmPlaylist::Form_Load() {
  loaded_ = true;
  parts_.session.PlaylistWindowLoaded = true;
  parts_.settings.PlaylistVisible = FromBool(true);
  UpdateToolbarButtons();
  UpdateColors();
  parts_.rows.Form_Load();
  pList_->LoadColumns(parts_.settings);
  RestoreGeometry();
  show();
  pList_->setFocus();
  ResizeTimer_->SetEnabled(true);
}

void frmPlaylist::Form_Unload(bool by_user) {
  if (Closing_ || !loaded_) return;
  Closing_ = true;
  parts_.session.PlaylistWindowLoaded = false;
  if (by_user) parts_.settings.PlaylistVisible = FromBool(false);
  for (Timer* const timer : {PanelTimer_.get(), Timer2_.get(), ResizeTimer_.get()}) {
    timer->SetEnabled(false);
  }
  parts_.rows.Form_Unload();
  model_.Detach();
  mnu_->close();
  if (search_dialog_ != nullptr) search_dialog_->reject();
  if (scanning_ != nullptr) {
    parts_.session.ScanAbort = true;
    scanning_->hide();
  }
  hide();
  if (working_ == 0) deleteLater();
}

void frmPlaylist::RestoreGeometry() {
  const Settings& s = parts_.settings;
  if (s.PlaylistWidth <= 0) {
    const QRect place = PlaceBeside(parentWidget(), kFirstSize);
    resize(place.size());
    move(place.topLeft());
    return;
  }
  const QRect stored(s.PlaylistLeft / kTwips, s.PlaylistTop / kTwips, s.PlaylistWidth / kTwips,
                     s.PlaylistHeight / kTwips);
  const QRect place = OnScreen(QRect(stored.topLeft(), stored.size().expandedTo(kSmallestSize)));
  resize(place.size());
  move(place.topLeft());
}

void frmPlaylist::Focus() {
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
  pList_->setFocus();
}

void frmPlaylist::UpdateToolbarButtons() {
  Toolbar_->SetPressed(ListCommand::kShowDetails, IsOn(parts_.settings.PlaylistShowDetails));
  Toolbar_->SetPressed(ListCommand::kAutoNext, IsOn(parts_.settings.AutoNext));
}

void frmPlaylist::UpdateColors() {
  const PlaylistLook look = LookFrom(parts_.settings.Colors, QPalette());
  setPalette(PaletteOf(look));
  Toolbar_->SetLook(look);
  pList_->SetLook(look);
  menu_style_->SetColors(MenuColorsFrom(parts_.settings.Colors, QPalette()));
  update();
}

void frmPlaylist::LayOut() {
  const int bar = Toolbar_->sizeHint().height();
  const int status = StatusBar1_->sizeHint().height();
  Toolbar_->setGeometry(0, 0, width(), bar);
  pList_->setGeometry(0, bar, width(), std::max(height() - bar - status, 0));
  StatusBar1_->setGeometry(0, height() - status, width(), status);
}

void frmPlaylist::resizeEvent(QResizeEvent* /*event*/) {
  if (!isMinimized()) LayOut();
}

void frmPlaylist::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Window));
}

void frmPlaylist::ResizeTimer() {
  ResizeTimer_->SetEnabled(false);
  LayOut();
}

void frmPlaylist::WatchTheScreen() {
  const bool seen = loaded_ && !Closing_ && isVisible() && !isMinimized();
  PanelTimer_->SetEnabled(seen);
  Timer2_->SetEnabled(seen);
}

void frmPlaylist::showEvent(QShowEvent* /*event*/) {
  Toolbar_->DrawFaces();
  connect(windowHandle(), &QWindow::screenChanged, Toolbar_, &PlaylistToolbar::DrawFaces,
          Qt::UniqueConnection);
  WatchTheScreen();
}

void frmPlaylist::hideEvent(QHideEvent* /*event*/) {
  WatchTheScreen();
}

void frmPlaylist::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) WatchTheScreen();
  if (event->type() == QEvent::FontChange) LayOut();
}

void frmPlaylist::closeEvent(QCloseEvent* event) {
  Form_Unload(event->spontaneous());
  event->accept();
}

void frmPlaylist::PanelTimer() {
  panel2_->SetText(host_.MainDisplayText());
  UpdateToolbarButtons();
  parts_.rows.MarkPlaying();
}

void frmPlaylist::Timer2() {
  if (isMinimized() || isMaximized() || isFullScreen()) return;
  Settings& s = parts_.settings;
  s.PlaylistLeft = x() * kTwips;
  s.PlaylistTop = y() * kTwips;
  s.PlaylistWidth = width() * kTwips;
  s.PlaylistHeight = height() * kTwips;
  pList_->StoreColumns(s);
}

void frmPlaylist::Run(ListCommand command) {
  if (Closing_) return;
  const Working working(*this);
  const auto* const row =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [command](const CommandRow& entry) { return entry.command == command; });
  if (row != std::end(kCommands)) (this->*row->run)();
}

void frmPlaylist::AddFiles() {
  if (scanning_ != nullptr) return;  // one walk at a time
  const std::string start = parts_.registry.RegReadValue(RegistryRoot::kCurrentUser,
                                                         PlaylistFiles::kGeneralKey, kLastFolder);
  const std::string folder =
      parts_.dialogs.BrowseDirectorysOnly(Tr("Add folder to playlist:"), start);
  if (!folder.empty() && !Closing_ && scanning_ == nullptr) AddFolder(folder);
  host_.UpdateFileDisp("");
}

void frmPlaylist::AddFolder(const std::string& folder) {
  LockWindowRedraw(true);
  setCursor(Qt::BusyCursor);
  parts_.rows.SetStatus(Tr(kAdding));
  parts_.session.ScanAbort = false;
  scanning_ = std::make_unique<frmScanning>(parts_.session, this);
  scanning_->show();
  parts_.pump.PumpOnce();
  if (!Closing_) host_.AddFolderToList(folder);
  parts_.session.ScanAbort = false;
  scanning_.reset();
  LockWindowRedraw(false);
  unsetCursor();
  if (!Closing_) parts_.rows.UpdateNumberOfitemsStatus();
  parts_.registry.RegWriteValue(RegistryRoot::kCurrentUser, PlaylistFiles::kGeneralKey, kLastFolder,
                                kRegistryText, folder);
}

void frmPlaylist::OLEDragDrop(const DroppedMedia& media) {
  if (Closing_) return;
  const Working working(*this);
  LockWindowRedraw(true);
  parts_.rows.SetStatus(Tr(kAdding));
  parts_.pump.PumpOnce();
  if (!Closing_ && !media.files.empty()) host_.AddFilesOrFolders(media.files);
  for (const std::string& address : media.addresses) {
    if (Closing_ || parts_.playlist.Count() >= kPlaylistLimit) break;
    host_.AddFileToList(address);
  }
  LockWindowRedraw(false);
  if (!Closing_) parts_.rows.UpdateNumberOfitemsStatus();
}

void frmPlaylist::AutoNext() {
  parts_.settings.AutoNext = FromBool(Toolbar_->Pressed(ListCommand::kAutoNext));
}

void frmPlaylist::ShowDetails() {
  parts_.details.ShowDetails(Toolbar_->Pressed(ListCommand::kShowDetails));
}

void frmPlaylist::SaveList() {
  if (host_.SaveList() && !Closing_) UpdateToolbarButtons();
}

void frmPlaylist::Unload() {
  if (scanning_ != nullptr) {
    scanning_->Command1_Click();  // Esc may come before that window has the keyboard
  } else {
    Form_Unload(true);
  }
}

void frmPlaylist::pList_DblClick() {
  if (const int row = pList_->SelectedRow(); row > 0) host_.PlayPlaylistFile(row);
}

void frmPlaylist::CopySel() {
  std::vector<std::string> files;
  for (const int row : parts_.rows.SelectedRows()) files.push_back(parts_.playlist.Item(row));
  if (!files.empty()) host_.CopyFiles(files);
  host_.UpdateFileDisp("");
}

void frmPlaylist::CopyFileName() {
  const int row = pList_->SelectedRow();
  if (row > 0) QGuiApplication::clipboard()->setText(ToQString(parts_.playlist.Item(row)));
}

void frmPlaylist::OpenSourceFolder() {
  const int row = pList_->SelectedRow();
  if (row == 0) return;
  const std::string folder = FolderOfPath(parts_.playlist.Item(row));
  if (FolderExists(folder)) parts_.services.ShellOpenDocument(folder, "", "", "open");
}

void frmPlaylist::ShowSearchDialog() {
  if (Closing_) return;
  const Working working(*this);
  frmSearch dialog(parts_.search, this);
  search_dialog_ = &dialog;
  dialog.exec();
}

void frmPlaylist::ShowSearchVis() {
  if (!Closing_) search_vis_ = std::make_unique<frmSearchVis>(pList_);
}

void frmPlaylist::UnloadSearchVis() {
  search_vis_.reset();
}

}  // namespace kv
