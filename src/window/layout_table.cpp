#include "window/layout_table.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace lirenza::layout {
namespace {

using enum ControlId;
using K = ControlKind;

constexpr std::uint32_t kYellow = 0xffff00;
constexpr std::uint32_t kCyan = 0x00ffff;
constexpr std::uint32_t kPanelCyan = 0x20fefe;  // texts on the dark display panels
constexpr std::uint32_t kFieldCyan = 0x00fcff;
constexpr std::uint32_t kInk = 0x000000;         // on buttons and on the staff's paper

constexpr Font kCaptionFont{FontFace::Proportional, 12};
constexpr Font kFigureFont{FontFace::System, 14};     // the tempo numbers
constexpr Font kButtonFont{FontFace::Proportional, 9};
constexpr Font kFixedButtonFont{FontFace::FixedWidth, 9};

// A yellow caption on the back picture.
Control Caption(ControlRef ref, Place place, std::string_view text, ControlId parent = Window) {
  return {.ref = ref, .kind = K::Label, .place = place, .parent = parent, .caption = text,
          .font = kCaptionFont, .textColour = kYellow};
}

// A canvas showing one picture of its own size.
Control Picture(ControlRef ref, Place place, std::string_view picture, ControlId parent = Window) {
  return {.ref = ref, .kind = K::Canvas, .place = place, .parent = parent, .picture = picture};
}

// A radio button without text: its caption is a label beside it.
Control Radio(ControlRef ref, Place place, ControlId parent, bool on) {
  return {.ref = ref, .kind = K::RadioButton, .place = place, .parent = parent,
          .font = {FontFace::FixedWidth, 12}, .startValue = on ? 1 : 0};
}

std::vector<Control> BuildTable() {
  std::vector<Control> t;
  auto add = [&t](Control c) { t.push_back(c); };

  // The staff head carries the tempo and the signatures; the staff carries the notes.
  add(Picture({StaffHead}, {51, 60, 75, 150}, "Sheet"));
  add(Picture({TempoMark}, {60, 80, 16, 15}, "Te", StaffHead));
  add({.ref = {TempoNumber}, .kind = K::Label, .place = {78, 78, 30, 16}, .parent = StaffHead,
       .caption = "120", .font = kFigureFont, .textColour = kInk});
  add({.ref = {TempoWord}, .kind = K::Label, .place = {53, 61, 68, 20}, .parent = StaffHead,
       .caption = "Moderato", .font = kCaptionFont, .textColour = kInk});
  add(Picture({KeySignature}, {94, 98, 30, 76}, "S0", StaffHead));
  add(Picture({TimeSignature}, {79, 107, 12, 61}, "T4", StaffHead));
  add({.ref = {StaffCanvas}, .kind = K::Canvas, .place = {120, 60, 868, 140}});
  // Hidden at its first place; its open step moves it down to the entry row.
  add({.ref = {NoteTemplate}, .kind = K::NoteCanvas, .place = {120, 60, 15, 35}, .parent = StaffCanvas,
       .visibility = Visibility::Hidden});
  add(Picture({StaffEnd}, {986, 60, 10, 150}, "Repeat"));
  add({.ref = {StaffScrollBar}, .kind = K::ScrollBar, .place = {119, 200, 870, 10},
       .range = {0, 9504, 144, 288}});
  add(Caption({TitleCaption}, {65, 31, 33, 14}, "曲名"));
  add({.ref = {TitleField}, .kind = K::TextField, .place = {100, 30, 275, 15}, .caption = "曲名",
       .font = kCaptionFont, .textColour = kFieldCyan});
  add({.ref = {ComposerField}, .kind = K::TextField, .place = {406, 31, 580, 15}, .caption = "作曲家/解説",
       .font = kCaptionFont, .textColour = kFieldCyan});

  // Length buttons: notes on the upper row, rests on the lower, longest first. The
  // rests from the seventh on sit a pixel or two right of the notes above them.
  constexpr int kNoteLefts[16] = {241, 266, 283, 308, 325, 350, 367, 384, 401, 426, 443, 459, 483, 499, 523, 540};
  constexpr int kRestLefts[16] = {241, 266, 283, 308, 325, 350, 368, 385, 402, 427, 444, 460, 485, 501, 525, 541};
  constexpr int kLengthWidths[16] = {24, 16, 24, 16, 24, 16, 16, 16, 24, 16, 16, 24, 16, 24, 16, 24};
  constexpr std::string_view kNoteIcons[16] = {"n0", "n1", "n2", "n3", "n4", "n5", "n6", "n7",
                                               "n8", "n9", "nA", "nB", "nC", "nD", "nE", "nF"};
  constexpr std::string_view kRestIcons[16] = {"r0", "r1", "r2", "r3", "r4", "r5", "r6", "r7",
                                               "r8", "r9", "rA", "rB", "rC", "rD", "rE", "rF"};
  for (int row = 0; row < 2; ++row)
    for (int i = 0; i < 16; ++i)
      add({.ref = {LengthButton, row * 16 + i}, .kind = K::BevelButton,
           .place = {(row ? kRestLefts : kNoteLefts)[i], row ? 268 : 241, kLengthWidths[i], 26},
           .icon = (row ? kRestIcons : kNoteIcons)[i], .font = {FontFace::FixedWidth, 12},
           .textColour = kInk, .alignment = Alignment::Centre, .startValue = row == 0 && i == 4});

  constexpr std::string_view kVelocityCaptions[9] = {"ppp", "pp", "p", "mp", "m", "mf", "f", "ff", "fff"};
  for (int i = 0; i < 9; ++i)
    add({.ref = {VelocityButton, i}, .kind = K::BevelButton,
         .place = {148 + 23 * (i % 3), 241 + 18 * (i / 3), 22, 17}, .caption = kVelocityCaptions[i],
         .font = {FontFace::Proportional, i == 0 ? 9 : 10}, .textColour = kInk,
         .alignment = Alignment::Centre, .startValue = i == 4});

  // The articulation buttons stand in a box drawn around them, not inside it: their
  // labels reach a pixel past its edge.
  add({.ref = {ArticulationGroup}, .kind = K::GroupBox, .place = {65, 238, 72, 62},
       .visibility = Visibility::AfterStartPause});
  constexpr std::string_view kArticulationCaptions[3] = {"Sta", "Nor", "Leg"};
  constexpr int kArticulationTops[3] = {241, 258, 276};
  for (int i = 0; i < 3; ++i) {
    Control radio = Radio({ArticulationButton, i}, {68, kArticulationTops[i], 20, 20}, Window, i == 2);
    radio.caption = kArticulationCaptions[i];
    add(radio);
  }
  constexpr Place kArticulationLabelPlaces[3] = {{87, 243, 50, 19}, {86, 260, 50, 19}, {88, 278, 50, 19}};
  constexpr std::string_view kArticulationNames[3] = {"スタカート", "ノーマル", "レガート"};
  for (int i = 0; i < 3; ++i) {
    Control label = Caption({ArticulationLabel, i}, kArticulationLabelPlaces[i], kArticulationNames[i]);
    label.font.points = 10;
    add(label);
  }

  // Drawn buttons; each shows its pressed picture while held.
  add({.ref = {TransportButton, 0}, .kind = K::Canvas, .place = {906, 268, 36, 36}, .tooltip = "再生",
       .picture = "PlayButton"});
  add({.ref = {TransportButton, 1}, .kind = K::Canvas, .place = {869, 268, 36, 36}, .tooltip = "再生中止",
       .picture = "StopButton"});
  add({.ref = {TransportButton, 2}, .kind = K::Canvas, .place = {832, 268, 36, 36},
       .tooltip = "リストを順繰り再生", .picture = "RepeatButton"});
  add({.ref = {ConversionButton, 0}, .kind = K::Canvas, .place = {589, 260, 35, 35},
       .tooltip = "楽譜をMIDIに変換", .picture = "ChangeMidi0"});
  add({.ref = {ConversionButton, 1}, .kind = K::Canvas, .place = {624, 260, 35, 35}, .tooltip = "MIDI再生",
       .picture = "PlayMidi0"});
  add({.ref = {ConversionButton, 2}, .kind = K::Canvas, .place = {659, 260, 35, 35},
       .tooltip = "MIDIをAIFFに変換", .picture = "MidiToAiff0"});
  add({.ref = {ConversionButton, 3}, .kind = K::Canvas, .place = {694, 260, 35, 35}, .tooltip = "AIFF再生",
       .picture = "PlayAiff0"});
  add(Caption({ConversionCaption}, {603, 236, 115, 17}, "MIDI、AIFに変換再生"));

  add({.ref = {VolumeSlider}, .kind = K::Slider, .place = {832, 235, 120, 22},
       .visibility = Visibility::AfterStartPause, .startValue = 5, .range = {0, 9, 1, 1}});
  add({.ref = {TempoSlider}, .kind = K::Slider, .place = {832, 259, 120, 15},
       .visibility = Visibility::AfterStartPause, .startValue = 7, .range = {0, 15, 1, 1}});
  add(Caption({VolumeCaption}, {791, 235, 30, 16}, "音量"));
  add(Caption({TempoCaption}, {789, 252, 30, 16}, "テンポ"));
  add({.ref = {TempoSliderNumber}, .kind = K::Label, .place = {958, 247, 35, 22}, .caption = "110",
       .font = kFigureFont, .textColour = kYellow});
  // The picture follows the volume; this one shows the start volume.
  add(Picture({Speaker}, {964, 229, 25, 24}, "Speaker2"));

  constexpr int kTuningLefts[12] = {273, 326, 379, 432, 484, 536, 588, 641, 694, 747, 800, 853};
  // One name over each column of fields: a single caption spaced by blanks drifts off
  // its columns in any face whose blank is not as wide as the one it was spaced for.
  constexpr std::string_view kNoteNames[12] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
  for (int i = 0; i < 12; ++i) {
    Control name = Caption({NoteNamesCaption, i}, {kTuningLefts[i], 305, 50, 18}, kNoteNames[i]);
    name.alignment = Alignment::Centre;
    add(name);
  }
  for (int i = 0; i < 12; ++i)
    add({.ref = {RatioField, i}, .kind = K::TextField, .place = {kTuningLefts[i], 323, 50, 16},
         .font = {FontFace::System, 10}, .textColour = 0xfffefe, .backColour = 0x4c4c4c,
         .alignment = Alignment::Right});
  for (int i = 0; i < 12; ++i)
    add({.ref = {FrequencyField, i}, .kind = K::TextField, .place = {kTuningLefts[i], 342, 50, 16},
         .font = {FontFace::System, 10}, .textColour = 0xfeffff, .backColour = 0x000000,
         .alignment = Alignment::Right});
  add(Caption({RatioCaption}, {212, 323, 50, 14}, "周波数比"));
  add(Caption({FrequencyCaption}, {206, 339, 65, 14}, "(周波数Hz)"));

  add(Caption({LibraryCaption}, {1054, 13, 70, 16}, "楽譜集"));
  constexpr int kGenreTops[10] = {37, 50, 63, 76, 89, 101, 113, 125, 137, 149};
  constexpr std::string_view kGenreCaptions[10] = {
      "00：クラッシック(バロック)", "01：クラッシック(古典派)", "02：クラッシック(ロマン派)",
      "03：クラシック(後期ロマン派/国民楽派)", "04：クラッシック(近代/現代)", "05:ポピュラー/バラード",
      "06：ロック/ロックンロール", "07：ジャズ/フージョン", "08：カントリー/民族音楽",
      "09:その他のジャンル"};
  for (int i = 0; i < 10; ++i)
    add({.ref = {GenreButton, i}, .kind = K::BevelButton, .place = {1013, kGenreTops[i], 164, 14},
         .caption = kGenreCaptions[i], .font = kButtonFont, .textColour = kInk, .startValue = i == 0});
  add({.ref = {ScoreList}, .kind = K::List, .place = {1013, 163, 164, 154}, .icon = "ListBack",
       .font = kButtonFont, .textColour = kInk, .visibility = Visibility::AfterStartPause});

  add(Picture({ViolinCanvas}, {210, 352, 940, 400}, "Violin"));
  Control bow = Picture({BowCanvas}, {844, 431, 5, 270}, "Bow", ViolinCanvas);
  bow.visibility = Visibility::Hidden;
  add(bow);
  // The status panel reaches a little left of the violin, so it is the window's child.
  add(Picture({StatusPanel}, {199, 368, 160, 30}, "Display2"));
  Control loading = Caption({LoadingLabel}, {218, 373, 110, 20}, "楽譜読み込み中", StatusPanel);
  loading.textColour.reset();
  loading.visibility = Visibility::Hidden;
  add(loading);
  Control midiPlaying = Caption({MidiPlayingLabel}, {243, 373, 100, 20}, "Midi 再生中  ! ! ", StatusPanel);
  midiPlaying.textColour.reset();
  midiPlaying.visibility = Visibility::Hidden;
  add(midiPlaying);
  Control scorePlaying = Caption({ScorePlayingLabel}, {241, 373, 100, 20}, "楽譜　演奏中  ! ! ", StatusPanel);
  scorePlaying.textColour = 0xff0080;
  scorePlaying.visibility = Visibility::Hidden;
  add(scorePlaying);
  add(Picture({KeyPanel}, {33, 368, 160, 30}, "Display2"));
  Control keyName = Caption({KeyNameLabel}, {33, 373, 160, 20}, "ハ長調(C)/イ短調(A)", KeyPanel);
  keyName.textColour = kPanelCyan;
  keyName.alignment = Alignment::Centre;  // in the middle of its panel, clear of the rim
  add(keyName);

  add(Caption({ModeCaption}, {42, 472, 40, 18}, "モード"));
  add({.ref = {ModeGroup}, .kind = K::GroupBox, .place = {34, 491, 63, 50},
       .visibility = Visibility::AfterStartPause});
  add(Radio({ModeButton, 1}, {38, 495, 20, 20}, ModeGroup, true));
  add(Radio({ModeButton, 0}, {38, 517, 20, 20}, ModeGroup, false));
  add(Caption({ModeLabel, 1}, {61, 497, 25, 14}, "演奏", ModeGroup));
  add(Caption({ModeLabel, 0}, {61, 519, 25, 14}, "編集", ModeGroup));
  add({.ref = {PlaybackModeGroup}, .kind = K::GroupBox, .place = {33, 545, 88, 49},
       .visibility = Visibility::AfterStartPause});
  add(Radio({PlaybackModeButton, 0}, {38, 550, 20, 20}, PlaybackModeGroup, true));
  add(Radio({PlaybackModeButton, 1}, {38, 571, 20, 20}, PlaybackModeGroup, false));
  add(Caption({PlaybackModeLabel, 0}, {61, 553, 55, 14}, "マニュアル", PlaybackModeGroup));
  add(Caption({PlaybackModeLabel, 1}, {61, 574, 30, 14}, "ライブ", PlaybackModeGroup));
  add({.ref = {PositionGroup}, .kind = K::GroupBox, .place = {120, 470, 74, 109},
       .visibility = Visibility::AfterStartPause});
  add(Caption({PositionCaption}, {127, 475, 60, 14}, "ポシション", PositionGroup));
  constexpr int kPositionTops[3] = {495, 520, 543};
  constexpr Place kPositionLabelPlaces[3] = {{156, 497, 25, 20}, {157, 519, 25, 20}, {157, 543, 25, 20}};
  constexpr std::string_view kPositionNames[3] = {"1st", "3rd", "5th"};
  for (int i = 0; i < 3; ++i) add(Radio({PositionButton, i}, {131, kPositionTops[i], 23, 23}, PositionGroup, i == 0));
  for (int i = 0; i < 3; ++i) {
    Control label = Caption({PositionLabel, i}, kPositionLabelPlaces[i], kPositionNames[i], PositionGroup);
    label.font.points = 14;
    add(label);
  }

  add(Caption({InstrumentCaption}, {41, 673, 50, 16}, "楽器"));
  add({.ref = {InstrumentGroupMenu}, .kind = K::MenuButton, .place = {82, 674, 65, 16}, .caption = "ピアノ系",
       .font = kFixedButtonFont, .textColour = kInk});
  add({.ref = {InstrumentMenu}, .kind = K::MenuButton, .place = {39, 696, 140, 16},
       .caption = "グランドピアノ", .font = kFixedButtonFont, .textColour = kInk});

  constexpr std::string_view kWindowButtonPictures[3] = {"ButtonR", "ButtonY", "ButtonG"};
  for (int i = 0; i < 3; ++i) add(Picture({WindowButton, i}, {20 + 19 * i, 6, 19, 24}, kWindowButtonPictures[i]));
  add({.ref = {AppNameLabel}, .kind = K::Label, .place = {540, 6, 120, 22}, .caption = "Lirenza",
       .font = {FontFace::System, 18, true}, .textColour = kCyan});
  add({.ref = {PlayerNameLabel}, .kind = K::Label, .place = {8, 752, 300, 22}, .caption = "Player",
       .font = {FontFace::System, 18}, .textColour = kCyan});
  add(Picture({BackPictureButton}, {1122, 665, 60, 60}, "musi1"));
  Control backCaption = Caption({BackPictureCaption}, {1132, 726, 41, 12}, "Player");
  backCaption.textColour = kPanelCyan;
  add(backCaption);
  // Between the drawn window buttons and the program's name: the window has no frame
  // of the desktop's, so its menus stand on its own wood.
  add({.ref = {MenuBarStrip}, .kind = K::Canvas, .place = {84, 6, 440, 22}});
  return t;
}

const std::vector<Control>& Table() {
  static const std::vector<Control> table = BuildTable();
  return table;
}

}  // namespace

