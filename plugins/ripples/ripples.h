// Rain on a pond: the beats of the music fall in as drops, and so does what the mouse touches.
#pragma once

#include "pond.h"
#include "ripples_dialog.h"

#include <QPointF>
#include <QPointer>
#include <QtPlugin>

#include <array>
#include <kestrelview/visual_plugin.h>
#include <kestrelview/visual_tools.h>
#include <optional>

class Ripples : public QObject {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID KESTRELVIEW_VISUAL_IID)
  Q_CLASSINFO("ProgId", "Kestrelview.Ripples")
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
  Q_INVOKABLE Ripples() : options_(LoadRipplesOptions()) {}
  ~Ripples() override { closedialog(); }

  QImage Preview() const;

  Q_INVOKABLE int GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2,
                             float width, float height, int& foreground, int& background,
                             int& peak);
  Q_INVOKABLE int OpenConfigDialog();
  Q_INVOKABLE void closedialog();
  Q_INVOKABLE void DoubleClick();
  Q_INVOKABLE void MouseDown(short& button, short& shift, float& x, float& y);
  Q_INVOKABLE void MouseMove(short& button, short& shift, float& x, float& y);
  Q_INVOKABLE void MouseUp(short& button, short& shift, float& x, float& y);

 private:
  static constexpr std::size_t kWindow = 512;
  using Ramp = std::array<QRgb, 256>;

  struct Colors {
    QColor foreground;
    QColor background;
    QColor peak;
  };

  void Rain(float seconds);
  float Chance();
  void MakeRamp(const Colors& colors);
  void Paint(const kestrelview::VisualSurface& surface);

  const QString author_ = QStringLiteral("Ostrand");
  const QString author_url_ = QStringLiteral("https://kestrelview.org/");
  const QString description_ = QStringLiteral(
      "A pond at dusk. Each beat falls in as a drop, the deep ones large, the high ones small. In "
      "the separate window the mouse stirs the water, and a double click calms it. How much it "
      "rains, how long waves run and the colours of the water are up to you.");
  const bool has_config_ = true;
  const QString plugin_name_ = QStringLiteral("Ripples");
  const int type_ = 0;
  const QString version_ = QStringLiteral("1.0");
  const bool no_auto_redraw_ = true;  // every pixel is ours

  RipplesOptions options_;
  QPointer<RipplesDialog> dialog_;

  kestrelview::History<kWindow> history_;
  kestrelview::Spectrum<kWindow> spectrum_;
  kestrelview::FrameClock clock_;
  Pond pond_;
  Ramp ramp_{};
  float cell_ = 1.0F;  // pixels
  float debt_ = 0.0F;  // seconds of the water's time that are still to be stepped
  float time_ = 0.0F;  // seconds
  std::uint32_t dice_ = 7;
  std::array<float, 3> average_{};  // of the three parts of the music
  std::array<float, 3> rest_{};     // seconds until a part may fall again
  std::optional<QPointF> finger_;   // where the pressed mouse was, pixels
};
