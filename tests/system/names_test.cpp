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
      {"/m/noise.wav", kSupported, true},
      {"/m/song.mp", kSupported, true},  // a part of ".mp3"
      {"/m/song.ogg", kSupported, false},
      {"/m/README", kSupported, true},  // no extension: nothing to look for
      {"README", kSupported, false},    // a bare name is its own extension
      {"mms://host/live", "", true},
      {"HTTPS://host/live", "", true},
      {"xhttp://host/a.ogg", kSupported, false},
  };
  for (const Case& c : cases) EXPECT_EQ(IsPlayableName(c.path, c.supported), c.playable) << c.path;
}

TEST(NameTests, KindsAndSchemes) {
  EXPECT_TRUE(IsUrl("HTTPS://h/a"));
  EXPECT_FALSE(IsUrl("\\\\host\\a"));
  EXPECT_FALSE(IsUrl("http:/h"));
  EXPECT_TRUE(IsAsfFile("/a.ASX"));
  EXPECT_FALSE(IsAsfFile("/a.asxx"));
  EXPECT_TRUE(IsM3UFile("C:\\LIST.M3U"));
  EXPECT_FALSE(IsM3UFile("/list.m3u8"));
}

}  // namespace
}  // namespace kv
