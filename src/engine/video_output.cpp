#include "engine/video_output.h"

#include "engine/gl_renderer.h"
#include "engine/sw_renderer.h"

#include <QEvent>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLTextureBlitter>
#include <QOpenGLWidget>
#include <QPaintEvent>
#include <QPainter>

#include <array>
#include <filesystem>
#include <utility>

namespace kv {
namespace {

// Fills itself with the newest picture, and with black before the first.
class SwCanvas : public QWidget {
 public:
  SwCanvas(std::shared_ptr<SwRenderer> renderer, std::function<void()> on_painted, QWidget* parent)
      : QWidget(parent), renderer_(std::move(renderer)), on_painted_(std::move(on_painted)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    const QImage* picture = renderer_->TakePicture();
    if (picture == nullptr) {
      painter.fillRect(event->rect(), Qt::black);
      return;
    }
    // Normally the picture has just this size in device pixels; after a resize the old one is
    // stretched until the renderer has followed.
    painter.drawImage(QRectF(rect()), *picture);
    on_painted_();
  }

 private:
  std::shared_ptr<SwRenderer> renderer_;
  std::function<void()> on_painted_;
};

class GlCanvas : public QOpenGLWidget {
 public:
  GlCanvas(std::shared_ptr<GlRenderer> renderer, std::function<void()> on_painted, QWidget* parent)
      : QOpenGLWidget(parent), renderer_(std::move(renderer)), on_painted_(std::move(on_painted)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  ~GlCanvas() override {
    makeCurrent();
    blitter_.destroy();
    doneCurrent();
  }

 protected:
  void initializeGL() override { blitter_.create(); }
  void paintGL() override {
    QOpenGLFunctions* gl = context()->functions();
    gl->glClearColor(0.0F, 0.0F, 0.0F, 1.0F);
    gl->glClear(GL_COLOR_BUFFER_BIT);
    const unsigned texture = renderer_->TakeTexture();
    if (texture == 0) return;
    blitter_.bind();
    const QRect whole(QPoint(), size());
    blitter_.blit(texture, QOpenGLTextureBlitter::targetTransform(QRectF(whole), whole),
                  QOpenGLTextureBlitter::OriginTopLeft);
    blitter_.release();
    on_painted_();
  }

 private:
  std::shared_ptr<GlRenderer> renderer_;
  std::function<void()> on_painted_;
  QOpenGLTextureBlitter blitter_;
};

// Without a device node no driver can be hardware, and asking OpenGL would cost a tenth of a
// second.
bool HasGraphicsDevice() {
  std::error_code error;
  return std::filesystem::exists("/dev/dri", error) ||
         std::filesystem::exists("/dev/nvidiactl", error);
}

bool IsHardwareRenderer() {
  QOffscreenSurface surface;
  surface.create();
  QOpenGLContext context;
  if (!surface.isValid() || !context.create() || !context.makeCurrent(&surface)) return false;
  const auto* name = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
  const QString renderer = QString::fromUtf8(name).toLower();
  context.doneCurrent();
  constexpr std::array kSoftware = {"llvmpipe", "softpipe", "swrast", "software"};
  if (renderer.isEmpty()) return false;
  for (const char* software : kSoftware) {
    if (renderer.contains(QLatin1String(software))) return false;
  }
  return true;
}

}  // namespace

bool MayUseHardwareVideo() {
  const QByteArray wish = qgetenv("KESTRELVIEW_VIDEO");
  if (wish == "gl") return true;
  return wish != "sw" && HasGraphicsDevice();
}

VideoPath ChooseVideoPath() {
  const QByteArray wish = qgetenv("KESTRELVIEW_VIDEO");
  if (wish == "gl") return VideoPath::kHardware;
  if (wish == "sw") return VideoPath::kSoftware;
  if (QGuiApplication::platformName() == QLatin1String("offscreen") || !HasGraphicsDevice()) {
    return VideoPath::kSoftware;
  }
  return IsHardwareRenderer() ? VideoPath::kHardware : VideoPath::kSoftware;
}

VideoOutput::VideoOutput(VideoPath path) : path_(path) {}

VideoOutput::~VideoOutput() {
  delete canvas_;
  if (renderer_) renderer_->SetPictureListener(nullptr);
}

std::shared_ptr<VideoRenderer> VideoOutput::Attach(mpv_handle* core) {
  delete canvas_;
  if (renderer_) renderer_->SetPictureListener(nullptr);
  if (path_ == VideoPath::kHardware) {
    renderer_ = std::make_shared<GlRenderer>(core);
  } else {
    renderer_ = std::make_shared<SwRenderer>(core);
  }
  renderer_->SetPictureListener([this] {
    // Pictures that come while the interface is busy are one when it looks.
    if (told_.exchange(true)) return;
    QMetaObject::invokeMethod(
        this, [this] { ShowNewest(); }, Qt::QueuedConnection);
  });
  PlaceCanvas();
  return renderer_;
}

QWidget* VideoOutput::MakeCanvas(VideoSurface* owner) {
  auto on_painted = [this] { OnPainted(); };
  QWidget* canvas = nullptr;
  if (auto gl = std::dynamic_pointer_cast<GlRenderer>(renderer_)) {
    canvas = new GlCanvas(std::move(gl), on_painted, owner);
  } else if (auto sw = std::dynamic_pointer_cast<SwRenderer>(renderer_)) {
    canvas = new SwCanvas(std::move(sw), on_painted, owner);
  }
  return canvas;
}

void VideoOutput::PlaceCanvas() {
  VideoSurface* owner = surfaces_.Find(owner_);
  if (owner == nullptr || renderer_ == nullptr) {
    delete std::exchange(canvas_, nullptr);
    UpdateTargetSize();
    return;
  }
  if (canvas_.isNull() || canvas_->parentWidget() != owner) {
    delete canvas_;
    canvas_ = MakeCanvas(owner);
    canvas_->lower();
    canvas_->installEventFilter(this);
  }
  canvas_->setGeometry(rectangle_);
  canvas_->setVisible(shown_ && !rectangle_.isEmpty());
  UpdateTargetSize();
}

void VideoOutput::UpdateTargetSize() {
  if (!renderer_) return;
  QSize pixels;
  if (!canvas_.isNull() && canvas_->isVisible()) {
    const double scale = canvas_->devicePixelRatioF();
    pixels = QSize(qRound(canvas_->width() * scale), qRound(canvas_->height() * scale));
  }
  renderer_->SetTargetSize(pixels);
}

bool VideoOutput::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Resize:
      // The state that the event tells of holds only after it has been delivered.
      QMetaObject::invokeMethod(
          this, [this] { UpdateTargetSize(); }, Qt::QueuedConnection);
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void VideoOutput::SetOwner(WindowHandle owner) {
  if (owner == owner_ && !canvas_.isNull()) return;
  owner_ = owner;
  PlaceCanvas();
}

void VideoOutput::SetRectangle(const QRect& rectangle) {
  if (rectangle == rectangle_) return;
  rectangle_ = rectangle;
  PlaceCanvas();
}

void VideoOutput::Discard() {
  if (renderer_) renderer_->Discard();
}

void VideoOutput::SetShown(bool shown) {
  if (shown == shown_) return;
  shown_ = shown;
  awaiting_first_ = shown;
  if (!shown) Discard();
  PlaceCanvas();
}

bool VideoOutput::SetFullScreen(bool on) {
  VideoSurface* owner = surfaces_.Find(owner_);
  if (owner == nullptr) return false;
  owner->SetFullScreen(on);
  return true;
}

void VideoOutput::SetCursorHidden(bool hidden) {
  cursor_hidden_ = hidden;
  VideoSurface* owner = surfaces_.Find(owner_);
  if (owner == nullptr) return;
  if (hidden) {
    owner->setCursor(Qt::BlankCursor);
  } else {
    owner->unsetCursor();
  }
}

void VideoOutput::ShowNewest() {
  told_ = false;
  if (canvas_.isNull()) return;
  if (on_picture_) on_picture_();
  canvas_->repaint();  // an update would be painted by a timer, later and by one more turn
}

void VideoOutput::OnPainted() {
  ++painted_;
  UpdateTargetSize();  // the scale changes without an event when the window moves to another screen
  if (!awaiting_first_) return;
  awaiting_first_ = false;
  if (on_first_) on_first_();
}

}  // namespace kv
