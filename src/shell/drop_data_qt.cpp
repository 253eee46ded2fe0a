#include "shell/drop_data_qt.h"

#include <string>

namespace kv {
namespace {

constexpr const char* kUriList = "text/uri-list";

}  // namespace

bool AcceptDrop(QDropEvent& event) {
  for (const Qt::DropAction action : {Qt::CopyAction, Qt::LinkAction}) {
    if (!event.possibleActions().testFlag(action)) continue;
    event.setDropAction(action);
    event.accept();
    return true;
  }
  event.ignore();
  return false;
}

DropData ReadDropData(const QMimeData& data) {
  // The bytes themselves: the toolkit's own list of addresses spoils names that are not UTF-8.
  const bool has_uris = data.hasFormat(QLatin1String(kUriList));
  const QByteArray bytes = data.data(QLatin1String(kUriList));
  const std::string_view uris(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  const bool has_text = data.hasText();
  const std::string characters = has_text ? data.text().toStdString() : std::string();
  const std::string_view text(characters);
  return ReadDropData(has_uris ? &uris : nullptr, has_text ? &text : nullptr);
}

}  // namespace kv
