# fish completion for vellora-companion(1)
set -l commands play seek next previous playpause status check import config
complete -c vellora-companion -f
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a '(__fish_complete_directories)'
complete -c vellora-companion -n '__fish_seen_subcommand_from check import' -a '(__fish_complete_directories)'
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a play -d "Play a song of the library"
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a seek -d "Go to a place in the song"
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a next -d "The next song"
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a previous -d "The song's beginning, or the song before"
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a playpause -d "Pause, or go on"
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a status -d "Say what plays and what the overlay says"
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a check -d "Say what a folder of lyrics lacks"
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a import -d "Write a folder's songs as clean LRC pairs"
complete -c vellora-companion -n "not __fish_seen_subcommand_from $commands" -a config -d "Say which settings hold, and from where"
complete -c vellora-companion -s h -l help -d "Print help and end"
complete -c vellora-companion -l version -d "Print the version and end"
complete -c vellora-companion -l exchange -x -a '(__fish_complete_directories)' -d "The exchange folder, named Vellora"
complete -c vellora-companion -l language -x -d "The language of translations to prefer"
complete -c vellora-companion -l font-size -x -d "Of the captions in points"
complete -c vellora-companion -l offset -x -d "Move the captions down, in points"
complete -c vellora-companion -l plain -d "Lines of text even on a terminal"
complete -c vellora-companion -l overlay -d "Start the overlay, or point the running one here"
complete -c vellora-companion -l overlay-program -r -F -d "Start this program as the overlay"
complete -c vellora-companion -n '__fish_seen_subcommand_from play seek next previous playpause' -l patience -x -d "Seconds to wait for the effect"
complete -c vellora-companion -n '__fish_seen_subcommand_from play' -l at -x -d "Where to begin"
complete -c vellora-companion -n '__fish_seen_subcommand_from import' -l to -x -a '(__fish_complete_directories)' -d "The folder to write to"
complete -c vellora-companion -n '__fish_seen_subcommand_from import' -l force -d "Replace files that are there"
complete -c vellora-companion -n '__fish_seen_subcommand_from config' -l write -d "Make the settings' file where there is none"
