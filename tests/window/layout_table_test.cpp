// The layout table against itself, the pictures and the logic's own numbers: a control
// that slips off the window, two buttons drawn over each other, a picture that would
// be stretched, or a staff whose pixels differ from the grid would all show on screen.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "picture_list.h"
#include "score/staff.h"
#include "violin/fingerboard.h"
#include "violin/tempo_table.h"
#include "window/layout_table.h"

namespace lirenza::layout {
namespace {

std::string Name(const Control& c) { return std::string(IdName(c.ref.id)) + "(" + std::to_string(c.ref.index) + ")"; }

TEST(LayoutTable, EveryControlIsMadeAfterItsParentAndLiesInsideIt) {
  const Place window{0, 0, kWindowWidth, kWindowHeight};
  std::set<ControlId> made;
  for (const Control& c : AllControls()) {
    EXPECT_GT(c.place.width, 0) << Name(c);
    EXPECT_GT(c.place.height, 0) << Name(c);
    if (c.parent == ControlId::Window) {
      EXPECT_TRUE(window.Contains(c.place)) << Name(c);
    } else {
      EXPECT_TRUE(made.contains(c.parent)) << Name(c) << " comes before its parent";
      const Control* parent = FindControl(c.parent);
      ASSERT_NE(parent, nullptr) << Name(c);
      EXPECT_TRUE(parent->place.Contains(c.place)) << Name(c) << " sticks out of " << IdName(c.parent);
    }
    made.insert(c.ref.id);
  }
}

TEST(LayoutTable, IdentifiersAreUniqueAndFamiliesCountFromZero) {
  std::map<ControlId, std::set<int>> indexes;
  std::set<std::string_view> names;
  for (const Control& c : AllControls()) {
    EXPECT_TRUE(indexes[c.ref.id].insert(c.ref.index).second) << Name(c) << " twice";
    names.insert(IdName(c.ref.id));
  }
  for (const auto& [id, members] : indexes) {
    EXPECT_EQ(*members.rbegin() + 1, int(members.size())) << IdName(id) << " has a gap";
    EXPECT_EQ(FamilySize(id), int(members.size()));
  }
  EXPECT_EQ(names.size(), indexes.size()) << "two identifiers print the same name";
  EXPECT_EQ(FindControl(ControlId::LengthButton, 32), nullptr);
  EXPECT_THROW(ControlAt(ControlId::GenreButton, 10), std::out_of_range);
}

// Controls that stand side by side. Stacked columns (the genre buttons, the
// articulation buttons) overlap their neighbours by a pixel or three, as laid out.
TEST(LayoutTable, ControlsSideBySideDoNotOverlap) {
  using enum ControlId;
  const std::vector<std::vector<ControlId>> groups = {
      {LengthButton}, {VelocityButton},
      {NoteNamesCaption, RatioField, FrequencyField}, {TransportButton, ConversionButton}, {WindowButton, MenuBarStrip, AppNameLabel},
      {ModeButton, ModeLabel}, {PlaybackModeButton, PlaybackModeLabel}, {PositionButton, PositionLabel},
      {VolumeSlider, TempoSlider}, {InstrumentGroupMenu, InstrumentMenu}, {StatusPanel, KeyPanel},
      {TitleField, ComposerField}};
  for (const auto& group : groups) {
    std::vector<const Control*> members;
    for (const Control& c : AllControls())
      if (std::find(group.begin(), group.end(), c.ref.id) != group.end()) members.push_back(&c);
    ASSERT_GE(members.size(), 2u) << IdName(group[0]);
    for (size_t i = 0; i < members.size(); ++i)
      for (size_t j = i + 1; j < members.size(); ++j)
        EXPECT_FALSE(members[i]->place.Overlaps(members[j]->place)) << Name(*members[i]) << " and " << Name(*members[j]);
  }
}

TEST(LayoutTable, PicturesExistAndCanvasesHaveTheirPicturesSize) {
  std::map<std::string, pictures::PictureSize> sizes;
  for (const auto& spec : pictures::AllPictures()) sizes[spec.name] = spec.size;
  int named = 0;
  for (const Control& c : AllControls()) {
    for (std::string_view name : {c.picture, c.icon}) {
      if (name.empty()) continue;
      ++named;
      EXPECT_TRUE(sizes.contains(std::string(name))) << Name(c) << " names " << name;
    }
    if (c.picture.empty() || !sizes.contains(std::string(c.picture))) continue;
    EXPECT_EQ(c.kind, ControlKind::Canvas) << Name(c);
    const auto size = sizes[std::string(c.picture)];
    EXPECT_EQ(size.width, c.place.width) << Name(c) << " " << c.picture;
    EXPECT_EQ(size.height, c.place.height) << Name(c) << " " << c.picture;
  }
  EXPECT_GT(named, 40);
}

TEST(LayoutTable, StaffAndFingerboardAgreeWithTheLogic) {
  using enum ControlId;
  const Place staff = ControlAt(StaffCanvas).place;
  EXPECT_EQ(staff.left, kViewLeft);
  EXPECT_EQ(staff.Right(), kViewRight);
  const Control& note = ControlAt(NoteTemplate);
  EXPECT_EQ(note.place, (Place{kTemplateLeft, staff.top, kNoteWidth, kNoteHeight}));
  EXPECT_TRUE(staff.Contains({note.place.left, kTemplateTop, kNoteWidth, kNoteHeight}));
  EXPECT_TRUE(staff.Contains({note.place.left, kNoteTopMax, kNoteWidth, kNoteHeight})) << "the lowest note is cut off";
  const Control& scroll = ControlAt(StaffScrollBar);
  EXPECT_EQ(scroll.range.maximum, kScrollMaximum);
  EXPECT_EQ(scroll.range.lineStep, kBarWidth);
  EXPECT_EQ(scroll.range.pageStep, 2 * kBarWidth);
  EXPECT_EQ(scroll.place.width + kScrollMaximum, pictures::kSheetSize.width) << "the staff picture ends with the scroll";

  const Place violin = ControlAt(ViolinCanvas).place;
  const Place inCanvas{0, 0, violin.width, violin.height};
  for (int string = 1; string <= 4; ++string)
    for (int cell = 0; cell < kFirstUndrawnCell; ++cell) {
      const HandGeometry g = HandGeometryAt(string, cell);
      EXPECT_TRUE(inCanvas.Contains({g.finger.x, g.finger.y, g.finger.width, g.finger.height})) << string << "/" << cell;
      EXPECT_TRUE(inCanvas.Contains({g.string.x, g.string.y, g.string.width, g.string.height})) << string << "/" << cell;
    }
}

TEST(LayoutTable, StartValuesMatchWhatTheLogicShowsForThem) {
  using enum ControlId;
  const Control& tempo = ControlAt(TempoSlider);
  EXPECT_EQ(tempo.startValue, kTempoSliderStart);
  EXPECT_EQ(tempo.range.maximum, kTempoSliderMax);
  const TempoRow row = TempoForSlider(tempo.startValue);
  EXPECT_EQ(ControlAt(TempoSliderNumber).caption, std::to_string(row.number));
  EXPECT_EQ(ControlAt(TempoWord).caption, row.term);
  EXPECT_EQ(ControlAt(Speaker).picture, SpeakerPicture(VolumeLevel(ControlAt(VolumeSlider).startValue)));

  // Exactly one member is on in each group the user picks one from; the rest row
  // has none, since a length is picked from the notes at start.
  std::map<std::string, int> on;
  for (const Control& c : AllControls())
    if (c.kind == ControlKind::BevelButton || c.kind == ControlKind::RadioButton)
      on[std::string(IdName(c.ref.id)) + (c.ref.id == LengthButton && c.ref.index >= 16 ? " rests" : "")] +=
          c.startValue;
  for (const auto& [group, count] : on) EXPECT_EQ(count, group == "LengthButton rests" ? 0 : 1) << group;
  EXPECT_EQ(on.size(), 8u);
}

}  // namespace
}  // namespace lirenza::layout
