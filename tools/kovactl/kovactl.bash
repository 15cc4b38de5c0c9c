# bash completion for kovactl

_kovactl() {
  local cur=${COMP_WORDS[COMP_CWORD]} command= sub= word i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    case $word in
      --device | --file | --format | --timeout | --tail | --section | -s) ((i++)) ;;
      -*) ;;
      *)
        if [[ -z $command ]]; then
          command=$word
        elif [[ -z $sub ]]; then
          sub=$word
        fi
        ;;
    esac
  done

  if [[ ${COMP_WORDS[COMP_CWORD - 1]} == --device ]]; then
    compopt -o dirnames 2>/dev/null
    return
  fi
  if [[ ${COMP_WORDS[COMP_CWORD - 1]} == --file ]]; then
    compopt -o default 2>/dev/null
    return
  fi
  if [[ ${COMP_WORDS[COMP_CWORD - 1]} == --format ]]; then
    COMPREPLY=($(compgen -W "xml csv markdown" -- "$cur"))
    return
  fi
  if [[ $cur == -* ]]; then
    local options="--json --secondary --device --help"
    case $command in
      '') options+=" --version" ;;
      set) options+=" --file --log --wait --timeout" ;;
      list) options+=" --writable --lists --paths" ;;
      model) options+=" --format" ;;
      add | delete) options+=" --log" ;;
      log) options+=" --tail --follow" ;;
      nvram) options+=" --section" ;;
    esac
    COMPREPLY=($(compgen -W "$options" -- "$cur"))
    return
  fi

  case $command in
    '') COMPREPLY=($(compgen -W "get set add delete list model settings device log nvram tree login completion" -- "$cur")) ;;
    settings) [[ -n $sub ]] || COMPREPLY=($(compgen -W "backup restore" -- "$cur")) ;;
    login) [[ -n $sub ]] || COMPREPLY=($(compgen -W "admin user" -- "$cur")) ;;
    device) [[ -n $sub ]] || COMPREPLY=($(compgen -W "up down reset status" -- "$cur")) ;;
    nvram) [[ -n $sub ]] || COMPREPLY=($(compgen -W "get set unset list" -- "$cur")) ;;
    tree) [[ -n $sub ]] || COMPREPLY=($(compgen -W "get set list" -- "$cur")) ;;
    completion) [[ -n $sub ]] || COMPREPLY=($(compgen -W "bash" -- "$cur")) ;;
    get | list) COMPREPLY=($("${COMP_WORDS[0]}" list --paths "$cur" 2>/dev/null)) ;;
    add | delete) COMPREPLY=($("${COMP_WORDS[0]}" list --paths --lists --writable "$cur" 2>/dev/null)) ;;
    set)
      # "=" ends a word for readline: what follows it is a value.
      [[ $cur == = || ${COMP_WORDS[COMP_CWORD - 1]} == = ]] && return
      COMPREPLY=($("${COMP_WORDS[0]}" list --paths --writable "$cur" 2>/dev/null))
      for i in "${!COMPREPLY[@]}"; do
        [[ ${COMPREPLY[i]} == *. ]] || COMPREPLY[i]+="="
      done
      ;;
  esac
  # More is to be typed after a branch or a "=".
  [[ ${#COMPREPLY[@]} -gt 0 && ${COMPREPLY[0]} == *[.=] ]] && compopt -o nospace 2>/dev/null
  return 0
}

complete -F _kovactl kovactl
