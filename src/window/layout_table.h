#pragma once
// Every control of the main window as data: what it is, where it stands, what it
// shows at start, and in which font and colours. The window builds its widgets from
// this table and the layout test walks it, so a place is written down exactly once.
// Plain C++: the picture generator and the tests read it without a display.
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace lirenza::layout {

inline constexpr int kWindowWidth = 1210;
inline constexpr int kWindowHeight = 780;
inline constexpr std::string_view kWindowTitle = "Lirenza";
inline constexpr std::uint32_t kWindowBackground = 0x191919;  // under the back picture

// What a control is. Controls that belong together share an identifier and differ by
// index (the sixteen length buttons of a row, the twelve tuning fields), and such a
// family shares one handler that reads the index.
enum class ControlId {
  Window,  // only ever a parent
  // The staff and its head.
  StaffHead, TempoMark, TempoNumber, TempoWord, KeySignature, TimeSignature,
  StaffCanvas, NoteTemplate, StaffEnd, StaffScrollBar,
  TitleCaption, TitleField, ComposerField,
  // Note entry: 0-15 note lengths, 16-31 rest lengths, shortest last in each row.
  LengthButton, VelocityButton,
  ArticulationButton, ArticulationLabel, ArticulationGroup,  // 0 staccato, 1 normal, 2 legato
  // Playback and conversion.
  TransportButton,   // 0 play, 1 stop, 2 play the list in turn
  ConversionButton,  // 0 score to MIDI, 1 play MIDI, 2 MIDI to AIFF, 3 play AIFF
  ConversionCaption,
  VolumeSlider, TempoSlider, VolumeCaption, TempoCaption, TempoSliderNumber, Speaker,
  // Tuning table: the twelve notes from C, name above ratio above frequency.
  NoteNamesCaption, RatioField, FrequencyField, RatioCaption, FrequencyCaption,
  // Score library.
  LibraryCaption, GenreButton, ScoreList,
  // Violin and status panels.
  ViolinCanvas, BowCanvas, StatusPanel, LoadingLabel, MidiPlayingLabel, ScorePlayingLabel,
  KeyPanel, KeyNameLabel,
  // Modes: index 1 plays from the keyboard, 0 edits; playback 0 manual, 1 live.
  ModeCaption, ModeGroup, ModeButton, ModeLabel,
  PlaybackModeGroup, PlaybackModeButton, PlaybackModeLabel,
  PositionGroup, PositionCaption, PositionButton, PositionLabel,  // 0 first, 1 third, 2 fifth
  // Instruments.
  InstrumentCaption, InstrumentGroupMenu, InstrumentMenu,
  // The frame: 0 close, 1 minimise, 2 the zoom button that does nothing.
  WindowButton, AppNameLabel, PlayerNameLabel, BackPictureButton, BackPictureCaption,
  MenuBarStrip,  // the free strip of the frame's top edge where the menu bar sits
};

struct ControlRef {
  ControlId id = ControlId::Window;
  int index = 0;
  bool operator==(const ControlRef&) const = default;
};

enum class ControlKind {
  Canvas,       // draws itself, mostly from one picture
  NoteCanvas,   // one note of the staff
  Label,
  TextField,
  ScrollBar,
  Slider,
  RadioButton,
  BevelButton,  // a push button that stays on or off, with a caption or an icon
  MenuButton,   // a bevel button that opens a menu and shows the chosen entry
  GroupBox,
  List,
};

// Window pixels, whatever the parent: a child's place is not relative to its parent.
struct Place {
  int left = 0, top = 0, width = 0, height = 0;
  constexpr int Right() const { return left + width; }
  constexpr int Bottom() const { return top + height; }
  constexpr bool Contains(const Place& inner) const {
    return inner.left >= left && inner.top >= top && inner.Right() <= Right() && inner.Bottom() <= Bottom();
  }
  constexpr bool Overlaps(const Place& other) const {
    return left < other.Right() && other.left < Right() && top < other.Bottom() && other.top < Bottom();
  }
  bool operator==(const Place&) const = default;
};

// The faces the layout was drawn for. Linux has none of them: StandInFace names the
// installed Japanese face that takes each one's place.
enum class FontFace { Proportional, FixedWidth, System };
std::string_view DesignedFaceName(FontFace face);  // the face the pixel places were made with
std::string_view StandInFace(FontFace face);       // the face the window actually uses

struct Font {
  FontFace face = FontFace::Proportional;
  int points = 12;
  bool bold = false;
  bool operator==(const Font&) const = default;
};

enum class Visibility {
  AtStart,          // shown from the first frame
  AfterStartPause,  // shown when the start pause ends, with its children
  Hidden,           // shown only by what it reports (loading, playing), or never
};

enum class Alignment { Left, Centre, Right };

// Value range of a slider or a scroll bar.
struct Range {
  int minimum = 0, maximum = 0, lineStep = 1, pageStep = 1;
};

struct Control {
  ControlRef ref;
  ControlKind kind = ControlKind::Canvas;
  Place place;
  ControlId parent = ControlId::Window;  // parents are never members of a family
  std::string_view caption;  // text shown at start: a caption, a label, a field's text
  std::string_view tooltip;
  std::string_view picture;  // a canvas's picture at rest, as big as the canvas
  std::string_view icon;     // drawn inside a button, or behind the list's rows
  Font font;
  std::optional<std::uint32_t> textColour;  // 0xRRGGBB; none: the toolkit's own
  std::optional<std::uint32_t> backColour;  // none: transparent over the back picture
  Alignment alignment = Alignment::Left;
  Visibility visibility = Visibility::AtStart;
  int startValue = 0;  // on (1) or off (0) for buttons; the value of a slider or scroll bar
  Range range;
};

// Every control, in the order the window creates them: a parent before its children.
std::span<const Control> AllControls();
// The control with this identifier and index; nullptr when there is none.
const Control* FindControl(ControlId id, int index = 0);
// Throws std::out_of_range when there is none: for the window, where a missing row is a bug.
const Control& ControlAt(ControlId id, int index = 0);
// The members of one family, by index.
int FamilySize(ControlId id);
// A readable name of an identifier, for messages and the test.
std::string_view IdName(ControlId id);

// The score list's columns: header and share of the width in percent.
struct ListColumn {
  std::string_view header;
  int percent;
};
inline constexpr ListColumn kScoreListColumns[] = {{"No", 15}, {"曲名", 85}};

}  // namespace lirenza::layout
