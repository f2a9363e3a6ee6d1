#include "editor/note_menu.h"

#include <array>

#include "editor/note_entry.h"
#include "editor/note_gestures.h"
#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

namespace {

const std::array<const char*, 16> kVolumeItems = {
    "0:休符", "1: - -", "2: - -", "3:ppp", "4: - -", "5:pp", "6: - -", "7:p",
    "8:mp",   "9:m",    "A:mf",   "B:f",   "C: - -", "D:ff", "E: - -", "F:fff"};
const std::array<const char*, 4> kAccidentalItems = {"0:  ", "1:#", "2:b", "3:n"};

std::string LengthItem(int digit) { return Hex(digit) + ":" + std::string(kLengthNames[digit]); }

int IndexOf(const std::string& text, const auto& items) {
  for (std::size_t i = 0; i < items.size(); ++i)
    if (text == items[i]) return static_cast<int>(i);
  return -1;
}

}  // namespace

std::vector<NoteMenu> NoteConstructContextualMenu(const NoteCV& note, const SoundPorts& ports,
                                                   const TuningTables& tuning) {
  if (ports.np[1] && note.noteNo >= 0 && note.noteNo < kPitchTableSize)
    ports.np[1]->PlayNote(static_cast<int>(tuning.p[note.noteNo]), 0);
  NoteMenu volume{kVolumeMenuTitle, {}}, length{kLengthMenuTitle, {}}, accidental{kAccidentalMenuTitle, {}};
  for (const char* item : kVolumeItems)
    volume.items.push_back({item, !note.ve.empty() && EqualsIgnoreCase(std::string_view(item, 1), note.ve.substr(0, 1))});
  for (int d = 0; d < 16; ++d) {
    std::string item = LengthItem(d);
    length.items.push_back({item, !note.dr.empty() && EqualsIgnoreCase(item.substr(0, 1), note.dr.substr(0, 1))});
  }
  length.items.push_back({"-", false});
  length.items.push_back({kConversionItem, false});
  for (int s = 0; s < 4; ++s) accidental.items.push_back({kAccidentalItems[s], note.sib == s});
  return {volume, length, accidental};
}

void RestConversion(NoteCV& note) {
  note.ve = "0";
  note.backdrop = NotePictureName('r', note.dr);
  note.note = NoteStr(note.noteNo, note.sf) + "0" + note.dr;
  note.top = note.top < 117 ? 106 : 142;
}

void NoteConversion(NoteCV& note) {
  note.ve = "9";
  SetNoteFamily(note, MenuFamily(note.top));
}

void NoteContextualMenuAction(NoteCV& note, const std::string& text) {
  // 1. Loudness.
  if (const int v = IndexOf(text, kVolumeItems); v == 0) {
    RestConversion(note);
  } else if (v > 0) {
    note.ve = Hex(v);
  }
  // 2. The repaint brings the token up to date.
  RepaintToken(note);
  // 3. Accidental.
  if (const int s = IndexOf(text, kAccidentalItems); s >= 0) {
    note.sib = s;
    note.sf = s == 0 ? 0 : SfOfSign(s, note.ks, note.sf);
  }
  // 4. Length, or the turn between note and rest, by what the note is now.
  int length = -1;
  for (int d = 0; d < 16; ++d)
    if (text == LengthItem(d)) length = d;
  if (!note.IsRest()) {
    if (length >= 0) {
      note.dr = Hex(length);
      note.backdrop = NotePictureName(note.position ? 'u' : 'n', note.dr);
    } else if (text == kConversionItem) {
      RestConversion(note);
    }
  } else {
    if (length >= 0) {
      note.dr = Hex(length);
      note.backdrop = NotePictureName('r', note.dr);
    } else if (text == kConversionItem) {
      NoteConversion(note);
    }
  }
  // 5. Repaint.
  RepaintToken(note);
}

}  // namespace lirenza
