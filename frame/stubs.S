// The exported names: load the slot, jump through it. Arguments, return address and result pass through untouched.

// They touch no stack and no register that carries an argument, in any calling convention.

#ifdef __ELF__
        .hidden functionSlotTable
        .section .note.GNU-stack, "", @progbits
#define ZIM_FUNCTION(name) .type name, @function
#define ZIM_END(name) .size name, . - name
#else
#define ZIM_FUNCTION(name) .def name; .scl 2; .type 32; .endef
#define ZIM_END(name)
#endif

        .text
        .set slotOffset, 0

#define ZIM_EXPORT(name)                               \
        .globl name;                                   \
        ZIM_FUNCTION(name);                            \
        .balign 16;                                    \
name:   movq functionSlotTable+slotOffset(%rip), %rax; \
        jmp *%rax;                                     \
        ZIM_END(name);                                 \
        .set slotOffset, slotOffset + 8;

#include "frame/exports.def"
