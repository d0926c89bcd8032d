# SPDX-License-Identifier: MIT
# Completion of brevant for fish.
function __brevant_devices
    set -l devices /dev/ttyUSB* /dev/ttyACM*
    printf '%s\n' $devices
end

complete -c brevant -s h -l help -d 'print the options'
complete -c brevant -s p -l port -x -a "COM1 COM2 COM3 COM4 sim tcp:// rfc2217:// (__brevant_devices)" -d 'port of the target'
complete -c brevant -l simulate -d 'the simulated board'
complete -c brevant -l connect -d 'without the connect dialog'
complete -c brevant -l settings -r -F -d 'settings file'
complete -c brevant -l record -r -F -d 'write all that passes the wire'
complete -c brevant -l record-security -d 'with the security code'
complete -c brevant -l version -d 'print the version'
