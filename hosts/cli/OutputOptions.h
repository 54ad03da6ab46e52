// The options of kxscenes that say what is made of the scenes, and of which part of the input.
#pragma once

#include "running/batch/RunPlan.h"

#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace scenedetect {

class OutputOptions {
  public:
    /// `settings` is filled by parsing, and must outlive the object.
    explicit OutputOptions(BatchSettings& settings) : m_settings(settings) {}

    /// Adds the options; the object must outlive the parsing of `app`.
    void AddTo(CLI::App& app);
    /// Settles what several options tell once everything was parsed, as lists and formats. What is wrong, in
    /// one line; empty when nothing is.
    [[nodiscard]] std::string Check();

  private:
    void AddLists(CLI::App& app);
    void AddClips(CLI::App& app);
    void AddRange(CLI::App& app);
    void AddTuning(CLI::App& app);
    [[nodiscard]] std::string MatchFormats();
    [[nodiscard]] std::string FindMissing() const;
    [[nodiscard]] bool WantsFrames() const;
    [[nodiscard]] std::string FindBeyondStats() const;
    [[nodiscard]] std::string FindBeyondList() const;
    [[nodiscard]] std::string FindBeyondPart() const;

    BatchSettings& m_settings;
    std::vector<std::string> m_listPaths;   // -o, and
    std::vector<std::string> m_formatNames; // --format: matched when both are known
    bool m_choosesRule = false;
    bool m_choosesPictures = false;
    bool m_overwrites = false;
};

/// Of the help text: what these options need said about them.
[[nodiscard]] std::string OutputNotes();

} // namespace scenedetect
