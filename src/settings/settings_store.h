#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/file.h"
#include "settings/ini_file.h"

namespace quillomar {

// Screen pixels.
struct WindowRect {
  int left = 0, top = 0, width = 0, height = 0;
  friend bool operator==(const WindowRect&, const WindowRect&) = default;
};

// A window whose place is a setting.
class WindowRectTarget {
 public:
  virtual ~WindowRectTarget() = default;
  // Moves the window and, unless `moveOnly`, resizes it; its place among other windows stays.
  virtual void Place(const WindowRect& rect, bool moveOnly) = 0;
  // Where the window is on the screen; nothing when that cannot be told. A minimised window may
  // give negative numbers.
  [[nodiscard]] virtual std::optional<WindowRect> Current() = 0;
};

// Where the settings file is looked for.
struct ProgramPlace {
  std::string firstArgument;           // the command line's own name for the program
  std::string modulePath;              // full path of the program; used when that name is empty
  std::optional<std::string> appData;  // the environment's "APPDATA"
  std::string stateFolder = {};        // of what must be found again after a crash

  // As the running process has them.
  static ProgramPlace OfProcess(std::string_view firstArgument);
};

// The settings file: one section of one INI file, both named after the program.
//
// A setting is bound once: that reads it (or its default) into the variable or window that holds
// it, and SaveAll later writes whatever that variable or window then holds. Bound variables and
// windows must outlive the store. Nothing here reports: what cannot be read is its default, what
// cannot be written is lost. For the user-interface thread alone.
class SettingsStore {
 public:
  SettingsStore(FileSystem& files, ProgramPlace place) : files_(files), place_(std::move(place)) {}

  // Finds the file for a program name (empty: the program's own) and forgets all bindings. With
  // `subfolder` the file lies in a folder of that name, which is created.
  void Open(std::string_view programName, bool subfolder);

  // A value for this run that takes the place of the file's. A key with one is never written.
  void Override(std::string_view key, std::string_view value);
  // Keys of overrides that nothing has read since Open: the user misspelt them.
  [[nodiscard]] std::vector<std::string> UnreadOverrides() const;

  // A missing or empty value is the default; one that is no finite number changes nothing.
  void BindFloat(float& target, std::string_view key, float defaultValue);
  // A missing value is the default; one that does not start with a number is 0.
  void BindInt(std::int32_t& target, std::string_view key, std::int32_t defaultValue);
  // At most 512 characters are taken.
  void BindText(std::string& target, std::string_view key, std::string_view defaultValue);
  // Places the window at once when the value has a width and a height.
  void BindWindowRect(WindowRectTarget& window, std::string_view key, bool moveOnly);

  [[nodiscard]] std::int32_t ReadInt(std::string_view key, std::int32_t defaultValue);
  // At most 512 characters.
  [[nodiscard]] std::string ReadText(std::string_view key, std::string_view defaultValue);
  void WriteText(std::string_view key, std::string_view text);

  // One binding, by its place in the order of binding.
  void SaveOne(std::size_t index);
  // All of them in that order, with one replacement of the file.
  void SaveAll();

  [[nodiscard]] const std::string& Path() const { return path_; }
  [[nodiscard]] const std::string& Section() const { return section_; }
  [[nodiscard]] std::size_t BindingCount() const { return bindings_.size(); }

 private:
  struct Binding {
    std::variant<float*, std::int32_t*, std::string*, WindowRectTarget*> target;
    std::string key;
  };
  struct OverrideValue {
    std::string key, value;
    bool read = false;
  };

  [[nodiscard]] std::optional<std::string> Value(std::string_view key);
  [[nodiscard]] OverrideValue* FindOverride(std::string_view key);
  // Reads the file anew, lets `change` edit it, and stores it when that made a difference.
  void Update(const std::function<void(IniText&)>& change);
  void PutBinding(IniText& ini, const Binding& binding);
  void PutValue(IniText& ini, std::string_view key, std::string_view value);

  FileSystem& files_;
  ProgramPlace place_;
  std::string path_;
  std::string section_;
  IniText ini_;  // as it was at Open
  std::vector<Binding> bindings_;
  std::vector<OverrideValue> overrides_;
};

}  // namespace quillomar
