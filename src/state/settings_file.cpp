#include "state/settings_file.h"

#include "state/settings_fields.h"
#include "system/files.h"
#include "system/save_file.h"
#include "system/utf8.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

namespace kv {

namespace {

constexpr std::size_t kLongestText = std::numeric_limits<std::uint16_t>::max();

static_assert(kSettingsFields.size() == 85);
static_assert(std::numeric_limits<double>::is_iec559);

class Writer {
 public:
  template <class T>
  void operator()(T value) {
    if constexpr (std::is_same_v<T, double>) {
      Put(std::bit_cast<std::uint64_t>(value), sizeof(value));
    } else {
      Put(static_cast<std::uint64_t>(value), sizeof(value));
    }
  }

  void operator()(const std::string& text) {
    const std::string_view stored = Utf8Prefix(text, kLongestText);
    Put(stored.size(), sizeof(std::uint16_t));
    bytes_ += stored;
  }

  std::string Take() { return std::move(bytes_); }

 private:
  void Put(std::uint64_t bits, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) bytes_ += static_cast<char>(bits >> 8 * i & 0xFFU);
  }

  std::string bytes_;
};

class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  template <class T>
  void operator()(T& value) {
    std::uint64_t bits = 0;
    if (!Get(bits, sizeof(value))) return;
    if constexpr (std::is_same_v<T, double>) {
      value = std::bit_cast<double>(bits);
    } else {
      value = static_cast<T>(bits);
    }
  }

  void operator()(std::string& text) {
    std::uint64_t length = 0;
    if (!Get(length, sizeof(std::uint16_t))) return;
    if (length > rest_.size()) {
      whole_ = false;
      return;
    }
    text = rest_.substr(0, length);
    rest_.remove_prefix(length);
  }

  // False once something was missing; from there on nothing is read.
  bool Whole() const { return whole_; }

 private:
  bool Get(std::uint64_t& bits, std::size_t size) {
    whole_ = whole_ && size <= rest_.size();
    if (!whole_) return false;
    for (std::size_t i = 0; i < size; ++i) {
      bits |= std::uint64_t{static_cast<unsigned char>(rest_[i])} << 8 * i;
    }
    rest_.remove_prefix(size);
    return true;
  }

  std::string_view rest_;
  bool whole_ = true;
};

}  // namespace

bool SettingsFromBytes(std::string_view bytes, Settings& settings) {
  Reader reader(bytes);
  for (const SettingsField& field : kSettingsFields) {
    VisitField(settings, field, [&reader](auto& value) { reader(value); });
  }
  return reader.Whole();
}

std::string SettingsToBytes(const Settings& settings) {
  Writer writer;
  for (const SettingsField& field : kSettingsFields) {
    VisitField(settings, field, [&writer](const auto& value) { writer(value); });
  }
  return writer.Take();
}

bool ReadSettings(const std::string& path, Settings& settings) {
  std::string bytes;
  return ReadWholeFile(path, kMaxTextFileBytes, bytes) && SettingsFromBytes(bytes, settings);
}

bool WriteSettings(const std::string& path, const Settings& settings, std::string* error) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  if (fs::is_regular_file(path, ignored)) {
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add, ignored);
  }
  return SaveFileChecked(path, SettingsToBytes(settings), error);
}

}  // namespace kv
