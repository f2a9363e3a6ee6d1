#pragma once
// What the menu bar and the shortcuts can ask of the window. The menu bar shows them;
// the panels that carry them out register a handler with the window, so a menu item
// and the panel behind it never know each other. Items of a family (the bar
// commands, the scales, the two bodies) pass their index.
namespace lirenza::window {

enum class MenuCommand {
  OpenScore, SaveScore, SaveMidi, PageSetup, Print,
  Undo, Redo, Cut, Copy, Paste, SelectAll,
  BarCommand,    // index: the bar operation of the edit menu, 0..6
  KeyboardType,  // index: 0 JIS, 1 US; a check mark only
  BodyStyle,     // index: 0 black, 1 white
  Scale,         // index: the scale, 0..35
  Help, About, Preferences,
};

// What happened to the score, for the panels that show it.
enum class ScoreChange {
  Edited,    // notes or signatures changed by the user: undo keeps it, the score is changed
  Replaced,  // a score was opened: undo starts over
  Restored,  // undo or redo put an earlier staff back
  Saved,     // written to disk: the score is no longer changed
};

}  // namespace lirenza::window
