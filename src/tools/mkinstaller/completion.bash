# Completion of mkinstaller's verbs and options for bash.

_mkinstaller() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local verb=${COMP_WORDS[1]} words=
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        words="new lint try build pack keygen help --help --version"
    elif [ "$previous" = --output ] || [ "$previous" = --maintainer ]; then
        words=
    elif [ "$previous" = --format ]; then
        mapfile -t COMPREPLY < <(compgen -W "run tar deb rpm" -- "$word")
        return
    elif [ "$previous" = --compression ]; then
        mapfile -t COMPREPLY < <(compgen -W "gzip zstd" -- "$word")
        return
    elif [ "$previous" = --sign ]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
    else
        case $verb in
            new) words="--company --product --id --website --languages --help" ;;
            lint) words="--json --strict --help" ;;
            try) words="--window --keep --help" ;;
            build) words="--output --help" ;;
            pack) words="--format --compression --output --maintainer --sign --with-toolkit --help" ;;
            keygen) words="--help" ;;
            help) words="new lint try build pack keygen help" ;;
        esac
    fi
    case $word in
        -*) ;;
        *) [ "$verb" = help ] || [ "$COMP_CWORD" -eq 1 ] || words= ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    # What is no option is a folder.
    [ ${#COMPREPLY[@]} -gt 0 ] || mapfile -t COMPREPLY < <(compgen -d -- "$word")
}

complete -o filenames -F _mkinstaller mkinstaller
