// Finding subpictures by their recognised text.

#include "editor/editor.h"

namespace quillomar {

void Editor::FilterByCharacters(std::optional<std::string> characters) {
  selection_.filter.characters = std::move(characters);
  RefillList();
}

void Editor::SetSearchText(const std::string& text) {
  searchText_ = text;
  if (selection_.filter.search) FilterBySearchText(true);
}

void Editor::FilterBySearchText(bool on) {
  selection_.filter.search.reset();
  if (on) selection_.filter.search.emplace(MakeSearch());
  RefillList();
}

TextSearch Editor::MakeSearch() const {
  return {searchText_, session_.preferences.ocrCaseSensitive != 0};
}

void Editor::FindPrevious() {
  Find(-1);
}

void Editor::FindNext() {
  Find(1);
}

// From the unit beside the current one to the list's end; then once over the whole list.
void Editor::Find(int direction) {
  const TextSearch search = MakeSearch();
  const UnitList& units = selection_.List();
  const auto foundFrom = [&](int index) {
    while (index >= 0 && index < selection_.Count() &&
           !search.FoundIn(units[static_cast<std::size_t>(index)]->ocrText)) {
      index += direction;
    }
    return index;
  };
  const auto inList = [&](int index) { return index >= 0 && index < selection_.Count(); };
  int found = foundFrom(selection_.Index() + direction);
  if (!inList(found)) found = foundFrom(direction > 0 ? 0 : selection_.Count() - 1);
  if (inList(found)) {
    GoTo(found);
  } else {
    frontEnd_.Beep();
  }
}

void Editor::FocusCharacters() {
  frontEnd_.FocusCharacters();
}

void Editor::SwitchClut() {
  UseAutomaticClut(!look_.automaticClut);
}

}  // namespace quillomar
