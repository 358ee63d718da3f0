# Completion of qln-fp-tree for fish; what may stand where, the program says.

# The paths that go on from the current word and end in what ENDING matches; an option that the
# word is joined to is taken off first.
function __qln_fp_tree_paths -a ending
    set -l word (commandline -ct | string replace -r -- '^(-\w|--[\w-]+=)' '')
    complete -C "__fish_command_without_completions $word" |
        string match -r -- ".*(?:$ending)\$"
end

# What completes a value or words that the help calls so.
function __qln_fp_tree_action -a value
    switch $value
        case ROOT
            echo '(__qln_fp_tree_paths /)'
        case '*FILE*'
            echo '(__qln_fp_tree_paths "")'
        case '*REPORT*' '*.json'
            echo '(__qln_fp_tree_paths "\.json|/")'
    end
end

command -q qln-fp-tree; or exit # This file, not the shell.
set -l rows (qln-fp-tree --completions)
set -l all (string replace -rf '^\|\|(\w+)\|.*' '$1' -- $rows)
set -l none "not __fish_seen_subcommand_from $all"

complete -c qln-fp-tree -f
for row in $rows
    echo $row | read -d '|' -l command often names value help
    set -l action (__qln_fp_tree_action $value)
    if contains -- "$names" $all
        complete -c qln-fp-tree -n $none -a $names -d $help
        complete -c qln-fp-tree -n "__fish_seen_subcommand_from $names" -a "$action"
    else
        set -l option (string split ' ' -- $names |
            string replace -r -- '^--' '--long-option=' |
            string replace -r -- '^-(\w)$' '--short-option=$1')
        test -z "$value"; or set -a option -x -a "$action"
        set -l condition $none
        test -z "$command"; or set condition "__fish_seen_subcommand_from $command"
        complete -c qln-fp-tree -n "$condition" $option -d $help
    end
end
