# Completion of trellan-update in fish. The tool itself tells what a word may become.

# Prints the answer of the tool: what the word is, and a line for each word, behind what stands before it as in "--target=".
function __trellan_update_ask
    set -l typed (commandline --current-process --tokenize --cut-at-cursor)
    set -l tool (string replace --regex '^~/' "$HOME/" -- $typed[1])
    # Variables stay as they are, and a tool that is not there cannot be asked: then the one in the path is.
    if not type --query -- $tool
        set tool trellan-update
    end
    if not type --query -- $tool
        echo
        return
    end
    set -e typed[1]
    set -l raw (commandline --current-token --cut-at-cursor)
    # An open quote is none of the word's letters.
    set -l word (string unescape -- "$raw"; or string unescape -- "$raw'"; or string unescape -- "$raw\"")
    set -l option
    if string match --quiet -- '--*=*' "$word"
        set option (string replace --regex '=.*' '=' -- "$word")
        set word (string replace --regex '^[^=]*=' '' -- "$word")
        set typed $typed (string replace '=' '' -- $option)
    end
    set typed (string replace --regex '^~/' "$HOME/" -- $typed)

    set -l lines ($tool complete -- $typed "$word" 2>/dev/null)
    printf '%s\n' $lines[1]
    set -e lines[1]
    for line in $lines
        printf '%s\n' "$option$line"
    end
end

function __trellan_update_wants
    test (__trellan_update_ask)[1] = $argv[1]
end

# Files and folders are for fish, as far as it shows folders alone.
complete --command trellan-update --no-files --arguments '(__trellan_update_ask)[2..]'
complete --command trellan-update --condition '__trellan_update_wants files' --force-files
complete --command trellan-update --condition '__trellan_update_wants folders' \
    --arguments '(__fish_complete_directories (commandline --current-token --cut-at-cursor) "")'
