# Completion of zimcc's command lines for bash. The tool itself knows what may come next.
_zimcc() {
  local words cword cur before
  _get_comp_words_by_ref -n = words cword cur
  mapfile -t COMPREPLY < <("${words[0]}" complete "${words[@]:1:cword}" 2>/dev/null)
  ((${#COMPREPLY[@]})) || return 0
  if [[ ${COMPREPLY[0]} == *= ]]; then compopt -o nospace; fi
  # Bash splits words at = and replaces only what comes after it.
  if [[ $cur == *=* && $COMP_WORDBREAKS == *=* ]]; then
    before=${cur%"${cur##*=}"}
    COMPREPLY=("${COMPREPLY[@]#"$before"}")
  fi
}
complete -o default -F _zimcc zimcc
