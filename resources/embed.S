/* The compiled resources as read-only data of the client. */
    .section .rodata
    .balign 4
    .hidden vlxsltResourcesBegin
    .hidden vlxsltResourcesEnd
    .global vlxsltResourcesBegin
    .global vlxsltResourcesEnd
vlxsltResourcesBegin:
    .incbin IMAGE
vlxsltResourcesEnd:
    .byte 0
    .section .note.GNU-stack, "", %progbits
