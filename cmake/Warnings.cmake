# The house's warnings, as errors, on every target that asks for them.
function(house_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # GCC 12 sees overlaps in the concatenation of standard strings where there are none.
        target_compile_options(${target} PRIVATE -Wno-restrict)
    else()
        # Clang counts changes of sign among the conversions, GCC does not.
        target_compile_options(${target} PRIVATE -Wno-sign-conversion)
    endif()
    # GetProcAddress gives one function type for all functions.
    target_compile_options(${target} PRIVATE -Wno-cast-function-type)
endfunction()
