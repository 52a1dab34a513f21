#pragma once

#include <thread>

#include "ui/dialogs.h"

namespace quillomar::test {

// Answers in the user's place and keeps what was shown and asked.
class StubDialogs final : public Dialogs {
 public:
  int ShowError(const std::string& text) override {
    errors.push_back(text);
    errorThread = std::this_thread::get_id();
    return 1;
  }
  void ShowMessage(const std::string& text) override { messages.push_back(text); }
  bool AskYesNo(const std::string& question) override { return Answer(question); }
  bool AskRecommended(const std::string& question) override { return Answer(question); }
  bool AskOkCancel(const std::string& question) override { return Answer(question); }
  void ShowAbout() override { ++abouts; }
  std::vector<std::string> ChooseFiles(const FileRequest& request) override {
    requests.push_back(request);
    if (request.filterIndex != nullptr) *request.filterIndex = filterIndex;
    return files;
  }
  std::optional<int> ChooseItem(const std::string& title,
                                const std::vector<std::string>& /*items*/) override {
    questions.push_back(title);
    return item;
  }
  std::optional<Rgb> ChooseColour(const std::string& title, Rgb /*start*/) override {
    questions.push_back(title);
    return colour;
  }
  bool OpenDocument(const std::string& pathOrUrl) override {
    documents.push_back(pathOrUrl);
    return opensDocuments;
  }

  void Beep() override { ++beeps; }

  bool agrees = false;
  std::vector<std::string> files;
  int filterIndex = 0;
  std::optional<int> item;
  std::optional<Rgb> colour;
  bool opensDocuments = true;

  std::vector<std::string> errors, messages, questions, documents;
  std::vector<FileRequest> requests;
  int abouts = 0;
  int beeps = 0;
  std::thread::id errorThread;

 private:
  bool Answer(const std::string& question) {
    questions.push_back(question);
    return agrees;
  }
};

}  // namespace quillomar::test
