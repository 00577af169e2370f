# VH_SANITIZE=address builds everything with AddressSanitizer and UBSan, =thread with ThreadSanitizer.
if(VH_SANITIZE STREQUAL "address")
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(VH_SANITIZE STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(NOT VH_SANITIZE STREQUAL "")
    message(FATAL_ERROR "VH_SANITIZE is 'address', 'thread' or empty, not '${VH_SANITIZE}'")
endif()
if(VH_SANITIZE)
    # Lower optimisation halves the build time of instrumented code and keeps stack traces readable. Its warnings
    # about freed memory are false; the sanitizer finds the true ones.
    add_compile_options(-O1 -g1)
    add_compile_definitions(VH_SANITIZED)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-use-after-free)
    endif()
endif()
