#include "settings/settings_store.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/format.h"
#include "base/paths.h"
#include "base/platform.h"

namespace quillomar {
namespace {

constexpr const char* kFallbackFolder = "c:/WINDOWS/Application Data";
constexpr std::size_t kMaxTextLength = 512;
constexpr int kDecimals = 12;

// Creates a folder and those above it; what fails shows when the file is written.
void CreateFolders(FileSystem& files, const std::string& folder) {
  for (auto end = folder.find('/', 1); end != std::string::npos; end = folder.find('/', end + 1)) {
    static_cast<void>(files.CreateFolder(folder.substr(0, end)));
  }
  static_cast<void>(files.CreateFolder(folder));
}

std::string_view SkipBlanksAndPlus(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  return text;
}

// Never the C library's conversions: they follow the user's locale, the file does not.
template <typename Number>
std::optional<Number> TakeNumber(std::string_view& text) {
  const std::string_view digits = SkipBlanksAndPlus(text);
  Number number{};
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc()) return std::nullopt;
  text = digits.substr(static_cast<std::size_t>(end - digits.data()));
  return number;
}

// Wraps as the platform's own reading does, so that a colour written without a sign keeps its bits.
std::int32_t ToInt(std::string_view text) {
  text = SkipBlanksAndPlus(text);
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  std::uint32_t number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    number = number * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return static_cast<std::int32_t>(negative ? 0U - number : number);
}

std::string FloatText(float value) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), static_cast<double>(value),
                                 std::chars_format::fixed, kDecimals)
                       .ptr;
  return {text.data(), end};
}

// Fields from the first that does not parse on stay 0.
WindowRect ParseRect(std::string_view text) {
  WindowRect rect;
  for (int* field : {&rect.left, &rect.top, &rect.width, &rect.height}) {
    const auto number = TakeNumber<int>(text);
    if (!number) break;
    *field = std::max(*number, 0);
  }
  return rect;
}

std::optional<std::string> RectText(WindowRectTarget& window) {
  const auto rect = window.Current();
  if (!rect) return std::nullopt;
  const std::int64_t right = std::int64_t{rect->left} + rect->width;
  const std::int64_t bottom = std::int64_t{rect->top} + rect->height;
  if (rect->left < 0 || rect->top < 0 || right < 0 || bottom < 0) return std::nullopt;
  return Format("%d %d %d %d", rect->left, rect->top, rect->width, rect->height);
}

bool StartsCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

std::string Truncated(std::string_view text) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (StartsCharacter(text[i]) && ++characters > kMaxTextLength) {
      return std::string(text.substr(0, i));
    }
  }
  return std::string(text);
}

}  // namespace

ProgramPlace ProgramPlace::OfProcess(std::string_view firstArgument) {
  return {std::string(firstArgument), ExecutablePath(), EnvironmentVariable("APPDATA"),
          StateFolder()};
}

void SettingsStore::Open(std::string_view programName, bool subfolder) {
  section_ = programName;
  if (section_.empty()) {
    section_ =
        SplitPath(place_.firstArgument.empty() ? place_.modulePath : place_.firstArgument).title;
  }
  std::string folder = kFallbackFolder;
  if (place_.appData && files_.IsFolder(*place_.appData)) {
    folder = *place_.appData;
  } else {
    CreateFolders(files_, folder);
  }
  if (subfolder) {
    folder += "/" + section_;
    static_cast<void>(files_.CreateFolder(folder));
  }
  path_ = folder + "/" + section_ + ".ini";
  bindings_.clear();
  ini_ = LoadIni(files_, path_).value_or(IniText());
}

SettingsStore::OverrideValue* SettingsStore::FindOverride(std::string_view key) {
  const auto found =
      std::find_if(overrides_.begin(), overrides_.end(),
                   [&](const OverrideValue& entry) { return EqualIgnoringCase(entry.key, key); });
  return found == overrides_.end() ? nullptr : &*found;
}

