// A spectrum analyser: bars from the low notes to the high, with peaks that linger and fall, over
// their reflection.
#pragma once

#include <QtPlugin>

#include <kestrelview/visual_plugin.h>
#include <kestrelview/visual_tools.h>
#include <vector>

class SpectrumAnalyser : public QObject {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID KESTRELVIEW_VISUAL_IID)
  Q_CLASSINFO("ProgId", "Kestrelview.Spectrum")
  Q_PROPERTY(QString p_author MEMBER author_ CONSTANT)
  Q_PROPERTY(QString p_authorurl MEMBER author_url_ CONSTANT)
  Q_PROPERTY(QString p_description MEMBER description_ CONSTANT)
  Q_PROPERTY(bool p_hasconfig MEMBER has_config_ CONSTANT)
  Q_PROPERTY(QString p_pluginname MEMBER plugin_name_ CONSTANT)
  Q_PROPERTY(int p_type MEMBER type_ CONSTANT)
  Q_PROPERTY(QString p_version MEMBER version_ CONSTANT)
  Q_PROPERTY(QImage PictureScreenShoot READ Preview CONSTANT)

 public:
  Q_INVOKABLE SpectrumAnalyser() = default;

  QImage Preview() const;

  Q_INVOKABLE int GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2,
                             float width, float height, int& foreground, int& background,
                             int& peak);

 private:
  struct Bar {
    float level = 0.0F;  // 0.0 to 1.0
    float peak = 0.0F;
    float hold = 0.0F;   // seconds until the peak falls
    float speed = 0.0F;  // of the falling peak, heights per second
  };
  struct Colors {
    QColor foreground;
    QColor background;
    QColor peak;
  };

  static constexpr std::size_t kWindow = 1024;

  const QString author_ = QStringLiteral("Ostrand");
  const QString author_url_ = QStringLiteral("https://kestrelview.org/");
  const QString description_ = QStringLiteral(
      "What is in the sound, from the low notes on the left to the high ones on the right. A bar "
      "spans 60 decibels; its peak stays for a moment and then falls.");
  const bool has_config_ = false;
  const QString plugin_name_ = QStringLiteral("Spectrum");
  const int type_ = 0;
  const QString version_ = QStringLiteral("1.0");

  void Follow(float seconds);
  float BandLevel(float low, float high) const;
  static void Paint(const kestrelview::VisualSurface& surface, const Colors& colors,
                    const std::vector<Bar>& bars);

  kestrelview::History<kWindow> history_;
  kestrelview::Spectrum<kWindow> spectrum_;
  kestrelview::FrameClock clock_;
  std::vector<Bar> bars_;
};
