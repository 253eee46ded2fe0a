# Completion of kestrelview for fish: the switches; files come by themselves.

complete -c kestrelview -o clear -d 'Forget what was open when this run ends'
complete -c kestrelview -o debug -d 'Run without wheel and snapping windows'
