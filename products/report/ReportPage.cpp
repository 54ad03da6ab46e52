#include "products/report/ReportPage.h"

#include "platform/Text.h"
#include "products/outputs/XmlText.h"
#include "products/report/Base64.h"
#include "products/report/PageParts.h"
#include "products/report/RunJson.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace scenedetect {
namespace {

std::string HashSource(std::string_view digits) {
    std::vector<std::uint8_t> bytes(digits.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        std::from_chars(&digits[2 * i], &digits[2 * i] + 2, bytes[i], 16);
    return "'sha256-" + Base64(bytes) + '\'';
}

// The page runs its own scripts and module, and loads nothing but the film beside it.
std::string Policy(bool hasFilm) {
    return "default-src 'none'; script-src " + HashSource(kScriptHash) + " 'wasm-unsafe-eval'; style-src " +
           HashSource(kStyleHash) + "; img-src data: blob:; worker-src blob:" + (hasFilm ? "; media-src 'self'" : "") +
           "; base-uri 'none'; form-action 'none'";
}

std::string Figures(const ReportContent& content) {
    std::vector<std::uint8_t> block;
    for (const auto& [name, bytes] : ColumnsOf(content))
        block.insert(block.end(), bytes.begin(), bytes.end());
    return Base64(block);
}

} // namespace

std::string MakeReportPage(const ReportContent& content) {
    const std::array<std::pair<std::string_view, std::string>, 5> parts = {
        {{"@TITLE@", EscapedXml(Utf8FromWide(WideFromUtf8(content.table.name)))},
         {"@POLICY@", Policy(!content.film.empty())},
         {"@RUN@", RunJson(content)},
         {"@FIGURES@", Figures(content)},
         {"@RULE@", Base64(kRuleModule)}}};
    std::string page;
    std::string_view left = kPageTemplate;
    for (std::size_t mark; (mark = left.find('@')) != left.npos;) {
        page += left.substr(0, mark);
        left.remove_prefix(mark);
        const auto part =
            std::ranges::find_if(parts, [left](const auto& each) { return left.starts_with(each.first); });
        page += part != parts.end() ? part->second : "@";
        left.remove_prefix(part != parts.end() ? part->first.size() : 1);
    }
    return page.append(left);
}

} // namespace scenedetect
