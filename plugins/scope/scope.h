// An oscilloscope with a phosphor screen: the trace stands still on a rising slope, is bright where
// the beam is slow, and glows on when it has moved.
#pragma once

#include <QtPlugin>

#include <kestrelview/visual_plugin.h>
#include <kestrelview/visual_tools.h>
#include <vector>

class Oscilloscope : public QObject {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID KESTRELVIEW_VISUAL_IID)
  Q_CLASSINFO("ProgId", "Kestrelview.Scope")
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
  Q_INVOKABLE Oscilloscope() = default;

  QImage Preview() const;

  Q_INVOKABLE int GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2,
                             float width, float height, int& foreground, int& background,
                             int& peak);

 private:
  const QString author_ = QStringLiteral("Ostrand");
  const QString author_url_ = QStringLiteral("https://kestrelview.org/");
  const QString description_ = QStringLiteral(
      "The wave itself, as on the green screen of a laboratory instrument: the trace waits for a "
      "rising slope, so that a steady tone stands still, and the phosphor glows on behind it.");
  const bool has_config_ = false;
  const QString plugin_name_ = QStringLiteral("Oscilloscope");
  const int type_ = 0;
  const QString version_ = QStringLiteral("1.0");
  const bool no_auto_redraw_ = true;  // every pixel is ours

  // The screen: how much each of its points glows.
  class Phosphor {
   public:
    void Resize(int width, int height);
    void Decay(float seconds);
    // The beam goes down or up column `x` from `from` to `to`, in lines; `thickness` in lines.
    void Stroke(int x, float from, float to, float thickness);
    void Show(const kestrelview::VisualSurface& surface, const QColor& foreground,
              const QColor& background, const QColor& peak) const;

   private:
    int width_ = 0;
    int height_ = 0;
    std::vector<std::uint16_t> glow_;
  };

  static constexpr std::size_t kWindow = 1024;
  static constexpr std::size_t kShown = 300;  // samples across the screen

  static std::size_t Trigger(const kestrelview::History<kWindow>& history);
  void Follow(float seconds);
  static void Trace(Phosphor& phosphor, const kestrelview::History<kWindow>& history, float gain,
                    const kestrelview::VisualSurface& surface);

  kestrelview::History<kWindow> history_;
  kestrelview::FrameClock clock_;
  Phosphor phosphor_;
  float gain_ = 1.0F;
};
