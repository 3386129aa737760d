# Completion of installerctl's verbs and options for bash.

_installerctl() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local verb=${COMP_WORDS[1]} verbs="plan install verify remove status help"
    local common="--json --user --all-users --target --help" words=
    COMPREPLY=()
    case $previous in
        --target) mapfile -t COMPREPLY < <(compgen -d -- "$word"); return ;;
        --user) mapfile -t COMPREPLY < <(compgen -u -- "$word"); return ;;
        --wait) return ;;
    esac
    if [ "$COMP_CWORD" -eq 1 ]; then
        words="$verbs --help --version"
    else
        case $verb in
            install) words="$common --require-host --allow-downgrade --keep-user-files --wait" ;;
            remove) words="$common --dry-run --wait" ;;
            plan | verify | status) words=$common ;;
            help) words=$verbs ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -o filenames -F _installerctl installerctl
