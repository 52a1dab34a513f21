#pragma once

#include <functional>
#include <string>

struct AVCodecContext;

namespace quillomar {

// Takes one line of text.
using LogSink = std::function<void(const std::string&)>;

// Where FFmpeg's messages end. None reaches the standard error: the errors of a decoder that a log
// listens to go to its sink, the first few, and everything else is dropped, for damage is ordinary
// on discs.
class DecoderLog {
 public:
  // `name` says in each line which decoder speaks; an empty sink takes nothing.
  DecoderLog(const char* name, LogSink sink) : name_(name), sink_(std::move(sink)) {}
  DecoderLog(const DecoderLog&) = delete;
  DecoderLog& operator=(const DecoderLog&) = delete;

  // Must outlive the context.
  void ListenTo(AVCodecContext& context);
  void Say(const std::string& text);

 private:
  const char* name_;
  LogSink sink_;
  int said_ = 0;
};

}  // namespace quillomar