void SettingsStore::Override(std::string_view key, std::string_view value) {
  if (OverrideValue* known = FindOverride(key)) {
    known->value = value;
    return;
  }
  overrides_.push_back({std::string(key), std::string(value), false});
}

std::vector<std::string> SettingsStore::UnreadOverrides() const {
  std::vector<std::string> keys;
  for (const OverrideValue& entry : overrides_) {
    if (!entry.read) keys.push_back(entry.key);
  }
  return keys;
}

std::optional<std::string> SettingsStore::Value(std::string_view key) {
  if (OverrideValue* entry = FindOverride(key)) {
    entry->read = true;
    return entry->value;
  }
  return ini_.Get(section_, key);
}

void SettingsStore::BindFloat(float& target, std::string_view key, float defaultValue) {
  const std::string text = Value(key).value_or("");
  std::string_view rest = text;
  if (text.empty()) {
    target = defaultValue;
  } else if (const auto number = TakeNumber<float>(rest); number && std::isfinite(*number)) {
    target = *number;
  }
  bindings_.push_back({&target, std::string(key)});
}

void SettingsStore::BindInt(std::int32_t& target, std::string_view key, std::int32_t defaultValue) {
  target = ReadInt(key, defaultValue);
  bindings_.push_back({&target, std::string(key)});
}

void SettingsStore::BindText(std::string& target, std::string_view key,
                             std::string_view defaultValue) {
  target = ReadText(key, defaultValue);
  bindings_.push_back({&target, std::string(key)});
}

void SettingsStore::BindWindowRect(WindowRectTarget& window, std::string_view key, bool moveOnly) {
  const WindowRect rect = ParseRect(Value(key).value_or("0 0 0 0"));
  if (rect.width >= 1 && rect.height >= 1) window.Place(rect, moveOnly);
  bindings_.push_back({&window, std::string(key)});
}

std::int32_t SettingsStore::ReadInt(std::string_view key, std::int32_t defaultValue) {
  const auto text = Value(key);
  return text ? ToInt(*text) : defaultValue;
}

std::string SettingsStore::ReadText(std::string_view key, std::string_view defaultValue) {
  const auto text = Value(key);
  return Truncated(text ? *text : defaultValue);
}

void SettingsStore::Update(const std::function<void(IniText&)>& change) {
  // What another program or the user has changed in the file meanwhile stays. A file that cannot be
  // read is not overwritten.
  auto ini = LoadIni(files_, path_);
  if (!ini) return;
  const std::string before = ini->Text();
  change(*ini);
  // Settings that cannot be stored are no reason to bother a user who is leaving.
  if (ini->Text() != before) static_cast<void>(StoreIni(files_, path_, *ini));
  ini_ = std::move(*ini);
}

void SettingsStore::WriteText(std::string_view key, std::string_view text) {
  Update([&](IniText& ini) { PutValue(ini, key, text); });
}

void SettingsStore::SaveOne(std::size_t index) {
  if (index >= bindings_.size()) return;
  Update([&](IniText& ini) { PutBinding(ini, bindings_[index]); });
}

void SettingsStore::SaveAll() {
  Update([&](IniText& ini) {
    for (const Binding& binding : bindings_) PutBinding(ini, binding);
  });
}

void SettingsStore::PutValue(IniText& ini, std::string_view key, std::string_view value) {
  if (FindOverride(key) == nullptr) ini.Set(section_, key, value);
}

void SettingsStore::PutBinding(IniText& ini, const Binding& binding) {
  if (const auto* number = std::get_if<float*>(&binding.target)) {
    PutValue(ini, binding.key, FloatText(**number));
  } else if (const auto* integer = std::get_if<std::int32_t*>(&binding.target)) {
    PutValue(ini, binding.key, Format("%d", **integer));
  } else if (const auto* text = std::get_if<std::string*>(&binding.target)) {
    PutValue(ini, binding.key, **text);
  } else if (const auto* window = std::get_if<WindowRectTarget*>(&binding.target)) {
    if (const auto rect = RectText(**window)) PutValue(ini, binding.key, *rect);
  }
}

}  // namespace quillomar
