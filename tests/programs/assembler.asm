; SPDX-License-Identifier: MIT
; A program in assembler alone: sums a table, multiplies, and ends in "done".
	.module	assembler
	.globl	start
	.globl	done
	.globl	sum
	.globl	product
	.globl	largest

	.area	CSEG (CODE)
start:
	ldhx	#0x0240
	txs
	mov	#0x01,*0x1f	; the watchdog is off
	clr	*sum		; 16 bits, high byte first
	clr	*(sum+1)
	clr	*largest
	ldhx	#table
next:
	lda	,x
	bsr	add
	cmp	*largest
	bls	smaller
	sta	*largest
smaller:
	aix	#1
	cphx	#table_end
	bne	next
	lda	#200
	ldx	#100
	mul
	stx	*product
	sta	*(product+1)
done:
	bra	done

; adds A to sum; keeps A
add:
	psha
	add	*(sum+1)
	sta	*(sum+1)
	lda	*sum
	adc	#0
	sta	*sum
	pula
	rts

table:
	.db	10, 250, 100, 99, 128, 1
table_end:

	.area	CODEIVT (ABS,CODE)
	.org	0xfffe
	.dw	start

	.area	DSEG (PAG)
sum:
	.ds	2		; 588 = $024C
product:
	.ds	2		; 20000 = $4E20
largest:
	.ds	1		; 250
