// Plug-ins as they really are: our own libraries, and an object that does all it can do wrong.
#include "visual/plugin_object_qt.h"

#include "support/temp_folder.h"
#include "visual/meter_surface.h"

#include <QImage>
#include <QObject>
#include <QVariant>

#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

namespace kv {

class HostilePlugin : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString p_author READ Throw)
  Q_PROPERTY(QImage PictureScreenShoot READ Huge)

 public:
  int painted = 0;
  int* deaths = nullptr;
  ~HostilePlugin() override {
    if (deaths != nullptr) ++*deaths;
  }

  QString Throw() const { throw std::runtime_error("no"); }
  QImage Huge() const { return {5000, 1, QImage::Format_RGB32}; }
  Q_INVOKABLE QString p_version() const { return QStringLiteral("2"); }
  Q_INVOKABLE int p_type() const { return std::numeric_limits<int>::max(); }
  Q_INVOKABLE void p_hasconfig() const {}
  Q_INVOKABLE void GetVuMeter(const QByteArray& samples, int count, int, int, float width, float,
                              int, int, int& peak) {
    ++painted;
    if (samples.size() == count && width > 0.0F) peak = 9;
    throw 5;
  }
  Q_INVOKABLE void MouseDown(int, int, double, double) { ++painted; }
  Q_INVOKABLE void MouseUp(short&, short, float&, float) { ++painted; }
  Q_INVOKABLE void DoubleClick() { delete this; }
};

namespace {

TEST(PluginObjectTest, SurvivesWhatAPluginDoesWrong) {
  auto hostile = std::make_unique<HostilePlugin>();
  HostilePlugin& plugin = *hostile;
  int deaths = 0;
  plugin.deaths = &deaths;
  const std::shared_ptr<PluginObject> object = WrapPluginObject(std::move(hostile));
  EXPECT_EQ(object->ReadText("p_author"), std::nullopt);
  EXPECT_EQ(object->ReadText("p_pluginname"), std::nullopt);
  EXPECT_EQ(object->ReadText("p_version"), "2");
  EXPECT_EQ(object->ReadNumber("p_type"), std::nullopt);
  EXPECT_EQ(object->ReadFlag("p_hasconfig"), std::nullopt);
  EXPECT_EQ(object->ReadPicture("PictureScreenShoot"), nullptr);

  std::vector<std::uint8_t> samples(10, 128);
  std::int32_t count = 10;
  std::int32_t color = 0;
  std::int32_t peak = 0;
  object->GetVuMeter({samples, count, 1, 2, 3.0F, 4.0F, color, color, peak});
  EXPECT_EQ(plugin.painted, 1);
  EXPECT_EQ(peak, 9);
  PluginMouse mouse;
  object->CallMouse("MouseDown", mouse);  // of other types
  EXPECT_EQ(plugin.painted, 1);
  object->CallMouse("MouseUp", mouse);
  EXPECT_EQ(plugin.painted, 2);
  object->Call("NotThere");
  object->Call("DoubleClick");
  EXPECT_EQ(deaths, 1);
  object->Call("DoubleClick");
  EXPECT_EQ(object->ReadText("p_version"), std::nullopt);
}

// Reads, paints two sizes with and without sound, and lets the mouse do all it can.
void Exercise(PluginObject& object) {
  EXPECT_NE(object.ReadText("p_pluginname").value_or(""), "");
  EXPECT_TRUE(object.ReadFlag("p_hasconfig").has_value());
  EXPECT_EQ(object.ReadNumber("p_type"), 0);
  const auto picture = object.ReadPicture("PictureScreenShoot");
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->width, 320);
  for (const int size : {1, 300}) {
    QImage image(size, size, QImage::Format_RGB32);
    image.fill(0x123456);
    const QImage before = image.copy();
    auto* const pixels = reinterpret_cast<std::uint32_t*>(image.bits());
    MeterSurface surface{size, size, size * 4, 1.0F, pixels};
    const auto side = static_cast<float>(size);
    std::int32_t foreground = 0xFFFFC0;
    std::int32_t background = 0;
    std::int32_t peak = 0x3C9AFF;
    for (int frame = 0; frame < 30; ++frame) {
      std::vector<std::uint8_t> samples(frame % 3 == 0 ? 0U : 276U);
      for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<std::uint8_t>(i % 32 * 8);
      }
      auto count = static_cast<std::int32_t>(samples.size());
      object.GetVuMeter({samples, count, SurfaceHandle1Of(&surface), SurfaceHandle2Of(&surface),
                         side, side, foreground, background, peak});
    }
    EXPECT_NE(image, before);
  }
  PluginMouse mouse{1, 0, -50.0F, 9000.0F};
  object.CallMouse("MouseMove", mouse);
  object.Call("DoubleClick");
}

TEST(OwnPluginsTest, LoadAndPaint) {
  const TempFolder temp;
  PluginObjectsQt objects(ListPluginLibraries({KV_TEST_PLUGINS "/"}), temp.Path());
  ASSERT_EQ(objects.Libraries().size(), 4U);
  for (const PluginLibrary& library : objects.Libraries()) {
    SCOPED_TRACE(library.File);
    const std::shared_ptr<PluginObject> object = objects.CreateObject(library.ProgId);
    ASSERT_NE(object, nullptr);
    Exercise(*object);
  }
}

TEST(OwnPluginsTest, WhatIsNoPluginGivesNoObject) {
  const TempFolder temp;
  temp.Write("text.so", "no library at all");
  std::filesystem::copy_file(KV_TEST_PLUGINS "/scope.so", temp.Path("scope.so"));
  PluginObjectsQt objects({{temp.Path(), "text.so", "Text"},
                           {temp.Path(), "missing.so", "Missing"},
                           {temp.Path(), "scope.so", "Other.Name"},
                           {temp.Path(), "missing.so", "Kestrelview.Scope"},
                           {temp.Path(), "scope.so", "kestrelview.SCOPE"}},
                          temp.Path());
  for (const char* const id : {"Text", "Missing", "Other.Name", "", "Not.Listed"}) {
    EXPECT_EQ(objects.CreateObject(id), nullptr) << id;
  }
  const auto first = objects.CreateObject("Kestrelview.Scope");  // from the second that has it
  const auto second = objects.CreateObject("Kestrelview.Scope");
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
}

}  // namespace
}  // namespace kv

#include "plugin_object_qt_test.moc"