std::string_view DesignedFaceName(FontFace face) {
  switch (face) {
    case FontFace::Proportional: return "Osaka";
    case FontFace::FixedWidth: return "Osaka−等幅";
    case FontFace::System: return "System";
  }
  return {};
}

std::string_view StandInFace(FontFace face) {
  // IPAexGothic has proportional kana and Latin; IPAGothic keeps every glyph on one
  // width, which the length buttons and instrument menus were laid out for.
  return face == FontFace::FixedWidth ? "IPAGothic" : "IPAexGothic";
}

std::span<const Control> AllControls() { return Table(); }

const Control* FindControl(ControlId id, int index) {
  for (const Control& c : Table())
    if (c.ref == ControlRef{id, index}) return &c;
  return nullptr;
}

const Control& ControlAt(ControlId id, int index) {
  if (const Control* c = FindControl(id, index)) return *c;
  throw std::out_of_range("no control " + std::string(IdName(id)) + "(" + std::to_string(index) + ")");
}

int FamilySize(ControlId id) {
  int n = 0;
  for (const Control& c : Table()) n += c.ref.id == id;
  return n;
}

std::string_view IdName(ControlId id) {
  switch (id) {
#define LIRENZA_NAME(x) case ControlId::x: return #x;
    LIRENZA_NAME(Window) LIRENZA_NAME(StaffHead) LIRENZA_NAME(TempoMark) LIRENZA_NAME(TempoNumber)
    LIRENZA_NAME(TempoWord) LIRENZA_NAME(KeySignature) LIRENZA_NAME(TimeSignature) LIRENZA_NAME(StaffCanvas)
    LIRENZA_NAME(NoteTemplate) LIRENZA_NAME(StaffEnd) LIRENZA_NAME(StaffScrollBar) LIRENZA_NAME(TitleCaption)
    LIRENZA_NAME(TitleField) LIRENZA_NAME(ComposerField) LIRENZA_NAME(LengthButton) LIRENZA_NAME(VelocityButton)
    LIRENZA_NAME(ArticulationButton) LIRENZA_NAME(ArticulationLabel) LIRENZA_NAME(ArticulationGroup)
    LIRENZA_NAME(TransportButton) LIRENZA_NAME(ConversionButton) LIRENZA_NAME(ConversionCaption)
    LIRENZA_NAME(VolumeSlider) LIRENZA_NAME(TempoSlider) LIRENZA_NAME(VolumeCaption) LIRENZA_NAME(TempoCaption)
    LIRENZA_NAME(TempoSliderNumber) LIRENZA_NAME(Speaker) LIRENZA_NAME(NoteNamesCaption) LIRENZA_NAME(RatioField)
    LIRENZA_NAME(FrequencyField) LIRENZA_NAME(RatioCaption) LIRENZA_NAME(FrequencyCaption)
    LIRENZA_NAME(LibraryCaption) LIRENZA_NAME(GenreButton) LIRENZA_NAME(ScoreList) LIRENZA_NAME(ViolinCanvas)
    LIRENZA_NAME(BowCanvas) LIRENZA_NAME(StatusPanel) LIRENZA_NAME(LoadingLabel) LIRENZA_NAME(MidiPlayingLabel)
    LIRENZA_NAME(ScorePlayingLabel) LIRENZA_NAME(KeyPanel) LIRENZA_NAME(KeyNameLabel) LIRENZA_NAME(ModeCaption)
    LIRENZA_NAME(ModeGroup) LIRENZA_NAME(ModeButton) LIRENZA_NAME(ModeLabel) LIRENZA_NAME(PlaybackModeGroup)
    LIRENZA_NAME(PlaybackModeButton) LIRENZA_NAME(PlaybackModeLabel) LIRENZA_NAME(PositionGroup)
    LIRENZA_NAME(PositionCaption) LIRENZA_NAME(PositionButton) LIRENZA_NAME(PositionLabel)
    LIRENZA_NAME(InstrumentCaption) LIRENZA_NAME(InstrumentGroupMenu) LIRENZA_NAME(InstrumentMenu)
    LIRENZA_NAME(WindowButton) LIRENZA_NAME(AppNameLabel) LIRENZA_NAME(PlayerNameLabel)
    LIRENZA_NAME(BackPictureButton) LIRENZA_NAME(BackPictureCaption) LIRENZA_NAME(MenuBarStrip)
#undef LIRENZA_NAME
  }
  return "?";
}

}  // namespace lirenza::layout
