#pragma once
// A note player that writes every call to a trace file before passing it on: for seeing
// from outside what a running program sounds, where there is no ear (a test under a
// virtual display, a bug report). One line a call: milliseconds since the trace
// opened, player, pitch in 1/256 semitone, velocity.
#include <chrono>
#include <cstdio>
#include <memory>

#include "ports/note_player.h"

namespace lirenza {

class NoteTrace {
 public:
  explicit NoteTrace(const char* path) : file_(std::fopen(path, "w"), &std::fclose) {}
  bool IsOpen() const { return file_ != nullptr; }
  void Write(const char* what, int player, int a, int b) {
    if (!file_) return;
    const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_).count();
    std::fprintf(file_.get(), "%.3f %d %s %d %d\n", ms, player, what, a, b);
    std::fflush(file_.get());
  }

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

class TracedNotePlayer : public NotePlayer {
 public:
  TracedNotePlayer(NotePlayer& inner, NoteTrace& trace, int player) : inner_(inner), trace_(trace), player_(player) {}
  void Instrument(int number) override {
    trace_.Write("instrument", player_, number, 0);
    inner_.Instrument(number);
  }
  void PlayNote(int pitch, int velocity) override {
    trace_.Write("note", player_, pitch, velocity);
    inner_.PlayNote(pitch, velocity);
  }

 private:
  NotePlayer& inner_;
  NoteTrace& trace_;
  int player_;
};

}  // namespace lirenza
