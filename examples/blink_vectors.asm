; SPDX-License-Identifier: MIT
; The vectors from timer channel 0 ($FFF6) to SWI ($FFFC). Their eight bytes are also the security
; code that the monitor asks for before it lets anyone read the flash. All of them are $C3: that is
; the code which the debugger tries first.
;
; It makes $C3C3 the address of all four interrupts, so this is where the debugger's stop arrives:
; its break signal pulls the IRQ pin low.
	.module	blink_vectors

	.area	STOP (ABS,CODE)
	.org	0xc3c3
on_break::
	bil	on_break	; until the break signal is over
	swi			; into the monitor, whose vector this always is while it watches
	rti			; Go returns to the program

	.area	VECTORS (ABS,CODE)
	.org	0xfff6
	.dw	on_break	; timer 1 channel 0
	.dw	on_break	; PLL
	.dw	on_break	; IRQ pin
	.dw	on_break	; SWI
