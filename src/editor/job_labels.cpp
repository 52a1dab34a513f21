#include "editor/job_labels.h"

namespace quillomar {

const char* JobLabelText(Operation operation) {
  switch (operation) {
    case Operation::kNone:
      return "";
    case Operation::kScanning:
      return "Scanning VOB file(s)";
    case Operation::kDone:
      return "Done...";
    case Operation::kAborted:
      return "Aborted";
    case Operation::kApplying:
      return "Applying modifications";
    case Operation::kReverting:
      return "Reverting";
    case Operation::kSaving:
      return "Saving modifications";
    case Operation::kRetiming:
      return "Re-timing";
    case Operation::kUpdatingPointers:
      return "Updating trick-play pointers";
    case Operation::kOcr:
      return "Running OCR (based on Tesseract)";
    case Operation::kLoadingRecent:
      return "Loading file(s) from MRU";
    case Operation::kCropping:
      return "Cropping subpic background";
    case Operation::kErasingHearingImpaired:
      return "Erasing Hearing-Impaired text";
  }
  return "";
}

}  // namespace quillomar
