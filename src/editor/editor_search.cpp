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

// From the unit beside the current one to the list's end, then once around to the current one.
void Editor::Find(int direction) {
  const TextSearch search = MakeSearch();
  const UnitList& units = selection_.List();
  const int count = selection_.Count();
  for (int step = 1; step <= count; ++step) {
    const int index = (selection_.Index() + direction * step + count) % count;
    if (!search.FoundIn(units[static_cast<std::size_t>(index)]->ocrText)) continue;
    GoTo(index);
    return;
  }
  frontEnd_.Beep();
}

void Editor::FocusCharacters() {
  frontEnd_.FocusCharacters();
}

void Editor::SwitchClut() {
  UseAutomaticClut(!look_.automaticClut);
}

}  // namespace quillomar
