# bash completion of tarvo, tarvo-process and tarvo-forward: options are those that the program itself names.
_tarvo() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} program=${COMP_WORDS[0]}
    if [[ $previous == --set ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(tarvo-process --help-settings 2>/dev/null |
            sed -nE 's/^\| `([A-Za-z.]+)`.*/\1=/p')" -- "$current")
        compopt -o nospace
    elif [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("$program" --help 2>/dev/null | grep -oE -- '(^|[ ,])--[a-z-]+')" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        compopt -o filenames
    fi
}
complete -F _tarvo tarvo tarvo-process tarvo-forward
