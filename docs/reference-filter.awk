# What Doxygen is given of a header: its comments, which are ordinary ones, as comments of what they stand before or behind.
NR == 1 { print "/// \\file"; print "///" }

# The lines at the start, up to the first that is no comment, are about the file.
NR == 1 || about {
    about = /^\/\//
    if (about) {
        sub(/^\/\/ ?/, "/// ")
        sub(/^\/\/\/  +/, "///     ")
        print
        next
    }
}

# A comment behind something goes on in the lines below it, at the same place.
/[^ \/].*[^:]\/\/ / && !/^ *\/\// {
    column = match($0, /\/\/ /)
    sub(/\/\/ /, "///< ")
    print
    next
}
/^ *\/\// {
    at = match($0, /\/\//)
    if (column > 0 && at == column) {
        sub(/\/\/ ?/, "///< ")
        print
        next
    }
    sub(/\/\/ ?/, "/// ")
    # Code in a comment.
    sub(/\/\/\/   +/, "///     ")
}
{ column = 0; print }
