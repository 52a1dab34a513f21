#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/file.h"
#include "base/job_control.h"
#include "base/paths.h"
#include "base/reporting.h"
#include "base/transaction.h"
#include "journal/journal_transaction.h"
#include "ocr/engine.h"
#include "ocr/run_ocr.h"
#include "settings/preferences.h"

namespace quillomar {

// Whether files that are known from before are opened without a scan.
enum class FastOpen { kAsk, kNever, kAlways };

// What is done about an interrupted change of the files that are opened: the user decides, or is
// only warned. Until it is decided the files are not written.
enum class LeftJournals { kAsk, kWarn };

// What lives as long as the program. Made in main; tests put memory files and a failing transaction
// source in place of the real ones.
struct Session {
  // `state`: the folder of the journals.
  Session(FileSystem& fileSystem, const std::string& state)
      : files(fileSystem),
        transactions(std::make_unique<JournalTransactionSource>(files, reporter, state)),
        stateFolder(state) {}

  FileSystem& files;
  Reporter reporter{files};
  ReportLimit limit{reporter};
  std::unique_ptr<TransactionSource> transactions;
  std::string stateFolder;
  Preferences preferences;
  JobControl job;
  std::string logPath;     // empty: no log
  std::string dataFolder;  // of the recent files; empty: none are kept
  FastOpen fastOpen = FastOpen::kAsk;
  LeftJournals leftJournals = LeftJournals::kAsk;
  // Makes the engine that reads text; gives null where there is none.
  std::function<std::unique_ptr<OcrEngine>()> makeOcrEngine;
  std::string ocrLanguage;  // two letters, in place of what the disc says of its streams
  int rememberedTextType = kNoTextTypeYet;  // of the unit read last
  bool warnedOfOnly4x3 = false;             // the 4:3 warning is shown once per run
  bool warnedOfRetiming = false;            // as is the one that a retiming has no undo
};

// Where the patterns are kept that the user has taught; empty: nowhere.
[[nodiscard]] inline std::string OcrDatabaseFolder(const std::string& dataFolder) {
  return dataFolder.empty() ? std::string() : JoinPath(dataFolder, "db");
}

}  // namespace quillomar
