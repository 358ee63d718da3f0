# Completion of qln-fp-tree for fish.

# The paths that go on from the current word and end in what ENDING matches; an option that the
# word is joined to is taken off first.
function __qln_fp_tree_paths -a ending
    set -l word (commandline -ct | string replace -r -- '^(-[ro]|--(sourcetree-root|output-file)=)' '')
    complete -C "__fish_command_without_completions $word" |
        string match -r -- ".*(?:$ending)\$"
end

set -l all check explain preview clean undo keep select sarif page
set -l none "not __fish_seen_subcommand_from $all"

complete -c qln-fp-tree -f
complete -c qln-fp-tree -n $none -s h -l help -d 'Show the help'
complete -c qln-fp-tree -n $none -s v -l version -d 'Show the version'
complete -c qln-fp-tree -n $none -a check -d 'Check reports and sources before a run'
complete -c qln-fp-tree -n $none -a explain -d 'Tell why markers go or stay'
complete -c qln-fp-tree -n $none -a preview -d 'Show what a cleanup would change'
complete -c qln-fp-tree -n $none -a clean -d 'Check, clean, and look at each result'
complete -c qln-fp-tree -n $none -a undo -d 'Put every backup back'
complete -c qln-fp-tree -n $none -a keep -d 'Restore permissions and owners, delete the backups'
complete -c qln-fp-tree -n $none -a select -d 'Write a report of some codes or paths'
complete -c qln-fp-tree -n $none -a sarif -d 'Print a warnings report as SARIF'
complete -c qln-fp-tree -n $none -a page -d 'Write a page that shows what goes and what stays'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from check preview clean select sarif page' \
    -a '(__qln_fp_tree_paths "\.json|/")'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from explain' -a '(__qln_fp_tree_paths "")'
complete -c qln-fp-tree \
    -n '__fish_seen_subcommand_from check explain preview clean undo keep select page' \
    -s r -l sourcetree-root \
    -xa '(__qln_fp_tree_paths /)' -d 'Root directory of the project'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from select page' -s o -l output-file \
    -xa '(__qln_fp_tree_paths "")' -d 'File to write'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from check' -l list \
    -d 'Name sources that some report does not name'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from preview' -l stat -d 'Print only how much'
# Not behind an option: keep is a command, too.
complete -c qln-fp-tree -n '__fish_seen_subcommand_from clean' -l keep -d 'Then delete the backups'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from select' -l code -x \
    -d 'Diagnostics, such as V501,V600-V699'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from select' -l path -x -d 'Take only such paths'
complete -c qln-fp-tree -n '__fish_seen_subcommand_from select' -l without -x \
    -d 'Leave such paths out'
