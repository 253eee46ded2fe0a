#include "system/name_tests.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(NameTests, WhatCanBePlayed) {
  constexpr const char* kSupported = "*.mp3;*.WAV;*.m3u";
  struct Case {
    const char* path;
    const char* supported;
    bool playable;
  };
  const Case cases[] = {
      {"/m/song.mp3", kSupported, true},
      {"/m/SONG.Mp3", kSupported, true},
      {"/m/noise.wav", kSupported, true},
      {"/m/song.mp", kSupported, true},  // a part of ".mp3"
      {"/m/song.ogg", kSupported, false},
      {"/m/README", kSupported, true},  // no extension: nothing to look for
      {"/m/README", "", true},
      {"README", kSupported, false},  // a bare name is its own extension
      {"mms://host/live", "", true},
      {"HTTPS://host/live", "", true},
      {"rtsp://host/live", kSupported, false},
      {"xhttp://host/a.ogg", kSupported, false},
  };
  for (const Case& c : cases) EXPECT_EQ(IsPlayableName(c.path, c.supported), c.playable) << c.path;
}

TEST(NameTests, KindsAndSchemes) {
  struct Case {
    const char* text;
    bool url;
    const char* scheme;
  };
  const Case cases[] = {
      {"http://h/a", true, "http://"},
      {"HTTPS://h/a", true, "https://"},
      {"ftp://h/a", true, "ftp://"},
      {"mms://h/a", true, "\\\\"},
      {"\\\\host\\a", false, "\\\\"},
      {"http:/h", false, "\\\\"},
      {"", false, "\\\\"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsUrl(c.text), c.url) << c.text;
    EXPECT_EQ(UrlSchemeOf(c.text), c.scheme) << c.text;
  }
  for (const char* path : {"/a.asf", "/a.ASX", "/a.wax"}) EXPECT_TRUE(IsAsfFile(path)) << path;
  EXPECT_FALSE(IsAsfFile("/a.asxx"));
  EXPECT_FALSE(IsAsfFile("/a.as"));
  EXPECT_TRUE(IsM3UFile("C:\\LIST.M3U"));
  EXPECT_FALSE(IsM3UFile("/list.m3u8"));
}

}  // namespace
}  // namespace kv
