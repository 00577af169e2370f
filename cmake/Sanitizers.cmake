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
    # Instrumented code takes long to optimise; this halves the build, and stacks keep their lines. What the
    # compiler then believes to see of freed memory, the sanitizer knows better.
    add_compile_options(-O1 -g1)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-use-after-free)
    endif()
endif()
