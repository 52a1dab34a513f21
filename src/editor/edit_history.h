#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "dvd/cell_map.h"
#include "editor/last_modifications.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// A unit as everyone holds it: to be looked at. Who changes one opens it, which records the change.
using UnitPointer = std::shared_ptr<const SubpictureUnit>;
using UnitList = std::vector<UnitPointer>;
// The same as its owner holds it.
using OwnedUnit = std::shared_ptr<SubpictureUnit>;
using OwnedUnits = std::vector<OwnedUnit>;

// What was read from a unit's bitmap.
struct UnitText {
  std::vector<std::string> lines;
  std::vector<std::string> savedLines;
  std::vector<CharBox> boxes;
  int boxCount = 0;
  TextRoles roles;
  friend bool operator==(const UnitText&, const UnitText&) = default;
};

// One action of the user: what it changed, as it is on the other side of the step. Before an undo
// that is the state before the action, after it the state that a redo brings back.
struct EditStep {
  struct UnitChange {
    OwnedUnit unit;
    SpuState other;
    std::optional<UnitText> otherText;  // where the action changed that too
  };
  struct ClutChange {
    int clut = 0;  // index in the cell map
    YCrCbClut other{};
  };

  std::string name;
  LastModifications last;
  std::vector<UnitChange> units;
  std::vector<ClutChange> cluts;
  std::size_t bytes = 0;  // held by it

  // What it did and to what: "crop (subpic 12)".
  [[nodiscard]] std::string Label() const;
};

// Undo and redo of edits that are not saved yet, in memory. Units and colour tables are opened for
// changes here, so that what is changed is also recorded. One thread at a time: that of the user
// interface, or the job that changes units.
class EditHistory {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{256} * 1024 * 1024;

  // `mostBytes` bounds the memory: the oldest steps are forgotten, and with a single step above it
  // all are.
  explicit EditHistory(CellMap& cells, std::size_t mostBytes = kMostBytes)
      : cells_(cells), mostBytes_(mostBytes) {}

  // Begins a step. What is opened from here on belongs to it.
  void Begin(std::string name, const LastModifications& last);
  // While the user holds a key or a button, steps of the same name are one.
  void BeginHold();
  void EndHold() { held_ = false; }
  SubpictureUnit& Open(const UnitPointer& unit);
  ClutRecord& OpenClut(int index);
  // Ends the step. One that has changed nothing is forgotten; any other ends what could be redone.
  void Close();
  // Forgets everything: what is in the files now is what the units hold.
  void Clear();

  // The step that would be taken back or done again; null without one.
  [[nodiscard]] const EditStep* ToUndo() const;
  [[nodiscard]] const EditStep* ToRedo() const;
  // Takes the step back or does it again, with the last modifications as they were; gives it, null
  // without one.
  const EditStep* Undo(LastModifications& last);
  const EditStep* Redo(LastModifications& last);
  [[nodiscard]] std::size_t Bytes() const { return bytes_; }

 private:
  void DropUnchanged(EditStep& step) const;
  void Exchange(EditStep& step, LastModifications& last);
  void Push(EditStep step);
  void ForgetRedo();

  CellMap& cells_;
  std::size_t mostBytes_;
  std::deque<EditStep> steps_;  // the first `done_` can be undone, the others redone
  std::size_t done_ = 0;
  std::size_t bytes_ = 0;  // held by all steps
  std::optional<EditStep> open_;
  std::unordered_set<const SubpictureUnit*> inOpen_;
  bool tooLarge_ = false;  // the open step
  bool held_ = false;
  bool holdHasStep_ = false;
};

}  // namespace quillomar
