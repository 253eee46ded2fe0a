#include "playlist/text_line_accessible_qt.h"

#include "controls/accessible_qt.h"
#include "playlist/text_line.h"

#include <QAccessible>

namespace kv {
namespace {

QAccessibleInterface* MakeAccessible(const QString& /*class_name*/, QObject* object) {
  auto* const line = qobject_cast<TextLine*>(object);
  if (line == nullptr) return nullptr;
  return new AccessibleText(line, {[line] { return line->Whole(); }, {}, {}});
}

}  // namespace

void InstallTextLineAccessibility() {
  QAccessible::installFactory(&MakeAccessible);
}

}  // namespace kv
