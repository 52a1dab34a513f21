#pragma once

#include <QStringList>
#include <string_view>

namespace quillomar {

// A file dialog's filters from their one-line form: label and pattern by turns, each closed by a
// bar, the list by an empty label ("VOB Files (*.vob)|*.vob||"). A label that does not end in its
// pattern gets it added in parentheses.
[[nodiscard]] QStringList NameFilters(std::string_view filters);

// Extension, without its dot, of a filter's pattern: "vob" of "VOB Files (*.vob)".
[[nodiscard]] QString SuffixOf(const QString& filter);

}  // namespace quillomar
