# Completion of qln-fp-tree for bash; needs nothing but bash.

_qln_fp_tree() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local words='check preview undo keep sarif'
  # Bash takes --sourcetree-root=name apart at the sign.
  if [[ $word == '=' ]]; then
    word=
  elif [[ $before == '=' ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    [[ $word == -* ]] && words='-h --help -v --version'
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    return
  fi
  compopt -o filenames 2>/dev/null  # Fails where a script calls this function.
  case ${COMP_WORDS[1]}:$before:$word in
    [!s]*:-r:* | [!s]*:--sourcetree-root:*)  # All but sarif.
      mapfile -t COMPREPLY < <(compgen -d -- "$word")
      ;;
    [!s]*:*:-*)
      mapfile -t COMPREPLY < <(compgen -W '-r --sourcetree-root' -- "$word")
      ;;
    check:* | preview:* | sarif:*)
      mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.json' -- "$word")
      ;;
  esac
}

complete -F _qln_fp_tree qln-fp-tree
