#include "score/note_cv.h"

#include "score/note_tables.h"
#include "score/text_fields.h"

namespace lirenza {

void FillFromToken(NoteCV& note, std::string_view tokenText) {
  // The token may be a view of the note's own token: copy it before the note changes.
  const std::string copy(tokenText);
  const std::string_view token = copy;
  note.note = copy;
  std::string_view name = token.size() >= 2 ? token.substr(0, token.size() - 2) : std::string_view{};
  std::string_view base = name.substr(0, 2);
  note.nline = NotePit(base);
  note.sf = NoteSf(name);
  note.sib = NoteSib(name);
  note.noteNo = ClampToInt(static_cast<long long>(note.nline) + note.sf + note.ks);
  note.ve = token.size() >= 2 ? std::string(token.substr(token.size() - 2, 1)) : std::string();
  note.dr = token.empty() ? std::string() : std::string(token.substr(token.size() - 1));
}

std::string StoredBackdrop(const NoteCV& note) {
  return NotePictureName(note.IsRest() ? 'r' : note.position ? 'u' : 'n', note.dr);
}

void RepaintToken(NoteCV& note) {
  note.noteNo = ClampToInt(static_cast<long long>(note.nline) + note.sf + note.ks);
  note.note = NoteStr(note.noteNo, note.sf) + note.ve + note.dr;
}

}  // namespace lirenza
