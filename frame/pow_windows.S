// pow of Windows' own C library. mingw-w64 has another, which would be linked instead: it computes in the x87, to as many
// bits as the calling thread has set, which is not the same for all threads.

        .text
        .globl pow
        .def pow; .scl 2; .type 32; .endef
pow:    jmp *__imp_pow(%rip)
