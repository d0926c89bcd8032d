# SPDX-License-Identifier: MIT
# Completion of brevant-target for fish.
complete -c brevant-target -f
complete -c brevant-target -s h -l help -d 'print the options'
complete -c brevant-target -l version -d 'print the version'
complete -c brevant-target -l pace -x -a "bus wire" -d 'of processor and line'
complete -c brevant-target -s d -l device -x -a "gp32 ql" -d 'microcontroller'
complete -c brevant-target -l flash -r -F -d 'S-record file in flash at power-up'
complete -c brevant-target -l demo -d 'demo program in flash at power-up'
complete -c brevant-target -l fault -x -a "lose@ drop-copy@ drop-echo@ flip-echo@ flip@ flip-reply@ lose-reply@ extra@ delay@ cut@ reset@" -d 'of the line'
complete -c brevant-target -l link -r -F -d 'symbolic link to make to the device'
