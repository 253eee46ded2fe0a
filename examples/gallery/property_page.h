// A control's stored properties as editors, one row each; every edit is applied at once.
#pragma once

#include "controls/property_fields.h"

#include <QFormLayout>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace kv {

class PropertyPage : public QWidget {
 public:
  explicit PropertyPage(QWidget* parent = nullptr);

  // Rows for all `fields` of `record`; `apply` gets the whole record after each edit.
  template <class Record, class Fields>
  void Add(const Fields& fields, const Record& record, std::function<void(const Record&)> apply) {
    const auto edited = std::make_shared<Record>(record);
    for (const auto& field : fields) {
      std::visit(
          [&](auto member) {
            using Value = std::remove_reference_t<decltype((*edited).*member)>;
            const std::function<void(Value)> changed = [edited, member, apply](Value value) {
              (*edited).*member = std::move(value);
              apply(*edited);
            };
            AddRow(field.key, field.kind, (*edited).*member, changed);
          },
          field.member);
    }
  }

 private:
  void AddRow(std::string_view key, PropertyKind kind, bool value,
              std::function<void(bool)> changed);
  void AddRow(std::string_view key, PropertyKind kind, std::int32_t value,
              std::function<void(std::int32_t)> changed);
  void AddRow(std::string_view key, PropertyKind kind, double value,
              std::function<void(double)> changed);
  void AddRow(std::string_view key, PropertyKind kind, const std::string& value,
              std::function<void(std::string)> changed);
  void AddEditor(std::string_view key, QWidget* editor);

  QFormLayout* rows_;
};

}  // namespace kv
