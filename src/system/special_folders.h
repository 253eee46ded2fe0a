// Where this user's folders are: home, temporary files, desktop, documents and so on.
//
// Read from the environment and from the desktop's own list (xdg-user-dirs) at each call; none of
// the folders need exist. Every answer ends in "/". Any thread.
#pragma once

#include <string>

namespace kv {

// $HOME, else what the user database says; "/" when neither knows.
std::string HomeFolder();

// $TMPDIR when it is a folder, else "/tmp/".
std::string GetTempFolder();

// The folders go by the numbers that they have always been asked for by (CSIDL).
inline constexpr int kSpecialDesktop = 0;
inline constexpr int kSpecialPersonal = 5;  // documents
inline constexpr int kSpecialStartup = 7;   // what starts with the session
inline constexpr int kSpecialMyMusic = 13;
inline constexpr int kSpecialMyVideo = 14;
inline constexpr int kSpecialDesktopDirectory = 16;
inline constexpr int kSpecialTemplates = 21;
inline constexpr int kSpecialAppData = 26;        // $XDG_CONFIG_HOME
inline constexpr int kSpecialLocalAppData = 28;   // $XDG_DATA_HOME
inline constexpr int kSpecialInternetCache = 32;  // $XDG_CACHE_HOME
inline constexpr int kSpecialMyPictures = 39;
inline constexpr int kSpecialProfile = 40;  // home

// One of the folders above; empty for any other number.
std::string GetSpecialFolder(int folder_id);

}  // namespace kv
