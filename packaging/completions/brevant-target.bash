# SPDX-License-Identifier: MIT
# Completion of brevant-target for bash.
_brevant_target() {
  local word=$2 before=$3
  local options="-h --help --version --pace -d --device --flash --demo --fault --link"
  case $before in
    -d | --device) COMPREPLY=($(compgen -W "gp32 ql" -- "$word")) ;;
    --pace) COMPREPLY=($(compgen -W "bus wire" -- "$word")) ;;
    --fault)
      compopt -o nospace
      COMPREPLY=($(compgen -S @ -W "lose drop-copy drop-echo flip-echo flip flip-reply lose-reply extra delay cut reset" -- "$word"))
      ;;
    --flash | --link)
      compopt -o filenames
      COMPREPLY=($(compgen -f -- "$word"))
      ;;
    *) COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
  esac
}
complete -F _brevant_target brevant-target
