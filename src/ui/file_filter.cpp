#include "ui/file_filter.h"

#include <QString>

namespace quillomar {

QStringList NameFilters(std::string_view filters) {
  const QStringList parts =
      QString::fromUtf8(filters.data(), static_cast<qsizetype>(filters.size())).split('|');
  QStringList result;
  for (qsizetype i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
    const QString pattern = "(" + parts[i + 1] + ")";
    result.append(parts[i].endsWith(pattern) ? parts[i] : parts[i] + " " + pattern);
  }
  return result;
}

QString SuffixOf(const QString& filter) {
  return filter.section("(*.", -1).section(')', 0, 0);
}

}  // namespace quillomar
