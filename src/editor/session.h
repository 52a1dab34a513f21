#pragma once

#include <memory>
#include <string>

#include "base/file.h"
#include "base/job_control.h"
#include "base/reporting.h"
#include "base/transaction.h"
#include "settings/preferences.h"

namespace quillomar {

// Whether files that are known from before are opened without a scan.
enum class FastOpen { kAsk, kNever, kAlways };

// What lives as long as the program. Made in main; tests put memory files and a failing transaction
// source in place of the real ones.
struct Session {
  Session(FileSystem& fileSystem, std::unique_ptr<TransactionSource> source)
      : files(fileSystem), transactions(std::move(source)) {}

  FileSystem& files;
  Reporter reporter{files};
  ReportLimit limit{reporter};
  std::unique_ptr<TransactionSource> transactions;
  Preferences preferences;
  JobControl job;
  std::string logPath;     // empty: no log
  std::string dataFolder;  // of the recent files; empty: none are kept
  FastOpen fastOpen = FastOpen::kAsk;
  bool warnedOfOnly4x3 = false;   // the 4:3 warning is shown once per run
  bool warnedOfRetiming = false;  // as is the one that a retiming has no undo
};

}  // namespace quillomar
