#include "dvd/scan_progress.h"

#include <gtest/gtest.h>

#include "support/message_collector.h"

namespace quillomar {
namespace {

TEST(ScanProgress, ReportsEvery2000SectorsOrEvery60Listed) {
  EXPECT_TRUE(ScanProgress::IsDue(1999, std::nullopt));
  EXPECT_TRUE(ScanProgress::IsDue(3999, std::nullopt));
  EXPECT_FALSE(ScanProgress::IsDue(0, std::nullopt));
  EXPECT_FALSE(ScanProgress::IsDue(2000, std::nullopt));
  EXPECT_TRUE(ScanProgress::IsDue(5, 120));
  EXPECT_FALSE(ScanProgress::IsDue(1999, 59));
}

TEST(ScanProgress, SmoothsTheRateAndTellsTheTimeToGo) {
  test::MessageCollector messages;
  JobControl control;
  ScanProgress progress(messages.reporter, control, 524288);
  progress.Report(1999, 1000, 0);
  progress.Report(3999, 1000, 12);
  EXPECT_EQ(control.percent, 0);
  progress.Report(262144, 128000, 99);
  EXPECT_EQ(control.percent, 50);
  progress.ReportEnd(524288, 256000, 100);
  const std::vector<std::string> expected{
      "3.90 MB scanned (3.90 MB/s) -- 0 subpics -- 261 secs to go",
      "7.81 MB scanned (4.10 MB/s) -- 12 subpics -- 248 secs to go",
      "512.00 MB scanned (4.09 MB/s) -- 99 subpics -- 125 secs to go",
      "1024.00 MB scanned (4.09 MB/s) -- 100 subpics"};
  EXPECT_EQ(messages.LogLines(), expected);
}

TEST(ScanProgress, DividesByNothing) {
  test::MessageCollector messages;
  JobControl control;
  ScanProgress(messages.reporter, control, 0).Report(0, 0, 0);
  ScanProgress(messages.reporter, control, 0).ReportEnd(0, 0, 0);
  ScanProgress(messages.reporter, control, 4000).Report(1999, 0, 1);
  const std::vector<std::string> expected{
      "0.00 MB scanned (0.00 MB/s) -- 0 subpics -- 0 secs to go",
      "0.00 MB scanned (0.00 MB/s) -- 0 subpics",
      "3.90 MB scanned (3904.30 MB/s) -- 1 subpics -- 0 secs to go"};
  EXPECT_EQ(messages.LogLines(), expected);
}

}  // namespace
}  // namespace quillomar
