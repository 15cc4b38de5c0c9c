#compdef kovactl
# zsh completion for kovactl, which itself knows what may follow

_kovactl() {
  local -a found open whole
  case ${words[CURRENT - 1]} in
    --device | --dir) _directories; return ;;
    --file) _files; return ;;
  esac
  found=("${(@f)$(${words[1]} complete -- "${(@)words[2,CURRENT]}" 2>/dev/null)}")
  # More is to be typed after a branch or a "=".
  open=(${(M)found:#*[./=]})
  whole=(${found:#*[./=]})
  compadd -S '' -a open
  compadd -a whole
}

if [[ ${funcstack[1]} == _kovactl ]]; then _kovactl; else compdef _kovactl kovactl; fi
