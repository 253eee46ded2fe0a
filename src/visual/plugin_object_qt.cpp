#include "visual/plugin_object_qt.h"

#include "system/ascii_text.h"
#include "system/text_platform_qt.h"
#include "visual/meter_surface.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QJsonObject>
#include <QMetaMethod>
#include <QMetaObject>
#include <QObject>
#include <QPluginLoader>
#include <QPointer>
#include <QVariant>

#include <algorithm>
#include <array>
#include <cstddef>
#include <kestrelview/visual_plugin.h>
#include <limits>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kv {
namespace {

// What the meter hands over is what the contract describes.
static_assert(std::is_standard_layout_v<MeterSurface> &&
              sizeof(MeterSurface) == sizeof(kestrelview::VisualSurface) &&
              offsetof(MeterSurface, width) == offsetof(kestrelview::VisualSurface, width) &&
              offsetof(MeterSurface, height) == offsetof(kestrelview::VisualSurface, height) &&
              offsetof(MeterSurface, stride) == offsetof(kestrelview::VisualSurface, stride) &&
              offsetof(MeterSurface, scale) == offsetof(kestrelview::VisualSurface, scale) &&
              offsetof(MeterSurface, pixels) == offsetof(kestrelview::VisualSurface, pixels));

constexpr qsizetype kLongestText = 4096;  // characters
constexpr int kLargestPicture = 4096;     // pixels on a side; a larger one is none
constexpr int kPictureShown = 640;        // a picture is made no larger than this

constexpr std::array<std::string_view, 9> kFrameTypes = {"QByteArray", "int", "int", "int", "float",
                                                         "float",      "int", "int", "int"};
constexpr std::array<std::string_view, 4> kMouseTypes = {"short", "short", "float", "float"};

// The type of a parameter, by value or by reference, under its plain name.
std::string_view PlainType(const QByteArray& name) {
  std::string_view type(name.constData(), static_cast<std::size_t>(name.size()));
  if (type.ends_with('&')) type.remove_suffix(1);
  if (type == "qint32") return "int";
  if (type == "qint16") return "short";
  return type;
}

bool Takes(const QMetaMethod& method, std::span<const std::string_view> types) {
  const QList<QByteArray> given = method.parameterTypes();
  return static_cast<std::size_t>(given.size()) == types.size() &&
         std::equal(
             types.begin(), types.end(), given.begin(),
             [](std::string_view type, const QByteArray& name) { return PlainType(name) == type; });
}

// Index of the method of that name and those types; -1 for none.
int FindMethod(const QObject& object, std::string_view name,
               std::span<const std::string_view> types) {
  const QMetaObject& meta = *object.metaObject();
  for (int index = meta.methodCount() - 1; index >= 0; --index) {
    const QMetaMethod method = meta.method(index);
    if (method.methodType() == QMetaMethod::Signal ||
        method.name() != QByteArrayView(name.data(), static_cast<qsizetype>(name.size()))) {
      continue;
    }
    if (Takes(method, types)) return index;
  }
  return -1;
}

class PluginObjectQt : public PluginObject {
 public:
  explicit PluginObjectQt(std::unique_ptr<QObject> object)
      : object_(object.release()), frame_method_(FindMethod(*object_, "GetVuMeter", kFrameTypes)) {}
  PluginObjectQt(const PluginObjectQt&) = delete;
  PluginObjectQt& operator=(const PluginObjectQt&) = delete;
  ~PluginObjectQt() override { delete object_.data(); }

  std::optional<std::string> ReadText(std::string_view member) override {
    const QVariant value = Read(member);
    if (!value.canConvert<QString>()) return std::nullopt;
    return FromQString(value.toString().left(kLongestText));
  }

  std::optional<bool> ReadFlag(std::string_view member) override {
    const QVariant value = Read(member);
    if (!value.canConvert<bool>()) return std::nullopt;
    return value.toBool();
  }

  std::optional<std::int16_t> ReadNumber(std::string_view member) override {
    bool is_number = false;
    const int number = Read(member).toInt(&is_number);
    if (!is_number || number < std::numeric_limits<std::int16_t>::min() ||
        number > std::numeric_limits<std::int16_t>::max()) {
      return std::nullopt;
    }
    return static_cast<std::int16_t>(number);
  }

