// What `disc` tells.

#include "base/format.h"
#include "cli/json.h"
#include "cli/unit_json.h"
#include "editor/view_builder.h"

namespace quillomar {
namespace {

struct StreamSummary {
  SubpictureStreamInfo info;
  int units = 0;
};

using StreamSummaries = std::array<StreamSummary, kSubpictureStreams>;

// What the cells say of each stream, all display modes together, and how many units it has.
StreamSummaries SummariseStreams(const Document& document) {
  StreamSummaries streams;
  for (const auto& [vcid, cell] : document.Cells().cells) {
    for (std::size_t i = 0; i < streams.size(); ++i) {
      const SubpictureStreamInfo& info = cell.subpictures.at(i);
      if (!info.found) continue;
      SubpictureStreamInfo& summary = streams[i].info;
      const auto modes = static_cast<std::uint8_t>(summary.modes | info.modes);
      if (!summary.found) summary = info;
      summary.modes = modes;
    }
  }
  for (const UnitPointer& unit : document.Units()) {
    ++streams.at(static_cast<std::size_t>(unit->stream)).units;
  }
  return streams;
}

std::vector<AudioStreamInfo> AudioStreams(const Document& document) {
  std::vector<AudioStreamInfo> streams;
  if (document.Cells().cells.empty()) return streams;
  for (const auto& audio : document.Cells().cells.begin()->second.audio) {
    if (audio) streams.push_back(*audio);
  }
  return streams;
}

std::string AspectText(int code) {
  return code == 2 ? "4:3" : code == 3 ? "16:9" : "";
}

std::string StandardText(VideoStandard standard) {
  if (standard == VideoStandard::kUnknown) return "";
  return IsPal(standard) ? "PAL" : "NTSC";
}

std::string TextOrNull(const std::string& text) {
  return text.empty() ? "null" : JsonString(text);
}

std::string ModesJson(std::uint8_t modes) {
  std::vector<std::string> names;
  for (int bit = 0; bit < 4; ++bit) {
    const auto mode = static_cast<std::uint8_t>(modes & 1 << bit);
    if (mode != 0) names.push_back(JsonString(DisplayModeNames(mode)));
  }
  return JsonArray(names);
}

std::vector<std::string> StreamsJson(const Document& document) {
  std::vector<std::string> items;
  const StreamSummaries streams = SummariseStreams(document);
  for (std::size_t i = 0; i < streams.size(); ++i) {
    const StreamSummary& stream = streams[i];
    if (!stream.info.found && stream.units == 0) continue;
    const bool known = stream.info.found && stream.info.language != "  ";
    items.push_back(JsonObject()
                        .Add("stream", static_cast<int>(kFirstSubpictureId + i))
                        .Add("language", TextOrNull(known ? stream.info.language : ""))
                        .Add("modes", ModesJson(stream.info.modes))
                        .Add("subpics", stream.units)
                        .Text());
  }
  return items;
}

std::vector<std::string> AudioJson(const Document& document) {
  std::vector<std::string> items;
  for (const AudioStreamInfo& audio : AudioStreams(document)) {
    items.push_back(JsonObject()
                        .Add("streamId", audio.streamId)
                        .Add("coding", JsonString(audio.coding))
                        .Add("language", JsonString(audio.language))
                        .Add("channels", audio.channels)
                        .Text());
  }
  return items;
}

}  // namespace

std::string DiscJson(Document& document) {
  const ScanResults& results = document.Results();
  std::vector<std::string> files;
  for (const VobFile& file : document.Files().Files()) files.push_back(JsonString(file.path));
  const std::string mpeg2 = results.mpeg2 ? (*results.mpeg2 ? "true" : "false") : "null";
  return JsonObject()
      .Add("files", JsonArray(files))
      .Add("standard", TextOrNull(StandardText(results.standard)))
      .Add("width", results.width)
      .Add("height", results.height)
      .Add("aspect", TextOrNull(AspectText(results.aspect)))
      .Add("frameRate", results.frameRate > 0 ? Format("%.3f", results.frameRate) : "null")
      .Add("mpeg2", mpeg2)
      .Add("fullTitleDomain", document.Files().FullTitleDomain())
      .Add("interleaved", results.interleaved)
      .Add("streams", JsonArray(StreamsJson(document)))
      .Add("audioStreams", JsonArray(AudioJson(document)))
      .Add("vobus", static_cast<int>(results.vobus.size()))
      .Add("sectors", static_cast<long long>(document.Files().TotalSectors()))
      .Text();
}

std::string DiscText(Document& document) {
  const ScanResults& results = document.Results();
  std::string text;
  for (const VobFile& file : document.Files().Files()) {
    text += Format("%s (%u sectors)\n", file.path.c_str(), file.length);
  }
  text +=
      Format("Video: %s %dx%d %s, %.3f frames a second%s\n", StandardText(results.standard).c_str(),
             results.width, results.height, AspectText(results.aspect).c_str(), results.frameRate,
             results.mpeg2.value_or(true) ? "" : " MPEG-1");
  text += Format("VOBUs: %d%s\n", static_cast<int>(results.vobus.size()),
                 results.interleaved ? " (interleaved)" : "");
  if (document.Files().FullTitleDomain()) text += "The whole title domain is open.\n";
  const StreamSummaries streams = SummariseStreams(document);
  for (std::size_t i = 0; i < streams.size(); ++i) {
    if (!streams[i].info.found && streams[i].units == 0) continue;
    text +=
        Format("Subpictures %s %s: %d\n", StreamLabel(static_cast<int>(i), streams[i].info).c_str(),
               DisplayModeNames(streams[i].info.modes).c_str(), streams[i].units);
  }
  for (const AudioStreamInfo& audio : AudioStreams(document)) {
    text += Format("Audio 0x%x: %s %s, %d channels\n", static_cast<unsigned>(audio.streamId),
                   audio.coding.c_str(), audio.language.c_str(), audio.channels);
  }
  return text;
}

}  // namespace quillomar
