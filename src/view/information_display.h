// What the main window tells of the medium: counter, title and the two lines of data.
//
// Reads the session, the settings and the file; writes labels. Owned by `frmMain`; interface thread
// only. A failing read shows as absent.
#pragma once

#include "state/session.h"
#include "state/settings.h"
#include "system/text_platform.h"

#include <functional>
#include <string>
#include <string_view>

namespace kv {

// The labels `Disp`, by their index.
enum DispLabel { kDispCounter = 0, kDispDataLine1 = 1, kDispDataLine2 = 2, kDispTitle = 5 };

class InformationView {
 public:
  virtual ~InformationView() = default;
  // `text` as the user is to read it; an "&" is just that.
  virtual void SetDisp(DispLabel label, const std::string& text) = 0;
  virtual void SetDispUnderline(DispLabel label, bool underline) = 0;
  virtual void SetTrayTip(const std::string& text) = 0;
  // Width in pixels of a title as it would be drawn.
  virtual int PanelTextWidth(std::string_view text) const = 0;
  virtual int PanelScaleWidth() const = 0;
  virtual int TitleLeft() const = 0;
  // Pixels of `Display` that a path may take.
  virtual int DisplayPathWidth() const = 0;
};

class InformationDisplay {
 public:
  // `playlist_count` answers the number of entries of the list.
  InformationDisplay(InformationView& view, const Settings& settings, const Session& session,
                     const TextPlatform& text, std::function<int()> playlist_count);

  // A text is shown as the title and nothing else changes; an empty one recomputes counter, title
  // and tray tip.
  void UpdateFileDisp(const std::string& text);

  // Recomputes the two lines of data.
  void UpdateFileDataDisplay();

 private:
  void ShowLocalFile();
  void ShowUrl();
  std::string Shortened(const std::string& long_title) const;

  InformationView& view_;
  const Settings& settings_;
  const Session& session_;
  const TextPlatform& text_;
  std::function<int()> playlist_count_;
};

// The host part of a URL.
std::string GetDomain(const std::string& url);

}  // namespace kv
