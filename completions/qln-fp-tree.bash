# Completion of qln-fp-tree for bash; what may stand where, the program says.

_qln_fp_tree() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local command=${COMP_WORDS[1]} of names value offers='' wanted='' of_option=''
  # Bash takes --sourcetree-root=name apart at the sign.
  if [[ $word == '=' ]]; then
    word=
  elif [[ $before == '=' ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  ((COMP_CWORD > 1)) || command=
  while IFS='|' read -r of _ names value _; do
    if [[ -n $command && $names == "$command" ]]; then
      wanted=$value
    elif [[ $of == "$command" ]]; then
      [[ $word != -* && $names == -* ]] || offers+=" $names"
      [[ " $names " != *" $before "* ]] || of_option=$value
    fi
  done < <(qln-fp-tree --completions 2>/dev/null)
  compopt -o filenames 2>/dev/null  # Fails where a script calls this function.
  COMPREPLY=()
  [[ $word == -* || -z $command ]] || offers=
  case ${of_option:-${offers:-$wanted}} in
    ' '*) mapfile -t COMPREPLY < <(compgen -W "$offers" -- "$word") ;;
    ROOT) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
    *FILE*) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    *REPORT* | *.json)
      mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.json' -- "$word") ;;
  esac
}

complete -F _qln_fp_tree qln-fp-tree
