# bash completion for vellora-companion(1)
_vellora_companion()
{
    local current previous words command word options
    current=${COMP_WORDS[COMP_CWORD]}
    previous=${COMP_WORDS[COMP_CWORD - 1]}
    words=(play seek next previous playpause status check import config)
    command=
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case " ${words[*]} " in *" $word "*) command=$word; break ;; esac
    done
    COMPREPLY=()
    case $previous in
        --exchange|--to) compopt -o filenames 2>/dev/null; COMPREPLY=($(compgen -d -- "$current")); return ;;
        --overlay-program) compopt -o filenames 2>/dev/null; COMPREPLY=($(compgen -c -f -- "$current")); return ;;
        --reading) COMPREPLY=($(compgen -W 'none pinyin romaji romaja latin auto' -- "$current")); return ;;
        --reading-with) COMPREPLY=($(compgen -W 'above alone' -- "$current")); return ;;
        --lyrics) COMPREPLY=($(compgen -W 'none lrclib' -- "$current")); return ;;
        --lyrics-server|--language|--font-size|--offset|--patience|--at|--translator|--translator-time) return ;;
    esac
    options='--help --version --exchange --language --font-size --offset --reading --reading-with --lyrics --online --lyrics-server --translator --translator-time --plain --overlay --overlay-program'
    case $command in
        play) options="$options --patience --at" ;;
        seek|next|previous|playpause) options="$options --patience" ;;
        import) options="$options --to --force" ;;
        config) options="$options --write" ;;
        status|check) options="$options --json" ;;
    esac
    if [[ $current == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$current"))
    elif [[ -z $command ]]; then
        compopt -o filenames 2>/dev/null
        COMPREPLY=($(compgen -W "${words[*]}" -- "$current") $(compgen -d -- "$current"))
    elif [[ $command == check || $command == import ]]; then
        compopt -o filenames 2>/dev/null
        COMPREPLY=($(compgen -d -- "$current"))
    fi
}
complete -F _vellora_companion vellora-companion
