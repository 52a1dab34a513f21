#include "base/reporting.h"

#include <gtest/gtest.h>

#include <regex>

#include "support/message_collector.h"

namespace quillomar {
namespace {

using test::MessageCollector;

TEST(Reporter, LogsOneTimedLinePerCallAndKeepsTheStatusText) {
  MessageCollector messages;
  messages.reporter.LogLine("first\n");
  messages.reporter.LogLine("second");
  messages.reporter.LogLine("quiet", 1);
  const Bytes& log = messages.files.Content(MessageCollector::kLogPath);
  const std::string text(log.begin(), log.end());
  EXPECT_TRUE(std::regex_match(
      text, std::regex("\\d\\d:\\d\\d:\\d\\d -- first\n\\d\\d:\\d\\d:\\d\\d -- second\n")))
      << text;
  EXPECT_EQ(messages.reporter.StatusText(), "second");

  messages.reporter.CloseLog();
  messages.reporter.LogLine("to the status only");
  EXPECT_EQ(messages.reporter.StatusText(), "to the status only");
  EXPECT_EQ(messages.LogLines().size(), 2U);
}

TEST(Reporter, QuietErrorsReturnTheirFlagAndNobodyToAskMeansNo) {
  test::MemoryFileSystem files;
  Reporter reporter(files);
  EXPECT_EQ(reporter.ReportError("x", 7), 7);
  EXPECT_FALSE(reporter.AskYesNo("really?"));
  EXPECT_FALSE(reporter.AskOkCancel("really?"));
}

TEST(ReportLimit, ShowsFourTheLastWithANoticeAndLogsTheRest) {
  MessageCollector messages;
  ReportLimit limit(messages.reporter);
  for (int i = 0; i < 6; ++i) limit.Report("bad " + std::to_string(i));
  ASSERT_EQ(messages.errors.size(), 4U);
  EXPECT_EQ(messages.errors[2], "bad 2");
  EXPECT_EQ(messages.errors[3], "bad 3\nI won't report this error again");
  EXPECT_EQ(messages.LogLines(), (std::vector<std::string>{"bad 4", "bad 5"}));
  limit.Reset();
  limit.Report("again");
  EXPECT_EQ(messages.errors.back(), "again");
}

}  // namespace
}  // namespace quillomar
