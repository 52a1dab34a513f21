// Prints the table of keys for the manual.

#include "editor/key_table.h"

#include <cstdio>

int main() {
  return std::fputs(quillomar::KeyTable().c_str(), stdout) < 0 ? 1 : 0;
}
