#pragma once

#include <memory>
#include <string>

#include "base/file.h"
#include "base/job_control.h"
#include "base/reporting.h"
#include "base/transaction.h"
#include "settings/preferences.h"

namespace quillomar {

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
  std::string logPath;           // empty: no log
  bool warnedOfOnly4x3 = false;  // the 4:3 warning is shown once per run
};

}  // namespace quillomar
