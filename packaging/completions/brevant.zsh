#compdef brevant
# SPDX-License-Identifier: MIT

_arguments -s \
  '(- *)'{-h,--help}'[print the options]' \
  '(-p --port --simulate)'{-p,--port}'[port of the target]:port:(COM1 COM2 COM3 COM4 sim tcp\:// rfc2217\:// /dev/tty[UA][SC]*(N))' \
  '(-p --port)--simulate[the simulated board]' \
  '--connect[without the connect dialog]' \
  '--settings[settings file]:file:_files' \
  '--record[write all that passes the wire]:file:_files' \
  '--record-security[with the security code]' \
  '(- *)--version[print the version]' \
  ':image:_files'