  std::shared_ptr<const PluginPicture> ReadPicture(std::string_view member) override {
    const QVariant value = Read(member);
    if (!value.canConvert<QImage>()) return nullptr;
    QImage image = value.value<QImage>();
    if (image.isNull() || std::max(image.width(), image.height()) > kLargestPicture) return nullptr;
    if (std::max(image.width(), image.height()) > kPictureShown) {
      image =
          image.scaled(kPictureShown, kPictureShown, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    image = image.convertToFormat(QImage::Format_ARGB32);
    auto picture = std::make_shared<PluginPicture>();
    picture->width = image.width();
    picture->height = image.height();
    picture->pixels.reserve(static_cast<std::size_t>(image.width()) *
                            static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y) {
      const auto* const line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
      picture->pixels.insert(picture->pixels.end(), line, line + image.width());
    }
    return picture;
  }

  void Call(std::string_view member) override {
    if (object_ == nullptr) return;
    std::array<void*, 1> arguments = {nullptr};
    Invoke(FindMethod(*object_, member, {}), arguments.data());
  }

  void CallMouse(std::string_view member, PluginMouse& mouse) override {
    if (object_ == nullptr) return;
    std::array<void*, 5> arguments = {nullptr, &mouse.Button, &mouse.Shift, &mouse.X, &mouse.Y};
    Invoke(FindMethod(*object_, member, kMouseTypes), arguments.data());
  }

  void GetVuMeter(const PluginFrame& frame) override {
    QByteArray samples(reinterpret_cast<const char*>(frame.Samples.data()),
                       static_cast<qsizetype>(frame.Samples.size()));
    std::int32_t surface1 = frame.Surface1;
    std::int32_t surface2 = frame.Surface2;
    float width = frame.Width;
    float height = frame.Height;
    std::array<void*, 10> arguments = {
        nullptr, &samples, &frame.Count,      &surface1,         &surface2,
        &width,  &height,  &frame.Foreground, &frame.Background, &frame.Peak};
    Invoke(frame_method_, arguments.data());
  }

 private:
  // `arguments` begins with the place of the result.
  void Invoke(int method, void** arguments) {
    if (object_ == nullptr || method < 0) return;
    try {
      QMetaObject::metacall(object_, QMetaObject::InvokeMetaMethod, method, arguments);
    } catch (...) {  // costs this call and nothing else
    }
  }

  // A property, or a method without arguments; invalid when there is neither.
  QVariant Read(std::string_view member) {
    if (object_ == nullptr) return {};
    try {
      QVariant property = object_->property(std::string(member).c_str());
      if (property.isValid()) return property;
      const int method = FindMethod(*object_, member, {});
      if (method < 0) return {};
      QVariant value(object_->metaObject()->method(method).returnMetaType());
      if (!value.isValid()) return {};
      std::array<void*, 1> arguments = {value.data()};
      QMetaObject::metacall(object_, QMetaObject::InvokeMetaMethod, method, arguments.data());
      return value;
    } catch (...) {
      return {};
    }
  }

  QPointer<QObject> object_;  // it may end itself
  int frame_method_;
};

}  // namespace

std::shared_ptr<PluginObject> WrapPluginObject(std::unique_ptr<QObject> object) {
  return std::make_shared<PluginObjectQt>(std::move(object));
}

PluginObjectsQt::PluginObjectsQt(std::vector<PluginLibrary> libraries,
                                 const std::string& app_folder)
    : libraries_(std::move(libraries)) {
  QCoreApplication::instance()->setProperty("kestrelviewFolder",
                                            QFile::decodeName(app_folder.c_str()));
}

// The loaders go without unloading: objects may outlive this one.
PluginObjectsQt::~PluginObjectsQt() = default;

QObject* PluginObjectsQt::RootOf(const PluginLibrary& library) {
  const std::string path = library.Folder + library.File;
  std::unique_ptr<QPluginLoader>& loader = loaders_[path];
  if (!loader) loader = std::make_unique<QPluginLoader>(QFile::decodeName(path.c_str()));
  // Read from the file: what is no visualisation is never run.
  if (loader->metaData().value(QLatin1String("IID")) != QLatin1String(KESTRELVIEW_VISUAL_IID)) {
    return nullptr;
  }
  return loader->instance();
}

std::shared_ptr<PluginObject> PluginObjectsQt::CreateObject(const std::string& ProgId) {
  for (const PluginLibrary& library : libraries_) {
    if (!EqualsIgnoringCase(library.ProgId, ProgId)) continue;
    try {
      const QObject* const root = RootOf(library);
      if (root == nullptr) continue;
      const QMetaObject& meta = *root->metaObject();
      const int info = meta.indexOfClassInfo("ProgId");
      if (info < 0 || !EqualsIgnoringCase(meta.classInfo(info).value(), ProgId)) continue;
      std::unique_ptr<QObject> object(meta.newInstance());
      if (object) return WrapPluginObject(std::move(object));
    } catch (...) {  // thrown by a constructor: no object
    }
  }
  return nullptr;
}

}  // namespace kv
