// What the media libraries of this build bring to the command line, and what it lacks without them.
#pragma once

#include <span>
#include <string>

namespace scenedetect {

/// Before a run: their messages are the program's from now on.
void PrepareLibraries();
/// Lines for --version.
[[nodiscard]] std::string LibraryNotes();
/// Of the help text: which input is read, up to the comma before the standard input.
extern const char* const kInputNotes;
/// The heading of the options for what is cut from the input, and what clips are made.
extern const char* const kClipGroup;
extern const char* const kClipNotes;

/// An option that this build cannot follow: it is not in the help text, and whoever gives it is told why.
struct LackedOption {
    const char* name;
    const char* advice; ///< what this build does not have, and what to do instead
};
[[nodiscard]] std::span<const LackedOption> LackedOptions();

} // namespace scenedetect
