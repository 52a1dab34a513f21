#pragma once

#include <functional>
#include <optional>

#include "editor/document.h"
#include "editor/front_end.h"
#include "editor/playback_screen.h"
#include "editor/selection.h"
#include "editor/session.h"
#include "editor/video_control.h"
#include "editor/view.h"
#include "editor/view_options.h"

namespace quillomar {

// What the video is shown for; all of it belongs to the editor.
struct VideoSubject {
  Session& session;
  FrontEnd& frontEnd;
  Document& document;
  Selection& selection;
  View& view;  // its video, and the picture while that plays, are this desk's
  const ViewOptions& look;
  std::function<void()> updateView;  // makes the view anew, all of it
};

// The video behind the subpictures: the frame that belongs to the current unit, and playing the
// title with its subpictures.
class VideoDesk {
 public:
  explicit VideoDesk(VideoSubject subject);

  void Show(bool on);
  // Shows units over the I-frame nearest to their end and not over the one they appear on.
  void ShowEndFrame(bool on);
  // To the next (1) or the previous (-1) picture.
  void Step(int direction);
  // Starts playing from where the picture is, or around the current unit again and again; stops
  // what plays.
  void TogglePlayback(bool loop);
  // Index in the view's list of audio streams; while playing it is heard at once.
  void ChooseAudio(int entry);
  // The next (1) or previous (-1) of them, going around.
  void StepAudio(int direction);
  // Asks for a file and writes the frame.
  void SaveFrame();

  // The document has other files.
  void Open();
  void Close();
  [[nodiscard]] bool Available() const { return control_.Available(); }
  [[nodiscard]] bool Playing() const { return control_.Playing(); }
  // Ends what plays, as the user does.
  void EndPlayback();
  // Ends what plays; its picture stays.
  void Stop();
  // The same, for another place in the list.
  void Leave();
  // Ends whatever runs, for a job; before one that changes the files frames are forgotten, too.
  void MakeWay(bool filesChange);
  // The stream of the list is another one.
  void FollowStream();
  // The frame is looked for again even where it is there.
  void Renew() { control_.Renew(); }
  // Fills in the view's part.
  void Fill();
  // Asks for the frame of the current unit and for those that may be wanted next.
  void WantFrame();

 private:
  [[nodiscard]] FramePointer ShownFrame();
  [[nodiscard]] std::optional<FrameRequest> FrameOfListed(int index);
  void FrameChanged();
  [[nodiscard]] PlayOptions PlayOptionsFromHere();
  [[nodiscard]] PlayOptions LoopOptions();
  [[nodiscard]] double PlaybackRate() const;
  void LoadScreen();
  void PlaybackOver();
  void PlaybackEnded();
  [[nodiscard]] SubpicturePicture PlayedPicture(const UnitPointer& shown, const UnitMoment& moment);
  void FramePlayed();
  void FollowPlayback();
  void FillAudio();
  void TellHost();

  VideoSubject editor_;
  bool shows_ = false;
  bool showsEndFrame_ = false;
  PlaybackScreen screen_;
  bool looping_ = false;
  bool playedOut_ = false;  // the last playback went on to its end
  int audioEntry_ = 0;
  VideoControl control_;  // last: its events use the others
};

}  // namespace quillomar
