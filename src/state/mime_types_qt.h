// The shared MIME database, read through the toolkit.
#pragma once

#include "state/file_types.h"

#include <QMimeDatabase>

namespace kv {

class MimeTypesQt : public MimeTypes {
 public:
  std::vector<std::string> TypesOf(const std::string& extension) const override;
  std::string Comment(const std::string& type) const override;
  // Has the system's own program do it, which ends by itself; nothing where it is missing.
  void Rebuild(const std::string& mime_folder) override;

 private:
  QMimeDatabase database_;
};

}  // namespace kv
