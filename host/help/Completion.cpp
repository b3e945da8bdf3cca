#include "host/help/Completion.h"

#include "host/help/CompletionCases.h"
#include "host/help/FishCompletion.h"
#include "host/help/Template.h"

namespace tavrel::host {
namespace {

// The words that bash gives are as they were typed, quotes and all; no part of them is ever run. It takes
// "--color=auto" for three words.
constexpr std::string_view kBash = R"shell(# Completions of tavrel for bash.
@CASES@
# A word without what quotes it.
_tavrel_plain() {
  local plain=${1//[\"\'\\]/}
  printf '%s' "${plain/#\~\//$HOME/}"
}

_tavrel() {
  local word=${COMP_WORDS[COMP_CWORD]} choices='' commas='' files='' lists='' before='' one i
  local given=() library=()
  [[ $word != '=' ]] || word=''
  for ((i = 1; i < COMP_CWORD; ++i)); do
    [[ ${COMP_WORDS[i]} == '=' ]] || given+=("$(_tavrel_plain "${COMP_WORDS[i]}")")
  done
  _tavrel_answers "${given[@]}"
  COMPREPLY=()
  if [[ -n $commas ]]; then
    before=${word%"${word##*,}"}
    compopt -o nospace 2>/dev/null
  fi
  while IFS= read -r one; do
    one=$before${one%%:*}
    [[ $one == "$before" || $one != "$word"* ]] || COMPREPLY+=("$one")
  done <<<"$choices"
  if [[ -n $lists ]]; then
    compopt -o filenames 2>/dev/null
    word=$(_tavrel_plain "$word")
    while IFS= read -r one; do  # bash parts words at colons
      [[ $one == *:* || $one != "$word"* ]] || COMPREPLY+=("$one")
    done < <("$1" "${library[@]}" -q playlists --all --format tsv 2>/dev/null </dev/null |
      sed 1d | cut -f 2)
  fi
  [[ -z $files ]] || compopt -o default 2>/dev/null
}
complete -F _tavrel tavrel
)shell";

constexpr std::string_view kZsh = R"shell(#compdef tavrel
# Completions of tavrel for zsh.
@CASES@
_tavrel() {
  local word=$PREFIX choices='' commas='' files='' lists='' one
  local -a given library names
  for one in "${(@Q)words[2,CURRENT-1]}"; do
    if [[ $one == --*=* ]]; then
      given+=("${one%%=*}" "${one#*=}")
    else
      given+=("${one/#\~\//$HOME/}")
    fi
  done
  if [[ $word == --*=* ]]; then
    given+=("${word%%=*}")
    compset -P '*='
    word=$PREFIX
  fi
  _tavrel_answers "${given[@]}"
  names=("${(@f)choices%$'\n'}")
  if [[ -n $commas ]]; then
    compset -P '*,'
    compadd -qS ',' -- "${names[@]%%:*}"
  elif [[ -n $choices ]]; then
    _describe value names
  fi
  if [[ -n $lists ]]; then
    names=("${(@f)$("${words[1]}" "${library[@]}" -q playlists --all --format tsv 2>/dev/null \
      </dev/null | sed 1d | cut -f 2)}")
    compadd -- "${names[@]}"
  fi
  [[ -z $files ]] || _files
}
if [[ ${funcstack[1]} == _tavrel ]]; then _tavrel; else compdef _tavrel tavrel; fi
)shell";

}  // namespace

std::string Completion(const CommandSummary& program, std::string_view shell) {
  if (shell == "fish") return FishCompletion(program);
  return Replaced(shell == "bash" ? kBash : kZsh, "@CASES@", CompletionCases(program));
}

}  // namespace tavrel::host
