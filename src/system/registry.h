// Named values that outlive the process, kept under keys as the registry keeps them.
//
// The store is one INI file in which each key is a section "ROOT\Key\Sub". Keys separate by "\";
// keys and value names ignore case; the empty value name is the key's default value. Every call
// reads the file anew and every change is saved before it returns. Interface thread only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

enum class RegistryRoot : std::uint32_t {
  kClassesRoot = 0x80000000,
  kCurrentUser = 0x80000001,
  kLocalMachine = 0x80000002,
  kUsers = 0x80000003,
};

inline constexpr std::int32_t kRegistrySuccess = 0;
inline constexpr std::int32_t kRegistryNotFound = 2;
inline constexpr std::int32_t kRegistryDenied = 5;
inline constexpr std::int32_t kRegistryInvalid = 87;

inline constexpr int kRegistryText = 1;     // REG_SZ
inline constexpr int kRegistryBinary = 3;   // REG_BINARY
inline constexpr int kRegistryInteger = 4;  // REG_DWORD

class Registry {
 public:
  // `file` is the store's path; it is created by the first write.
  explicit Registry(std::string file);

  // The value as text, empty on any failure and for data above 2048 bytes. An integer comes with at
  // least three digits ("007"), binary data as pairs of hexadecimal digits, a text trimmed and cut
  // before its first NUL.
  std::string RegReadValue(RegistryRoot root, std::string_view key, std::string_view name) const;

  // Writes a value, creating its key and all keys above. Type 4 takes `data` as a decimal 32-bit
  // integer (kRegistryInvalid when it is none); every other type stores it as text.
  std::int32_t RegWriteValue(RegistryRoot root, std::string_view key, std::string_view name,
                             int type, std::string_view data);

  // Removes a key with its values. A key that has keys below it is refused: kRegistryDenied.
  std::int32_t RegRemoveKey(RegistryRoot root, std::string_view key);

  std::int32_t RegRemoveValue(RegistryRoot root, std::string_view key, std::string_view name);

 private:
  std::string file_;
};

}  // namespace kv
