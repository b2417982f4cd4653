// The demo's photograph, examples/photo.png.

        .section .rodata
        .globl zimPhoto
        .globl zimPhotoEnd
zimPhoto:
        .incbin ZIM_PHOTO
zimPhotoEnd:

        .section .note.GNU-stack, "", @progbits
