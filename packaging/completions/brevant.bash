# SPDX-License-Identifier: MIT
# Completion of brevant for bash.
_brevant() {
  local word=$2 before=$3
  local options="-h --help -p --port --simulate --connect --settings --record --record-security --version"
  local ports="COM1 COM2 COM3 COM4 sim tcp:// rfc2217:// $(compgen -G '/dev/tty[UA][SC]*')"
  case $before in
    -p | --port) COMPREPLY=($(compgen -W "$ports" -- "$word")) ;;
    *)
      case $word in
        -*) COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
        *)
          compopt -o filenames
          COMPREPLY=($(compgen -f -- "$word"))
          ;;
      esac
      ;;
  esac
}
complete -F _brevant brevant
