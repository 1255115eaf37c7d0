# bash completion of mvpthost; the program itself lists what can stand in a place.
_mvpthost() {
    local rest=$COMP_LINE word blank stripped last prefix index
    local -a words=()
    # Bash also splits words at = and :, which the program takes as one.
    for ((index = 0; index <= COMP_CWORD; ++index)); do
        word=${COMP_WORDS[index]}
        stripped=${rest#"${rest%%[![:space:]]*}"}
        blank=
        if [[ $stripped != "$rest" ]]; then blank=yes; fi
        if [[ $blank || $index -eq 0 ]]; then words+=("$word"); else words[-1]+=$word; fi
        rest=${stripped#"$word"}
    done
    last=${COMP_WORDS[COMP_CWORD]}
    if [[ $last == [=:] ]]; then last=; fi
    prefix=${words[-1]%"$last"}
    for index in "${!words[@]}"; do
        words[index]=${words[index]//[\\\"\']/}
    done
    mapfile -t COMPREPLY < <("$1" complete -- "${words[@]:1}" 2>/dev/null)
    prefix=${prefix//[\\\"\']/}
    for index in "${!COMPREPLY[@]}"; do
        word=${COMPREPLY[index]#"$prefix"}
        if [[ $word == *= ]]; then compopt -o nospace; fi
        if [[ $last != [\"\']* ]]; then printf -v word %q "$word"; fi
        COMPREPLY[index]=${word//\\=/=}
    done
}
complete -o default -F _mvpthost mvpthost
