# cmake -DFOLDER=... -DRESULT=... -P embed.cmake: makes a C++ source out of the files of FOLDER.
#
# The scripts become one, each in a function of its own, which hands on what it exports: a page that is one file
# can import nothing. Their order is that of SCRIPTS; what a script imports stands before it, on one line each. The
# styles are joined, too, in the order in which they overrule each other.
cmake_minimum_required(VERSION 3.21)
set(SCRIPTS fold payload search order address filters keys show drawn covers table wall tree details page start)
set(STYLES base head albums plots songs dialogs media)

set(script "\"use strict\";\n")
foreach(name ${SCRIPTS})
  file(READ ${FOLDER}/${name}.js text)
  set(text "\n${text}")
  string(REGEX MATCHALL "\nexport (async )?(function|class|const) [A-Za-z0-9_]+" exports "${text}")
  list(TRANSFORM exports REPLACE ".* " "")
  list(JOIN exports ", " exports)
  string(REGEX REPLACE "\nimport [^\n]*" "" text "${text}")
  string(REGEX REPLACE "\nexport " "\n" text "${text}")
  if(exports STREQUAL "")
    string(APPEND script "(() => {${text}})();\n")
  else()
    string(APPEND script "const {${exports}} = (() => {${text}return {${exports}};\n})();\n")
  endif()
endforeach()
string(PREPEND script "{\n")
string(APPEND script "}\n")
file(READ ${FOLDER}/page.html markup)
set(style)
foreach(name ${STYLES})
  file(READ ${FOLDER}/${name}.css text)
  string(APPEND style "${text}")
endforeach()
file(READ ${FOLDER}/words.en.txt words)

set(source "// Made by host/page/embed.cmake.\n#include \"host/page/PageSources.h\"\n\nnamespace tavrel::host {\nnamespace {\n\n")
foreach(part markup style script words)
  string(HEX "${${part}}" bytes)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  string(APPEND source "constexpr unsigned char k_${part}[] = {${bytes}};\n")
endforeach()
string(APPEND source "
template <typename Bytes>
std::string_view Text(const Bytes& bytes) noexcept {
  return {reinterpret_cast<const char*>(bytes), sizeof bytes};
}

}  // namespace

PageSources SourcesOfPage() noexcept {
  return {Text(k_markup), Text(k_style), Text(k_script), Text(k_words),\n")
string(SHA256 styleHash "${style}")
string(SHA256 scriptHash "${script}")
string(APPEND source "          \"${styleHash}\",\n          \"${scriptHash}\"};\n}\n\n}  // namespace tavrel::host\n")
file(CONFIGURE OUTPUT ${RESULT} CONTENT "@source@" @ONLY)
