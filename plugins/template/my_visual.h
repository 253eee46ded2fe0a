// A visualisation to begin with: a disc that swells with the sound.
#pragma once

#include <QtPlugin>

#include <kestrelview/visual_plugin.h>
#include <kestrelview/visual_tools.h>

class MyVisual : public QObject {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID KESTRELVIEW_VISUAL_IID)
  // The name in plugins.ini; yours, and unlike all others.
  Q_CLASSINFO("ProgId", "Yours.MyVisual")
  Q_PROPERTY(QString p_author MEMBER author_ CONSTANT)
  Q_PROPERTY(QString p_authorurl MEMBER author_url_ CONSTANT)
  Q_PROPERTY(QString p_description MEMBER description_ CONSTANT)
  Q_PROPERTY(bool p_hasconfig MEMBER has_config_ CONSTANT)
  Q_PROPERTY(QString p_pluginname MEMBER plugin_name_ CONSTANT)
  Q_PROPERTY(int p_type MEMBER type_ CONSTANT)
  Q_PROPERTY(QString p_version MEMBER version_ CONSTANT)
  Q_PROPERTY(QImage PictureScreenShoot READ Preview CONSTANT)

 public:
  Q_INVOKABLE MyVisual() = default;

  // Shown in the manager; 320 x 180 is good.
  QImage Preview() const;

  Q_INVOKABLE int GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2,
                             float width, float height, int& foreground, int& background,
                             int& peak);

 private:
  static void Paint(QImage& image, QSizeF size, const QColor& color, double level);

  const QString author_ = QStringLiteral("You");
  const QString author_url_ = QStringLiteral("https://example.org/");
  const QString description_ = QStringLiteral("A disc that swells with the sound.");
  const bool has_config_ = false;
  const QString plugin_name_ = QStringLiteral("My visual");
  const int type_ = 0;
  const QString version_ = QStringLiteral("1.0");

  kestrelview::History<256> history_;
  kestrelview::FrameClock clock_;
  float level_ = 0.0F;  // 0.0 to 1.0
};
