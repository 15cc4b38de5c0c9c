# bash completion for kovactl, which itself knows what may follow

_kovactl() {
  local cur=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  case $previous in
    --device | --dir)
      compopt -o dirnames 2>/dev/null
      return
      ;;
    --file)
      compopt -o default 2>/dev/null
      return
      ;;
  esac
  mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
  # "=" ends a word for readline: only what follows it is replaced.
  [[ $cur == = || $previous == = ]] && COMPREPLY=("${COMPREPLY[@]#*=}")
  # More is to be typed after a branch or a "=".
  [[ ${#COMPREPLY[@]} -gt 0 && ${COMPREPLY[0]} == *[./=] ]] && compopt -o nospace 2>/dev/null
  return 0
}

complete -F _kovactl kovactl
