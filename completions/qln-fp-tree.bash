# Completion of qln-fp-tree for bash; needs nothing but bash.

_qln_fp_tree() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local command=${COMP_WORDS[1]} options='-r --sourcetree-root'
  # Bash takes --sourcetree-root=name apart at the sign.
  if [[ $word == '=' ]]; then
    word=
  elif [[ $before == '=' ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    local words='check explain preview clean undo keep select sarif page'
    [[ $word == -* ]] && words='-h --help -v --version'
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    return
  fi
  case $command in
    check) options+=' --list' ;;
    preview) options+=' --stat' ;;
    clean) options+=' --keep' ;;
    select) options+=' -o --output-file --code --path --without' ;;
    page) options+=' -o --output-file' ;;
    sarif) options= ;;
  esac
  compopt -o filenames 2>/dev/null  # Fails where a script calls this function.
  case $command:$before:$word in
    *:-r:* | *:--sourcetree-root:*) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
    *:-o:* | *:--output-file:*) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    *:--code:* | *:--path:* | *:--without:*) ;;
    *:*:-*) mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word") ;;
    undo:* | keep:*) ;;
    explain:*) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    *) mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.json' -- "$word") ;;
  esac
}

complete -F _qln_fp_tree qln-fp-tree
