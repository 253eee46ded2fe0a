// The record of a control's stored properties as a table: who saves or edits a control walks it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace kv {

// How a host shows a number.
enum class PropertyKind { kPlain, kColor };

template <class Record>
struct PropertyField {
  std::string_view key;  // under which it is stored
  std::variant<bool Record::*, std::int32_t Record::*, double Record::*, std::string Record::*>
      member;
  PropertyKind kind = PropertyKind::kPlain;
};

}  // namespace kv
