#pragma once
// Desktop fakes: players, fingerboard and staff view share one log, in call order.
#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tuning/pure_scale.h"
#include "violin/playback.h"
#include "ports/ports.h"

namespace lirenza::testing {

using Log = std::vector<std::string>;

// p(i) sits a little above i semitones, so a pitch that skipped the table shows up:
// players log "p(60)" for a pitch from the table, the raw number otherwise.
inline TuningTables MarkedTuning() {
  TuningTables t;
  for (int i = 0; i < kPitchTableSize; ++i) t.pitches[i] = i * 256LL + 3;
  return t;
}
inline std::string PitchText(int p) { return p % 256 == 3 ? "p(" + std::to_string(p / 256) + ")" : std::to_string(p); }

struct FakePlayer : NotePlayer {
  FakePlayer(Log& log, int id) : log_(log), name_("player" + std::to_string(id) + " ") {}
  void Instrument(int number) override { log_.push_back(name_ + "inst " + std::to_string(number)); }
  void PlayNote(int pitch, int velocity) override {
    log_.push_back(name_ + PitchText(pitch) + " " + std::to_string(velocity)), notes.push_back({pitch, velocity});
  }
  // Pitches started and not ended again by the end of the list.
  std::vector<int> StillSounding() const {
    std::vector<int> open;
    for (auto [pitch, velocity] : notes) velocity > 0 ? open.push_back(pitch) : (void)std::erase(open, pitch);
    return open;
  }
  std::vector<std::pair<int, int>> notes;  // (pitch, velocity) in call order
  Log& log_;
  std::string name_;
};

struct FakeFingerboard : FingerboardView {
  explicit FakeFingerboard(Log& log) : log_(log) {}
  void ShowFinger(int string, int cell) override { log_.push_back("G " + Place(string, cell)); }
  void HideFinger(int string, int cell) override { log_.push_back("GF " + Place(string, cell)); }
  void ShowCleanViolin() override { log_.push_back("clean"); }
  static std::string Place(int string, int cell) { return std::to_string(string) + "/" + std::to_string(cell); }
  Log& log_;
};

struct FakeKeys : KeyState {
  bool AsyncKeyDown(int code) const override { return down.count(code) != 0; }
  std::set<int> down;
};

struct FakeClock : Clock {
  long long Ticks() const override { return static_cast<long long>(now * 60 / 1e6); }
  double Microseconds() const override { return now; }
  double now = 1e9;  // far from zero, so elapsed time and raw clock differ
};

// Every player and the fingerboard on one log.
struct FakeSound {
  Log log;
  std::vector<FakePlayer> players;
  FakeFingerboard view{log};
  SoundPorts ports;
  FakeSound() {
    for (int k = 0; k < kNotePlayers; ++k) players.emplace_back(log, k);  // all first: no reallocation
    for (int k = 0; k < kNotePlayers; ++k) ports.players[k] = &players[k];
    ports.view = &view;
  }
  // Lines of the fingerboard only: "G s/c" shown, "GF s/c" taken away, "clean".
  Log Fingerboard() const { return Lines([](const std::string& l) { return l.rfind("player", 0) != 0; }); }
  Log Of(int id) const {
    const std::string prefix = "player" + std::to_string(id) + " ";
    return Lines([&](const std::string& l) { return l.rfind(prefix, 0) == 0; });
  }
  Log Lines(auto keep) const {
    Log out;
    std::copy_if(log.begin(), log.end(), std::back_inserter(out), keep);
    return out;
  }
};

struct FakeStaffView : StaffDisplay {
  explicit FakeStaffView(Log& log) : log_(log) {}
  void RefreshNote(int index) override { log_.push_back("refresh " + std::to_string(index)); }
  void RefreshStaff() override { log_.push_back("refresh staff"); }
  Log& log_;
};

// Each row a score that SetNotes loads onto the staff.
struct FakeScoreList : ScoreList {
  FakeScoreList(Log& log, Staff& staff, const Modes& modes) : log_(log), staff_(staff), modes_(modes) {}
  int Rows() const override { return static_cast<int>(scores.size()); }
  int SelectedRow() const override { return selected; }
  void Select(int row) override { selected = row, log_.push_back("select " + std::to_string(row)); }
  void SetNotes() override {
    log_.push_back("load " + std::to_string(selected) + (modes_.loading ? " reading" : ""));
    staff_.notes.resize(1);
    if (selected < 0 || selected >= Rows()) return;  // a wrong row loads an empty staff
    for (const Note& n : scores[selected]) staff_.AddNote(n);
  }
  std::vector<std::vector<Note>> scores;
  int selected = 0;
  Log& log_;
  Staff& staff_;
  const Modes& modes_;
};

struct FakeConfirm : Confirm {
  bool Ask(const std::string& message, const std::string&, const std::string&) override {
    return asked.push_back(message), answer;
  }
  bool answer = true;
  std::vector<std::string> asked;
};

}  // namespace lirenza::testing
