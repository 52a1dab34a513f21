#pragma once

#include <string>
#include <vector>

#include "editor/session.h"
#include "journal/journal_folder.h"

namespace quillomar {

[[nodiscard]] JournalFolder JournalsOf(Session& session);

// What is to become of changes that were interrupted, given by their journals: the user is asked of
// each, or only warned, as the session says. None of their files may be open. Returns whether all
// of it is decided.
[[nodiscard]] bool SettleJournals(Session& session, const std::vector<std::string>& left);

}  // namespace quillomar
