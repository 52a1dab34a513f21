#pragma once

#include <optional>
#include <string>

#include "dvd/sector.h"
#include "editor/document.h"
#include "editor/text_search.h"

namespace quillomar {

// Which units the list shows.
struct ListFilter {
  std::optional<int> stream;  // 0 to 31; nothing: all streams
  std::optional<Vcid> vcid;   // nothing: all
  bool modifiedOnly = false;
  bool forcedOnly = false;
  std::optional<std::string> characters = {};  // one of these in the recognised text; empty: all
  std::optional<TextSearch> search = {};

  [[nodiscard]] bool Passes(const SubpictureUnit& unit) const;
};

// The filtered list and the place of the current unit in it.
class Selection {
 public:
  // Filters anew; the current unit stays current when it still passes, else the one that took its
  // place, or the last.
  void Refill(const UnitList& all);
  void Clear();

  ListFilter filter;

  [[nodiscard]] const UnitList& List() const { return list_; }
  [[nodiscard]] int Count() const { return static_cast<int>(list_.size()); }
  // Index in the list, from 0; meaningless without a current unit.
  [[nodiscard]] int Index() const { return index_; }
  // Clamped to the list. Returns whether another unit became current.
  bool SetIndex(int index);
  // Empty when the list is.
  [[nodiscard]] UnitPointer Current() const;

 private:
  UnitList list_;
  int index_ = 0;
};

}  // namespace quillomar
