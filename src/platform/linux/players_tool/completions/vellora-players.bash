# bash completion for vellora-players(1)
_vellora_players()
{
    local current command
    current=${COMP_WORDS[COMP_CWORD]}
    command=
    ((COMP_CWORD > 1)) && command=${COMP_WORDS[1]}
    COMPREPLY=()
    [[ ${COMP_WORDS[COMP_CWORD - 1]} == --wait ]] && return
    if [[ $command == show ]]; then
        COMPREPLY=($(compgen -W '--help --version --wait' -- "$current"))
    elif [[ $current == -* ]]; then
        COMPREPLY=($(compgen -W '--help --version' -- "$current"))
    elif [[ -z $command ]]; then
        COMPREPLY=($(compgen -W 'list check show' -- "$current"))
    elif [[ $command == check ]]; then
        compopt -o filenames 2>/dev/null
        COMPREPLY=($(compgen -f -X '!*.player' -- "$current") $(compgen -d -- "$current"))
    fi
}
complete -F _vellora_players vellora-players
