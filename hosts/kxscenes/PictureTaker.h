// Writes pictures of each scene when the run is over.
#pragma once

#include "hosts/files/NamePattern.h"
#include "hosts/files/OutputClaims.h"
#include "hosts/kxscenes/RunListener.h"
#include "hosts/kxscenes/RunProgress.h"
#include "hosts/pictures/StillPicture.h"
#include "hosts/shared/Console.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scenedetect {

/// A frame of a scene: its first, middle or last, or the one so many behind the first (the last, when the
/// scene is shorter).
struct PictureAt {
    enum class Kind { Start, Middle, End, Offset };
    Kind kind = Kind::Start;
    std::int64_t offset = 0;
    std::string word; ///< as it was written

    /// The sample among those from `begin` on and before `end`.
    [[nodiscard]] std::int64_t Of(std::int64_t begin, std::int64_t end) const;
};
/// "start", "middle", "end" or a number; nothing for anything else.
[[nodiscard]] std::optional<PictureAt> ParsePictureAt(const std::string& word);

struct PictureSettings {
    std::string folder; ///< empty: no pictures are wanted
    std::string names = "{name}-{scene}";
    std::vector<PictureAt> at; ///< with more than one, names end with the word
    StillFormat format = StillFormat::Png;
    int width = 0;
    bool replace = false;
};

/// Reads the file again, so it must be one. What can't be decoded costs its picture only, with a warning.
class PictureTaker final : public RunListener {
  public:
    /// All must outlive the object.
    PictureTaker(const PictureSettings& settings, OutputClaims& claims, Console& console,
                 RunProgress& progress)
        : m_settings(settings),
          m_names(settings.names),
          m_claims(claims),
          m_console(console),
          m_progress(progress) {}

    void Begin(const RunFacts& facts) override { m_facts = facts; }
    void Scene(const FoundScene& scene) override;
    void Passed(PictureSample& sample, std::int64_t index) override;
    void End(const RunEnd& end) override;

  private:
    [[nodiscard]] std::string ClaimPath(const NameFields& fields, const PictureAt& at);
    void Write(const AVFrame& frame, int quarters, const std::string& path);

    struct Begun {
        std::int64_t sample;
        NameFields names;
    };

    const PictureSettings& m_settings;
    const NamePattern m_names;
    OutputClaims& m_claims;
    Console& m_console;
    RunProgress& m_progress;
    RunFacts m_facts;
    SampleTable m_places; // all of them
    std::vector<Begun> m_scenes;
};

} // namespace scenedetect
