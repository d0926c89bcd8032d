#compdef brevant-target
# SPDX-License-Identifier: MIT

_brevant_target_faults() {
  local -a kinds=(lose drop-copy drop-echo flip-echo flip flip-reply lose-reply extra delay cut reset)
  compadd -S @ -a kinds
}

_arguments -s \
  '(- *)'{-h,--help}'[print the options]' \
  '(- *)--version[print the version]' \
  '--pace[of processor and line]:pace:(bus wire)' \
  '(-d --device)'{-d,--device}'[microcontroller]:device:(gp32 ql)' \
  '(--demo)--flash[S-record file in flash at power-up]:file:_files' \
  '(--flash)--demo[demo program in flash at power-up]' \
  '*--fault[of the line]:fault:_brevant_target_faults' \
  '--link[symbolic link to make to the device]:file:_files'
