#pragma once
// Fakes that record what the logic asks of the desktop, for asserting every call.
#include <string>
#include <utility>
#include <vector>

#include "violin/ports.h"

namespace lirenza::testing {

struct FakePlayer : NotePlayer {
  std::vector<std::pair<int, int>> notes;  // (pitch, velocity) in call order
  std::vector<int> instruments;
  void Instrument(int number) override { instruments.push_back(number); }
  void PlayNote(int pitch, int velocity) override { notes.push_back({pitch, velocity}); }
  // Pitches started and not ended again by the end of the log.
  std::vector<int> StillSounding() const {
    std::vector<int> open;
    for (auto [pitch, velocity] : notes) {
      if (velocity > 0) open.push_back(pitch);
      else std::erase(open, pitch);
    }
    return open;
  }
};

struct FakeView : FingerboardView {
  std::vector<std::string> calls;
  void LHandG(int s, int c) override { calls.push_back("G " + std::to_string(s) + "/" + std::to_string(c)); }
  void LHandGF(int s, int c) override { calls.push_back("F " + std::to_string(s) + "/" + std::to_string(c)); }
  void ShowCleanViolin() override { calls.push_back("clean"); }
};

struct FakeConfirm : Confirm {
  bool answer = true;
  std::vector<std::string> asked;
  bool Ask(const std::string& message, const std::string&, const std::string&) override {
    asked.push_back(message);
    return answer;
  }
};

struct Rig {
  FakePlayer players[kNotePlayers];
  FakeView view;
  SoundPorts ports;
  Rig() {
    for (int i = 0; i < kNotePlayers; ++i) ports.np[i] = &players[i];
    ports.view = &view;
  }
};

}  // namespace lirenza::testing
