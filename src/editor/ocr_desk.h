#pragma once

#include "editor/document.h"
#include "editor/session.h"
#include "ocr/hearing_impaired.h"

namespace quillomar {

// Reading text, for the commands: the engine, made when it is first needed, with what the
// preferences and the disc say.
class OcrDesk {
 public:
  OcrDesk(Session& session, const Document& document) : session_(session), document_(document) {}

  // Whether text can be read; says why not.
  [[nodiscard]] bool Ready();
  // As the preferences now are. Only when ready; while these are used by a job, nobody else may.
  [[nodiscard]] OcrTools Tools(const SpuContext& context);
  [[nodiscard]] HearingOptions Hearing() const;
  [[nodiscard]] CutOptions Cut() const;
  // Another disc: what was learnt of the last one no longer holds.
  void ForgetDisc();

 private:
  [[nodiscard]] std::string LanguageOf(const SubpictureUnit& unit) const;

  Session& session_;
  const Document& document_;
  std::unique_ptr<OcrEngine> engine_;
};

// Progress of a run over `units` subpictures, for the job that it is part of.
[[nodiscard]] EngineProgress ProgressOf(JobControl& control, std::size_t units);

}  // namespace quillomar
