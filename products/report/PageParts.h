// What the build has made of the page's files: the page with its style and script, to be filled in.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace scenedetect {

/// With @TITLE@, @POLICY@, @RUN@, @FIGURES@ and @RULE@, each once.
extern const std::string_view kPageTemplate;
/// SHA-256 in hexadecimal digits, as the policy needs them.
extern const std::string_view kStyleHash;
extern const std::string_view kScriptHash;
/// The rule as a WebAssembly module.
extern const std::span<const std::uint8_t> kRuleModule;

} // namespace scenedetect
