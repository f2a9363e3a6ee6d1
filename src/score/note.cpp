#include "score/note.h"

#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

void FillFromToken(Note& note, std::string_view tokenText) {
  // The token may be a view of the note's own token: copy it before the note changes.
  const std::string copy(tokenText);
  const std::string_view token = copy;
  note.token = copy;
  std::string_view name = token.size() >= 2 ? token.substr(0, token.size() - 2) : std::string_view{};
  std::string_view base = name.substr(0, 2);
  note.linePitch = NaturalPitchOfName(base);
  note.accidental = AccidentalOfName(name);
  note.accidentalSign = SignOfName(name);
  note.pitch = ClampToInt(static_cast<long long>(note.linePitch) + note.accidental + note.keyShift);
  note.velocityDigit = token.size() >= 2 ? std::string(token.substr(token.size() - 2, 1)) : std::string();
  note.durationDigit = token.empty() ? std::string() : std::string(token.substr(token.size() - 1));
}

std::string StoredPicture(const Note& note) {
  return NotePictureName(note.IsRest() ? 'r' : note.stemDown ? 'u' : 'n', note.durationDigit);
}

void RespellToken(Note& note) {
  note.pitch = ClampToInt(static_cast<long long>(note.linePitch) + note.accidental + note.keyShift);
  note.token = PitchName(note.pitch, note.accidental) + note.velocityDigit + note.durationDigit;
}

}  // namespace lirenza
