# SPDX-License-Identifier: MIT
# Completion of brevant-cli for bash.
_brevant_cli() {
  local word=$2 before=$3
  local options="-h --help -p --port -d --device -s --security --no-security --settings --record --record-security --pace
    --timeout --fault --demo --json -q --quiet --yes -x --version"
  local commands="
    info regs set read write fill move reset disasm asm break delete mode step over line-step
    line-over out go until run stop wait nstep trace fileio print print/x locals where chip load
    check verify save toolchain symbols lookup list line macro mass-erase erase program flash
    program-bytes program-irq report help quit"
  local ports="COM1 COM2 COM3 COM4 sim tcp:// rfc2217:// $(compgen -G '/dev/tty[UA][SC]*')"
  case $before in
    -p | --port) COMPREPLY=($(compgen -W "$ports" -- "$word")) ;;
    -d | --device) COMPREPLY=($(compgen -W "gp32 ql" -- "$word")) ;;
    --pace) COMPREPLY=($(compgen -W "instant bus wire" -- "$word")) ;;
    --fault)
      compopt -o nospace
      COMPREPLY=($(compgen -S @ -W "lose drop-copy drop-echo flip-echo flip flip-reply lose-reply extra delay cut reset" -- "$word"))
      ;;
    -s | --security | --timeout) COMPREPLY=() ;;
    -x | --settings | --record)
      compopt -o filenames
      COMPREPLY=($(compgen -f -- "$word"))
      ;;
    *)
      case $word in
        -*) COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
        *) COMPREPLY=($(compgen -W "$commands" -- "$word")) ;;
      esac
      ;;
  esac
}
complete -F _brevant_cli brevant-cli
