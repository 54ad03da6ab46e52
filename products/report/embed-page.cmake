# Makes a C++ source of the report's page: PAGE with STYLE, the joined MODULES and those of its WORKER in their places,
# and of the module RULE.
#   cmake -D PAGE=... -D STYLE=... -D MODULES=... -D WORKER=... -D RULE=... -D OUTPUT=... -P embed-page.cmake
# Modules import on single lines, and export at the beginning of lines; joined they are one.
cmake_minimum_required(VERSION 3.25)

function(join_modules name)
  set(script "")
  foreach(module ${ARGN})
    file(READ ${module} text)
    string(REGEX REPLACE "(^|\n)import [^\n]*" "\\1" text "${text}")
    string(REGEX REPLACE "(^|\n)export " "\\1" text "${text}")
    # What only people need goes: comments that are whole lines, and below, spaces before lines.
    string(REGEX REPLACE "\n *//[^\n]*" "" text "\n${text}")
    string(APPEND script "${text}")
  endforeach()
  set(${name} "${script}" PARENT_SCOPE)
endfunction()

file(READ ${PAGE} page)
file(READ ${STYLE} style)
join_modules(script ${MODULES})
join_modules(worker ${WORKER})
foreach(part style script worker)
  string(REGEX REPLACE "\n[\n ]*" "\n" ${part} "${${part}}")
  if("${${part}}" MATCHES "</(style|script)|<!--|@[A-Z]+@")
    message(FATAL_ERROR "the ${part} of the report has ${CMAKE_MATCH_0}, which the page can't hold")
  endif()
  string(SHA256 ${part}_hash "${${part}}")
  string(TOUPPER ${part} name)
  string(REPLACE "@${name}@" "${${part}}" page "${page}")
endforeach()

# As numbers, since compilers limit the length of text.
function(append_bytes name hex)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
  string(REGEX REPLACE "(0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,)" "\\1\n" bytes "${bytes}")
  set(source "${source}constexpr std::uint8_t ${name}[] = {\n${bytes}};\n" PARENT_SCOPE)
endfunction()
set(source "")
string(HEX "${page}" hex)
append_bytes(kPageBytes "${hex}")
file(READ ${RULE} hex HEX)
append_bytes(kRuleBytes "${hex}")
file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT "#include \"products/report/PageParts.h\"

namespace scenedetect {
namespace {

${source}
} // namespace

const std::string_view kPageTemplate(reinterpret_cast<const char*>(kPageBytes), sizeof kPageBytes);
const std::string_view kStyleHash = \"${style_hash}\";
const std::string_view kScriptHash = \"${script_hash}\";
const std::span<const std::uint8_t> kRuleModule = kRuleBytes;

} // namespace scenedetect
")
