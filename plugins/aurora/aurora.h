// Northern lights over a ridge: four curtains, each moved by its part of the music, and a kestrel
// that hovers before them.
#pragma once

#include "night.h"

#include <QtPlugin>

#include <array>
#include <kestrelview/visual_plugin.h>
#include <kestrelview/visual_tools.h>
#include <vector>

class Aurora : public QObject {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID KESTRELVIEW_VISUAL_IID)
  Q_CLASSINFO("ProgId", "Kestrelview.Aurora")
  Q_PROPERTY(QString p_author MEMBER author_ CONSTANT)
  Q_PROPERTY(QString p_authorurl MEMBER author_url_ CONSTANT)
  Q_PROPERTY(QString p_description MEMBER description_ CONSTANT)
  Q_PROPERTY(bool p_hasconfig MEMBER has_config_ CONSTANT)
  Q_PROPERTY(QString p_pluginname MEMBER plugin_name_ CONSTANT)
  Q_PROPERTY(int p_type MEMBER type_ CONSTANT)
  Q_PROPERTY(QString p_version MEMBER version_ CONSTANT)
  Q_PROPERTY(QImage PictureScreenShoot READ Preview CONSTANT)
  Q_PROPERTY(bool NoAutoRedraw MEMBER no_auto_redraw_ CONSTANT)

 public:
  Q_INVOKABLE Aurora();

  QImage Preview() const;

  Q_INVOKABLE int GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2,
                             float width, float height, int& foreground, int& background,
                             int& peak);
  // The lights flare up for a new medium.
  Q_INVOKABLE void MediaChanged() { surge_ = 1.0F; }

 private:
  static constexpr std::size_t kWindow = 512;
  static constexpr std::size_t kCurtains = 4;

  struct Colors {
    QColor foreground;
    QColor background;
    QColor peak;
  };
  // Light in one cell of the sky, 0.0 to about 255.0 a channel.
  struct Light {
    float red = 0.0F;
    float green = 0.0F;
    float blue = 0.0F;

    Light operator+(const Light& other) const {
      return {red + other.red, green + other.green, blue + other.blue};
    }
    Light operator-(const Light& other) const { return *this + other * -1.0F; }
    Light operator*(float factor) const { return {red * factor, green * factor, blue * factor}; }
  };
  // One line of one cell, see `Packed`: the first pixel's light, what the next one's has more, and
  // what the line below has more of both.
  struct Span {
    int first = 0;
    int end = 0;
    std::int64_t light = 0;
    std::int64_t light_down = 0;
    std::int64_t step = 0;
    std::int64_t step_down = 0;
  };

  void Listen(float seconds);
  void Render(const kestrelview::VisualSurface& surface, const Colors& colors);
  void LightSky(const Colors& colors);
  void HangCurtain(std::size_t curtain, const Light& low, const Light& high);
  void PaintSky(const kestrelview::VisualSurface& surface);
  void MeasureSpans(int width, float cell, int row, int y);
  void PaintKestrel(const kestrelview::VisualSurface& surface, const QColor& color) const;

  const QString author_ = QStringLiteral("Ostrand");
  const QString author_url_ = QStringLiteral("https://kestrelview.org/");
  const QString description_ = QStringLiteral(
      "Northern lights over a wooded ridge. Low notes raise the nearest curtain, high ones the "
      "farthest and the stars; a beat lets all of them flare up. In the colours of the scheme.");
  const bool has_config_ = false;
  const QString plugin_name_ = QStringLiteral("Aurora");
  const int type_ = 0;
  const QString version_ = QStringLiteral("1.0");
  const bool no_auto_redraw_ = true;  // every pixel is ours, and not every frame is painted

  kestrelview::History<kWindow> history_;
  kestrelview::Spectrum<kWindow> spectrum_;
  kestrelview::FrameClock clock_;
  std::array<float, kCurtains> level_{};  // of each part of the music, 0.0 to 1.0
  float average_ = 0.0F;                  // of the low notes over a second or so
  float surge_ = 0.0F;                    // 1.0 at a beat, then fading
  float waiting_ = 1.0F;                  // seconds since the last picture
  float time_ = 0.0F;                     // seconds, faster while it is loud

  Night night_;
  int columns_ = 0;  // of the sky's cells
  int rows_ = 0;
  std::vector<Light> sky_;
  std::vector<Span> spans_;
  std::vector<std::int64_t> grain_;  // packed, so that dark gradients show no bands
};
