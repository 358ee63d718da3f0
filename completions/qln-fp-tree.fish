# Completion of qln-fp-tree for fish.

# The paths that go on from the current word and end in what ENDING matches; an option that the
# word is joined to is taken off first.
function __qln_fp_tree_paths -a ending
    set -l word (commandline -ct | string replace -r -- '^(-r|--sourcetree-root=)' '')
    complete -C "__fish_command_without_completions $word" |
        string match -r -- ".*(?:$ending)\$"
end

set -l none 'not __fish_seen_subcommand_from check preview undo keep sarif'

complete -c qln-fp-tree -f
complete -c qln-fp-tree -n $none -s h -l help -d 'Show the help'
complete -c qln-fp-tree -n $none -s v -l version -d 'Show the version'
complete -c qln-fp-tree -n $none -a check -d 'Check reports and sources before a run'
complete -c qln-fp-tree -n $none -a preview -d 'Show what a cleanup would change'
complete -c qln-fp-tree -n $none -a undo -d 'Put every backup back'
complete -c qln-fp-tree -n $none -a keep -d 'Restore permissions and owners, delete the backups'
complete -c qln-fp-tree -n $none -a sarif -d 'Print a warnings report as SARIF'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from check preview sarif' \
    -a '(__qln_fp_tree_paths "\.json|/")'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from check preview undo keep' \
    -s r -l sourcetree-root \
    -xa '(__qln_fp_tree_paths /)' -d 'Root directory of the project'
