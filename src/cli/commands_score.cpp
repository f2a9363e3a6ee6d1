// Subcommands that read or write scores: midi, kestra, scale, inspect.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "files/midi_writer.h"
#include "files/score_file.h"
#include "score/note_tables.h"
#include "tuning/scale_lines.h"
#include "violin/event_list.h"
#include "violin/instrument_table.h"
#include "violin/tempo_table.h"

namespace lirenza::cli {

namespace {

// A freshly opened window, after its start-up pause has filled the two text fields.
Staff FreshStaff() {
  Staff staff;
  staff.title = "曲名";
  staff.comment = "作曲家/解説";
  return staff;
}

void SaveStaff(Staff& staff, const std::string& out) {
  // The window has painted the notes in view by the time anyone can save.
  RespellNotesInView(staff);
  WindowSettings settings;  // group 5 (strings), row 0 (violin), tempo 7
  WriteOutput(out, SaveFileText(staff, settings));
}

}  // namespace

int RunMidi(const Argv& argv) {
  Args args(argv, kOutputOptions, {"--strict"});
  return ForEachScore(args, ".mid", [&](const std::string& in, const std::string& out) {
    const ScoreForOutput score = LoadScoreForOutput(args, in);
    int leftOut = 0;
    const auto bytes = MidiFileBytes(score.staff.notes, score.gate, TempoForSlider(score.tempoSlider).tempo,
                                     score.inst, &leftOut);
    WriteOutput(out, std::string(bytes.begin(), bytes.end()));
    if (leftOut > 0)
      std::cerr << "lirenza-cli midi: " << in << ": " << leftOut
                << (leftOut == 1 ? " note was left out: its note number is" : " notes were left out: their note numbers are")
                << " outside MIDI's 0..127\n";
  });
}

int RunKestra(const Argv& argv) {
  Args args(argv, {"-o", "--title"}, {});
  const std::string line = args.OnePositional("line of note tokens, such as \"C498 D498 E492\"");
  const std::string out = args.Required("-o", "OUT.note");
  // The file format has no escapes: these would shift the fields that follow.
  if (line.find_first_of(";,\n\r") != std::string::npos)
    throw UsageError("note tokens cannot hold \";\", \",\" or a line break; separate tokens by blanks");
  const auto title = args.Value("--title");
  if (title && title->find_first_of(";\n\r") != std::string::npos)
    throw UsageError("--title cannot hold \";\" or a line break; the score file has no way to keep them");
  if (!IsUtf8Text(line) || (title && !IsUtf8Text(*title)))
    throw UsageError("the tokens and the title must be UTF-8 text");
  Staff staff = FreshStaff();
  LoadKestraLine(staff, line);
  const int tokens = line.empty() ? 0 : static_cast<int>(std::count(line.begin(), line.end(), ' ')) + 1;
  if (tokens > kMaxKestraTokens)
    std::cerr << "lirenza-cli kestra: a score holds at most " << kMaxKestraTokens << " tokens; the last "
              << tokens - kMaxKestraTokens << " were left out\n";
  if (title) SetTitle(staff, *title);
  SaveStaff(staff, out);
  return 0;
}

int RunScale(const Argv& argv) {
  Args args(argv, {"-o"}, {"--list"});
  if (args.Flag("--list")) {
    if (!args.Positional().empty()) throw UsageError("--list takes no index");
    for (int i = 0; i < kScaleCount; ++i)
      std::cout << i << '\t' << kScaleLines[i].caption << '\n';
    return 0;
  }
  const int index = ParseInt(args.OnePositional("scale index 0 to 35 (see lirenza-cli scale --list)"), 0,
                             kScaleCount - 1, "the scale index");
  const std::string out = args.Required("-o", "OUT.note");
  Staff staff = FreshStaff();
  LoadKestraLine(staff, kScaleLines[index].line);
  SetTitle(staff, ScaleTitle(index));
  SaveStaff(staff, out);
  return 0;
}

int RunInspect(const Argv& argv) {
  Args args(argv, {}, {"--json", "--strict"});
  const std::string in = args.OnePositional("score file (lirenza-cli inspect SCORE.note)");
  Staff staff;
  ApplyScoreFile(staff, ReadScore(in, args.Flag("--strict")));
  const auto events = BuildEventList(staff.notes, 1.0, 0.95);

  // One row per note in playing order: its on event, and the length until its off.
  struct Row {
    int place;
    double start, length;
    int pitch, velocity;
  };
  std::vector<Row> rows;
  std::map<int, std::size_t> open;
  for (std::size_t i = 1; i < events.size(); ++i) {
    const auto& e = events[i];
    auto it = open.find(e.place);
    if (it == open.end()) {
      open[e.place] = rows.size();
      rows.push_back({e.place, e.time, 0, e.pitch, e.velocity});
    } else {
      rows[it->second].length = e.time - rows[it->second].start;
      open.erase(it);
    }
  }
  const bool json = args.Flag("--json");
  char buf[160];
  if (json) {
    std::cout << "{\"title\":" << JsonString(staff.title) << ",\"keyN\":" << staff.keySignature
              << ",\"timeN\":" << staff.timeSignature << ",\"notes\":[";
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto& r = rows[i];
      std::snprintf(buf, sizeof buf, "%s{\"place\":%d,\"token\":", i ? "," : "", r.place);
      std::cout << buf << JsonString(staff.notes[r.place].token);
      std::snprintf(buf, sizeof buf, ",\"start\":%.0f,\"length\":%.0f,\"pitch\":%d,\"velocity\":%d}", r.start,
                    r.length, r.pitch, r.velocity);
      std::cout << buf;
    }
    std::cout << "],\"events\":[";
    for (std::size_t i = 1; i < events.size(); ++i) {
      const auto& e = events[i];
      std::snprintf(buf, sizeof buf, "%s{\"place\":%d,\"time\":%.0f,\"pitch\":%d,\"velocity\":%d}",
                    i > 1 ? "," : "", e.place, e.time, e.pitch, e.velocity);
      std::cout << buf;
    }
    std::cout << "]}\n";
    return 0;
  }
  std::cout << "# " << TerminalText(staff.title) << " — " << staff.NoteCount() << " notes, " << (events.size() - 1)
            << " events, times in microseconds at tempo factor 1.0, gate 0.95\n";
  std::cout << "place\tstart\tlength\tpitch\tvelocity\ttoken\n";
  for (const auto& r : rows) {
    std::snprintf(buf, sizeof buf, "%d\t%.0f\t%.0f\t%d\t%d\t", r.place, r.start, r.length, r.pitch, r.velocity);
    std::cout << buf << TerminalText(staff.notes[r.place].token) << '\n';
  }
  return 0;
}

}  // namespace lirenza::cli
