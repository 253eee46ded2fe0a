# Completion of kestrelview for fish: the switches; files come by themselves.

complete -c kestrelview -o clear -d 'Forget what was open when this run ends'
complete -c kestrelview -o debug -d 'Run without wheel and snapping windows'
complete -c kestrelview -l play-pause -d 'Play or pause, in the player that runs'
complete -c kestrelview -l stop -d 'Stop, in the player that runs'
complete -c kestrelview -l next -d 'Next entry of the list, in the player that runs'
complete -c kestrelview -l previous -d 'Previous entry of the list, in the player that runs'
complete -c kestrelview -l help -d 'Tell the usage and end'
complete -c kestrelview -l version -d 'Tell the version and end'
