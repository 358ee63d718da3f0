# Completion of qln-fp-cleaner for bash; needs nothing but bash.

_qln_fp_cleaner() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} options
  # Bash takes --output-file=name apart at the sign.
  if [[ $word == '=' ]]; then
    word=
  elif [[ $before == '=' ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    options='cleanup merge report'
    [[ $word == -* ]] && options='-h --help -v --version'
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    return
  fi
  case ${COMP_WORDS[1]} in
    cleanup | merge) options='-h --help -o --output-file -r --sourcetree-root -j' ;;
    report) options='-h --help -o --output-file -r --sourcetree-root' ;;
    *) return ;;
  esac
  compopt -o filenames 2>/dev/null  # Fails where a script calls this function.
  case $before in
    -o | --output-file) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    -r | --sourcetree-root) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
    *)
      case $word in
        -*) mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word") ;;
        *) mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.json' -- "$word") ;;
      esac
      ;;
  esac
}

complete -F _qln_fp_cleaner qln-fp-cleaner
