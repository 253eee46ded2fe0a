// Readers that answer what a test sets, whatever the file; a tag only shows once it is loaded.
#pragma once

#include "playlist/tag_readers.h"

#include <memory>
#include <string>
#include <utility>

namespace kv {

struct FakeTag {
  bool has_tag = false;
  std::string title;
  std::string artist;
  std::string album;
  int genre = -1;
};

struct FakeReaders : MediaReaders {
  struct Header : MpegHeaderInfo {
    explicit Header(bool is_valid) : valid(is_valid) {}
    bool IsValid(const std::string&) override { return valid; }
    double Duration() const override { return 59.2; }
    int Bitrate() const override { return 128; }
    int Frequency() const override { return 44100; }
    std::string Mode() const override { return "Stereo"; }
    int HeaderValue() const override { return 251; }
    bool valid;
  };
  struct Reader : TagReader {
    explicit Reader(FakeTag content) : tag(std::move(content)) {}
    void Load(const std::string&) override { loaded = true; }
    bool HasTag() const override { return loaded && tag.has_tag; }
    std::string Title() const override { return tag.title; }
    void SetTitle(const std::string& title) override { tag.title = title; }
    std::string Artist() const override { return tag.artist; }
    std::string Album() const override { return tag.album; }
    int Genre() const override { return tag.genre; }
    std::string GenreName(int number) const override { return number == 17 ? "Rock" : ""; }
    FakeTag tag;
    bool loaded = false;
  };
  std::unique_ptr<MpegHeaderInfo> MakeMpegHeaderInfo() const override {
    return std::make_unique<Header>(header);
  }
  std::unique_ptr<TagReader> MakeTagReaderPrimary() const override {
    return std::make_unique<Reader>(v1);
  }
  std::unique_ptr<TagReader> MakeTagReaderSecondary() const override {
    return std::make_unique<Reader>(v2);
  }
  bool header = true;
  FakeTag v1;
  FakeTag v2;
};

}  // namespace kv
