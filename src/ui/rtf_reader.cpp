#include "ui/rtf_reader.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string>
#include <unordered_set>

namespace quillomar {
namespace {

constexpr std::size_t kDeepestGroup = 64;
// Longer numbers are nonsense and would overflow.
constexpr std::size_t kLongestNumber = 6;

struct ControlWord {
  std::string name;
  std::optional<int> number;
};

enum class Destination { kText, kColours, kSkipped };

struct Group {
  RtfFormat format;
  Destination destination = Destination::kText;
};

class Reader {
 public:
  explicit Reader(std::string_view rtf) : rest_(rtf) {}

  RtfDocument Read() {
    document_.paragraphs.emplace_back();
    while (!rest_.empty() && !groups_.empty()) Step();
    EndRun();
    while (!document_.paragraphs.empty() && document_.paragraphs.back().empty()) {
      document_.paragraphs.pop_back();
    }
    return std::move(document_);
  }

 private:
  Group& Current() { return groups_.back(); }

  char Take() {
    const char first = rest_.front();
    rest_.remove_prefix(1);
    return first;
  }

  void Step() {
    const char c = Take();
    switch (c) {
      case '{':
        OpenGroup();
        break;
      case '}':
        EndRun();
        groups_.pop_back();
        break;
      case '\\':
        TakeControl();
        break;
      case '\r':
      case '\n':
        break;
      default:
        AddCharacter(c);
    }
  }

  void OpenGroup() {
    EndRun();
    if (groups_.size() >= kDeepestGroup) {
      rest_ = {};
      return;
    }
    groups_.push_back(Current());
  }

  void TakeControl() {
    if (rest_.empty()) return;
    if (std::isalpha(static_cast<unsigned char>(rest_.front())) != 0) {
      Apply(TakeWord());
      return;
    }
    const char symbol = Take();
    if (symbol == '\'') {
      TakeHexCharacter();
    } else if (symbol == '*') {
      Current().destination = Destination::kSkipped;
    } else {
      AddCharacter(symbol);
    }
  }

  ControlWord TakeWord() {
    ControlWord word;
    while (!rest_.empty() && std::isalpha(static_cast<unsigned char>(rest_.front())) != 0) {
      word.name += Take();
    }
    std::string digits;
    if (!rest_.empty() && rest_.front() == '-') digits += Take();
    while (!rest_.empty() && std::isdigit(static_cast<unsigned char>(rest_.front())) != 0) {
      const char digit = Take();
      if (digits.size() < kLongestNumber) digits += digit;
    }
    if (!digits.empty() && digits != "-") word.number = std::stoi(digits);
    if (!rest_.empty() && rest_.front() == ' ') Take();
    return word;
  }

  void TakeHexCharacter() {
    constexpr std::size_t kHexDigits = 2;
    const std::string digits(rest_.substr(0, kHexDigits));
    rest_.remove_prefix(digits.size());
    bool valid = false;
    const int code = QString::fromStdString(digits).toInt(&valid, 16);
    if (valid) AddText(QString(QChar(code)));
  }

  void AddCharacter(char c) {
    if (Current().destination == Destination::kColours && c == ';') {
      document_.colours.push_back(colour_);
      colour_ = QColor(0, 0, 0);
    }
    if (Current().destination == Destination::kText) bytes_ += c;
  }

  void AddText(const QString& text) {
    if (Current().destination != Destination::kText) return;
    bytes_ += text.toStdString();
  }

  // Character formats change what follows, so the text before them is put away first.
  void Apply(const ControlWord& word) {
    EndRun();
    RtfFormat& format = Current().format;
    const int number = word.number.value_or(1);
    if (word.name == "cf") format.colour = word.number.value_or(0);
    if (word.name == "b") format.bold = number != 0;
    if (word.name == "ul") format.underline = number != 0;
    if (word.name == "ulnone") format.underline = false;
    if (word.name == "fs" && number > 0) format.halfPoints = number;
    if (word.name == "plain") format = RtfFormat();
    if (word.name == "tab") AddText(QStringLiteral("\t"));
    if (word.name == "par") document_.paragraphs.emplace_back();
    if (word.name == "pard") document_.tabStops.clear();
    if (word.name == "tx" && word.number) document_.tabStops.push_back(number);
    ApplyDestination(word);
  }

  void ApplyDestination(const ControlWord& word) {
    static const std::unordered_set<std::string> kSkipped = {"fonttbl", "stylesheet", "info",
                                                             "pict"};
    const int channel = std::clamp(word.number.value_or(0), 0, 255);
    if (word.name == "colortbl") Current().destination = Destination::kColours;
    if (kSkipped.contains(word.name)) Current().destination = Destination::kSkipped;
    if (word.name == "red") colour_.setRed(channel);
    if (word.name == "green") colour_.setGreen(channel);
    if (word.name == "blue") colour_.setBlue(channel);
  }

  void EndRun() {
    if (bytes_.empty()) return;
    document_.paragraphs.back().push_back({QString::fromStdString(bytes_), Current().format});
    bytes_.clear();
  }

  std::string_view rest_;
  std::vector<Group> groups_ = {Group()};
  RtfDocument document_;
  QColor colour_ = QColor(0, 0, 0);
  std::string bytes_;
};

}  // namespace

RtfDocument ReadRtf(std::string_view rtf) {
  return Reader(rtf).Read();
}

}  // namespace quillomar
