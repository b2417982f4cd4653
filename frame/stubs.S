// The exported names: load the slot, jump through it. Arguments, return address and result pass through untouched.

        .text
        .hidden functionSlotTable
        .set slotOffset, 0

#define ZIM_EXPORT(name)                              \
        .globl name;                                  \
        .type name, @function;                        \
        .balign 16;                                   \
name:   movq functionSlotTable+slotOffset(%rip), %rax; \
        jmp *%rax;                                    \
        .size name, . - name;                         \
        .set slotOffset, slotOffset + 8;

#include "frame/exports.def"

        .section .note.GNU-stack, "", @progbits
