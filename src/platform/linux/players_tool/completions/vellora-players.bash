# bash completion for vellora-players(1)
_vellora_players()
{
    local current command
    current=${COMP_WORDS[COMP_CWORD]}
    command=
    ((COMP_CWORD > 1)) && command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [[ $current == -* ]]; then
        COMPREPLY=($(compgen -W '--help --version' -- "$current"))
    elif [[ -z $command ]]; then
        COMPREPLY=($(compgen -W 'list check' -- "$current"))
    elif [[ $command == check ]]; then
        compopt -o filenames 2>/dev/null
        COMPREPLY=($(compgen -f -X '!*.player' -- "$current") $(compgen -d -- "$current"))
    fi
}
complete -F _vellora_players vellora-players
