#pragma once
// Every picture of the window's surface, by the name the window asks for and the
// size its control or its rule fixes. The generator draws exactly this list, the
// picture store checks loaded files against it, and the tests walk it, so a picture
// cannot be added to one of them and forgotten in another.
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace lirenza::pictures {

struct PictureSize {
  int width;
  int height;
};

// Sizes fixed by the controls and the drawing rules of the window.
inline constexpr PictureSize kNoteSize{15, 35};        // every note control
inline constexpr PictureSize kSignSize{5, 24};         // drawn at (0, 6) on a note
inline constexpr PictureSize kStaffHeadSize{75, 150};  // the staff head with the clef
inline constexpr PictureSize kSheetSize{10374, 188};   // 870 in view + 9504 of scrolling
inline constexpr PictureSize kPrintSheetSize{855, 1210};
inline constexpr PictureSize kKeySignatureSize{30, 76};   // the key signature beside the staff
inline constexpr PictureSize kTimeSignatureSize{12, 61};  // the time signature beside the staff
inline constexpr PictureSize kTempoMarkSize{16, 15};      // the tempo mark
inline constexpr PictureSize kRepeatBarSize{10, 150};     // the narrow end of the staff
inline constexpr PictureSize kPlayButtonSize{36, 36};
inline constexpr PictureSize kConversionButtonSize{35, 35};
inline constexpr PictureSize kWindowButtonSize{19, 24};  // the window's own buttons
inline constexpr PictureSize kSpeakerSize{25, 24};
// The list draws one picture behind all its rows, each row showing its own slice, so
// the picture is as wide as the list and long enough for a well filled folder.
inline constexpr PictureSize kListBackSize{164, 3200};
inline constexpr PictureSize kStatusPanelSize{160, 30};
inline constexpr PictureSize kViolinSize{940, 400};
inline constexpr PictureSize kStringSize{530, 3};  // scaled to 620 - x by 3 when drawn
inline constexpr PictureSize kFingertipSize{15, 15};
inline constexpr PictureSize kBowSize{5, 270};
inline constexpr PictureSize kBackSize{1210, 780};
inline constexpr PictureSize kBackButtonSize{60, 60};  // the back-picture choice

inline constexpr int kBackCount = 12;
inline constexpr std::string_view kDigits = "0123456789ABCDEF";

struct PictureSpec {
  std::string name;  // without ".png"
  PictureSize size;
};

// The whole list, in a stable order: notes, staff, signatures, buttons, violin, backs.
inline std::vector<PictureSpec> AllPictures() {
  std::vector<PictureSpec> all;
  for (char family : {'n', 'u', 'r'})
    for (char digit : kDigits) all.push_back({std::string{family, digit}, kNoteSize});
  all.push_back({"nOn", kNoteSize});
  for (const char* sign : {"Sh", "Fl", "Nt"}) all.push_back({sign, kSignSize});
  all.push_back({"Sheet", kStaffHeadSize});
  all.push_back({"Sheet1", kSheetSize});
  all.push_back({"Sheet2", kSheetSize});
  all.push_back({"PSheet", kPrintSheetSize});
  for (int i = 0; i <= 7; ++i) all.push_back({"S" + std::to_string(i), kKeySignatureSize});
  for (int i = 1; i <= 7; ++i) all.push_back({"F" + std::to_string(i), kKeySignatureSize});
  for (int i = 1; i <= 9; ++i) all.push_back({"T" + std::to_string(i), kTimeSignatureSize});
  all.push_back({"Te", kTempoMarkSize});
  all.push_back({"Repeat", kRepeatBarSize});
  for (const char* name : {"PlayButton", "StopButton", "RepeatButton"}) {
    all.push_back({name, kPlayButtonSize});
    all.push_back({std::string(name) + "B", kPlayButtonSize});
  }
  for (const char* name : {"ChangeMidi", "PlayMidi", "MidiToAiff", "PlayAiff"}) {
    all.push_back({std::string(name) + "0", kConversionButtonSize});
    all.push_back({std::string(name) + "1", kConversionButtonSize});
  }
  for (const char* name : {"ButtonR", "ButtonRI", "ButtonRP", "ButtonY", "ButtonYI", "ButtonYP",
                           "ButtonG"})
    all.push_back({name, kWindowButtonSize});
  for (int i = 0; i <= 3; ++i) all.push_back({"Speaker" + std::to_string(i), kSpeakerSize});
  all.push_back({"ListBack", kListBackSize});
  all.push_back({"Display2", kStatusPanelSize});
  all.push_back({"Violin", kViolinSize});
  all.push_back({"Gen", kStringSize});
  all.push_back({"GenS", kStringSize});
  all.push_back({"Yubi", kFingertipSize});
  all.push_back({"Bow", kBowSize});
  for (int i = 0; i < kBackCount; ++i)
    all.push_back({"ViolinBack" + std::to_string(i), kBackSize});
  for (int i = 0; i <= 2; ++i) all.push_back({"musi" + std::to_string(i), kBackButtonSize});
  return all;
}

// The violinists of the twelve back pictures, row n for "ViolinBack<n>.png": the
// names the preferences list shows and the label under the picture reads.
inline constexpr std::array<std::string_view, kBackCount> kPortraitNames = {
    "アルカンジェロ・コレッリ",      "アントニオ・ヴィヴァルディ",
    "ジュゼッペ・タルティーニ",      "ジョヴァンニ・バッティスタ・ヴィオッティ",
    "ニコロ・パガニーニ",            "ルイ・シュポーア",
    "アンリ・ヴュータン",            "ヘンリク・ヴィエニャフスキ",
    "ヨーゼフ・ヨアヒム",            "パブロ・デ・サラサーテ",
    "ウジェーヌ・イザイ",            "フリッツ・クライスラー"};

// The same violinists by family name alone, for the preferences window's narrow list.
inline constexpr std::array<std::string_view, kBackCount> kPortraitShortNames = {
    "コレッリ",   "ヴィヴァルディ", "タルティーニ",     "ヴィオッティ", "パガニーニ", "シュポーア",
    "ヴュータン", "ヴィエニャフスキ", "ヨアヒム", "サラサーテ",   "イザイ",     "クライスラー"};

}  // namespace lirenza::pictures
