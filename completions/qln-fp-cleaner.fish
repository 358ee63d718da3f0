# Completion of qln-fp-cleaner for fish.

# The paths that go on from the current word and end in what ENDING matches; an option that the
# word is joined to is taken off first.
function __qln_fp_paths -a ending
    set -l word (commandline -ct | string replace -r -- '^(--[a-z-]+=|-[a-z])' '')
    complete -C "__fish_command_without_completions $word" |
        string match -r -- ".*(?:$ending)\$"
end

set -l none 'not __fish_seen_subcommand_from cleanup merge report'
set -l any '__fish_seen_subcommand_from cleanup merge report'

complete -c qln-fp-cleaner -f
complete -c qln-fp-cleaner -s h -l help -d 'Show the help'
complete -c qln-fp-cleaner -n $none -s v -l version -d 'Show the version'
complete -c qln-fp-cleaner -n $none -a cleanup -d 'Remove the redundant markers from the sources'
complete -c qln-fp-cleaner -n $none -a merge -d 'Merge reports into one structured report'
complete -c qln-fp-cleaner -n $none -a report -d 'Write the warnings report'
complete -c qln-fp-cleaner -n $any -a '(__qln_fp_paths "\.json|/")'
complete -c qln-fp-cleaner -n $any -s o -l output-file -rF -d 'Report to write'
complete -c qln-fp-cleaner -n $any -s r -l sourcetree-root -xa '(__qln_fp_paths /)' \
    -d 'Root directory of the project'
complete -c qln-fp-cleaner -n '__fish_seen_subcommand_from cleanup merge' -s j \
    -d 'Accepted, without effect'
