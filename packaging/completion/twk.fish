# Completion of twk for fish. The program itself knows what fits.
function __twk_complete
    set -l words (commandline -opc) (commandline -ct)
    set -l program $words[1]
    set -l given (string unescape -- $words[2..-1])
    for line in ($program __complete $given 2>/dev/null)
        switch $line
            case FILES
                __fish_complete_path (commandline -ct)
            case FOLDERS
                __fish_complete_directories (commandline -ct)
            case '*'
                echo $line
        end
    end
end
complete -c twk -f -a '(__twk_complete)'
