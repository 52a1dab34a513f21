#include "editor/key_table.h"

#include <string_view>

#include "editor/command_table.h"

namespace quillomar {
namespace {

// "Del; Backspace" as a sentence would have it.
std::string KeyNames(std::string_view keys) {
  std::string names(keys);
  for (std::size_t at = names.find(';'); at != std::string::npos; at = names.find(';', at)) {
    names[at] = ',';
  }
  return names;
}

// The menu's text without the key behind it.
std::string PlainText(std::string_view text) {
  text = text.substr(0, text.find('\t'));
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return std::string(text);
}

}  // namespace

std::string KeyTable() {
  std::string table = "| key | command |\n|---|---|\n";
  for (const Command& command : Commands()) {
    if (command.key.empty()) continue;
    table += "| " + KeyNames(command.key) + " | " + PlainText(command.text) + " |\n";
  }
  return table;
}

}  // namespace quillomar
