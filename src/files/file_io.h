#pragma once
// Whole-file reading and writing for scores and MIDI files. A write goes to a
// temporary file beside the target and is renamed over it only when complete, so a
// failed save never destroys the old file or leaves half a new one.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lirenza {

// The file's bytes, or nothing with a one-sentence reason in *error.
std::optional<std::string> ReadWholeFile(const std::string& path, std::string* error);

// Writes bytes to path atomically. False with a one-sentence reason in *error.
bool WriteFileAtomically(const std::string& path, std::string_view bytes, std::string* error);
bool WriteFileAtomically(const std::string& path, const std::vector<std::uint8_t>& bytes,
                         std::string* error);

}  // namespace lirenza
