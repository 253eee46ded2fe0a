// What the main window tells of the medium: counter, title and the two lines of data.
//
// Reads the session, the settings, the file and its tags; writes labels. What comes from outside is
// made one short readable line first, and user and password of an address are never shown. Owned by
// `frmMain`; interface thread only. A failing read shows as absent.
#pragma once

#include "playlist/tag_readers.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/shell_services.h"
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
                     const TextPlatform& text, std::function<int()> playlist_count,
                     const MediaReaders& readers);

  // A text is shown as the title and nothing else changes; an empty one recomputes counter, title
  // and tray tip.
  void UpdateFileDisp(const std::string& text);

  // Recomputes the two lines of data.
  void UpdateFileDataDisplay();

  // The present text of `Disp(1)`.
  const std::string& DataLine1() const { return data_line1_; }

 private:
  void ShowData(const std::string& line1, const std::string& line2);
  void ShowDataLine1(const std::string& text, bool underline);
  void ShowTags();
  void ShowSize(const std::string& extension);
  void ShowUrl();
  std::string TechnicalLine(const MpegHeaderInfo& header) const;
  std::string FileSizeText() const;
  std::string LongTitle() const;
  std::string Shortened(const std::string& long_title) const;

  InformationView& view_;
  const Settings& settings_;
  const Session& session_;
  const TextPlatform& text_;
  std::function<int()> playlist_count_;
  const MediaReaders& readers_;
  std::string data_line1_;
};

class DispHost {
 public:
  virtual ~DispHost() = default;
  // The form's hand over a label, or the ordinary pointer.
  virtual void SetDispPointer(DispLabel label, bool hand) = 0;
  virtual void BUtton_Click(int Index) = 0;
};

// The events of the labels. An address in the first line of data is a link.
class DispEvents {
 public:
  DispEvents(const InformationDisplay& information, DispHost& host, ShellServices& shell);

  void Disp_Click(int Index);
  void Disp_MouseMove(int Index);
  // `MouseButton`: 1 left, 2 right, which opens the menu.
  void Disp_MouseDown(int MouseButton);

 private:
  const InformationDisplay& information_;
  DispHost& host_;
  ShellServices& shell_;
  bool hand_ = false;
};

// The host part of a URL.
std::string GetDomain(const std::string& url);

}  // namespace kv
