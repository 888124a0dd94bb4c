# fish completion for vellora-players(1)
set -l commands list check show
complete -c vellora-players -f
complete -c vellora-players -n "not __fish_seen_subcommand_from $commands" -a list -d "Each description with its window and its file"
complete -c vellora-players -n "not __fish_seen_subcommand_from $commands" -a check -d "What is wrong with files of descriptions"
complete -c vellora-players -n "not __fish_seen_subcommand_from $commands" -a show -d "What is found in the window in front"
complete -c vellora-players -n '__fish_seen_subcommand_from show' -l wait -x -d "Seconds to bring the player to the front"
complete -c vellora-players -n '__fish_seen_subcommand_from check' -a '(__fish_complete_suffix .player)'
complete -c vellora-players -s h -l help -d "Print help and end"
complete -c vellora-players -l version -d "Print the version and end"
