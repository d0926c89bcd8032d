#compdef brevant-cli
# SPDX-License-Identifier: MIT

_brevant_cli_commands() {
  local -a commands=(
    'info:device, port and security'
    'regs:show the registers'
    'set:change PC, SP, HX, A, CCR, the MCU'\''s PTA, T1SC.PS or PTA.3 (VALUE hex), or a variable (as in C)'
    'read:show memory (COUNT hex, default 10)'
    'write:write bytes to RAM or registers'
    'fill:fill a block with a 16-bit word'
    'move:copy a block in 16-bit words'
    'reset:reset the target and send its security code'
    'disasm:disassemble (default\: 10 lines from PC)'
    'asm:assemble one instruction into memory'
    'break:set a breakpoint, or list them'
    'delete:delete breakpoints'
    'mode:kind of breakpoints'
    'step:run N instructions (decimal, default 1)'
    'over:the same, but calls count as one instruction'
    'line-step:to the next line of source, into calls that have lines'
    'line-over:the same, over all calls'
    'out:run until the function at PC has returned'
    'go:run (from ADDR) and wait for the stop'
    'until:run to ADDR and wait for the stop'
    'run:run (from ADDR) without waiting'
    'stop:stop the running target with a break signal'
    'wait:wait for a stop'
    'nstep:N-step until N steps are exceeded, or a breakpoint'
    'trace:run N instructions, show the last 128 and write trace.txt; or all, or where cycles went'
    'fileio:bind number files to the slots of a program, and run it with them'
    'print:value of an expression as in C\: table[3], p->next, count + 1; 10 is decimal, 0x10 is not'
    'print/x:the same in hexadecimal'
    'locals:parameters and variables of the function at PC'
    'where:the functions that the program is in, the innermost first'
    'chip:the MCU'\''s registers with their values, of a group, or one with its fields'
    'load:load an image\: RAM is written, flash compared'
    'check:look for what keeps an image from working'
    'verify:compare target memory with an image'
    'save:read memory out to .s19, .hex or .bin'
    'toolchain:whose debug information a load reads (stored)'
    'symbols:read a symbol file, or a .cdb or .map, without a transfer'
    'lookup:all symbols of a name or at an address'
    'list:what is known, or what of it has PART in its name'
    'line:the source line of an address'
    'macro:run a macro file'
    'mass-erase:erase all flash'
    'erase:erase the flash pages of a range'
    'program:program an image into flash; --erase erases the pages that it needs'
    'flash:bring flash to an image\: erases and programs only what differs, and verifies'
    'program-bytes:program a few flash bytes'
    'program-irq:program the IRQ vector that lets stop work'
    'help:this list, or one command'
    'report:save versions, settings and the last of the wire as a text'
    'quit:leave; the target keeps its state'
  )
  _describe command commands
}

_brevant_cli_faults() {
  local -a kinds=(lose drop-copy drop-echo flip-echo flip flip-reply lose-reply extra delay cut reset)
  compadd -S @ -a kinds
}

_arguments -s \
  '(- *)'{-h,--help}'[print the options and commands]' \
  '(-p --port)'{-p,--port}'[port of the target]:port:(COM1 COM2 COM3 COM4 sim tcp\:// rfc2217\:// /dev/tty[UA][SC]*(N))' \
  '(-d --device)'{-d,--device}'[microcontroller]:device:(gp32 ql)' \
  '(-s --security)'{-s,--security}'[security code, or @ and an image]:code: ' \
  '--no-security[send no security code]' \
  '--settings[settings file]:file:_files' \
  '--record[write all that passes the wire]:file:_files' \
  '--record-security[with the security code]' \
  '--pace[of the simulated board]:pace:(instant bus wire)' \
  '--timeout[for each wait]:seconds: ' \
  '*--fault[of the simulated line]:fault:_brevant_cli_faults' \
  '--demo[demo program in the simulated flash]' \
  '--json[one JSON object a command]' \
  '(-q --quiet)'{-q,--quiet}'[errors only]' \
  '--yes[answer every question with yes]' \
  '*-x[run the commands of a file]:file:_files' \
  '(- *)--version[print the version]' \
  '*:command:_brevant_cli_commands'
