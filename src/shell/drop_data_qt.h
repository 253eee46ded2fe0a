// Drops as the toolkit brings them. Interface thread only.
#pragma once

#include "shell/drops.h"

#include <QDropEvent>
#include <QMimeData>

namespace kv {

// Takes any drag as a copy, so that the source keeps what it has; what nobody can use is told when
// it is dropped. Refuses what may only be moved. For dragEnterEvent, dragMoveEvent and dropEvent,
// which answers true when there is something to read.
bool AcceptDrop(QDropEvent& event);

DropData ReadDropData(const QMimeData& data);

}  // namespace kv
