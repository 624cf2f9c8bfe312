# Completion of kalvaro for bash. The name of the installed file must be "kalvaro".

_kalvaro() {
    local wort=${COMP_WORDS[COMP_CWORD]} davor=${COMP_WORDS[COMP_CWORD - 1]} optionen zeile
    COMPREPLY=()
    if [[ $davor == --bild ]]; then
        compopt -o filenames 2>/dev/null
        while IFS= read -r zeile; do
            COMPREPLY+=("$zeile")
        done < <(compgen -f -- "$wort")
        return
    fi
    # What has been said already is of no more use.
    for zeile in --hintergrund --abgleichen --beenden --bild --pruefen --json -h --help -v --version; do
        [[ " ${COMP_WORDS[*]:1:COMP_CWORD-1} " == *" $zeile "* ]] || optionen+=" $zeile"
    done
    while IFS= read -r zeile; do
        COMPREPLY+=("$zeile")
    done < <(compgen -W "$optionen" -- "$wort")
}

complete -F _kalvaro kalvaro
