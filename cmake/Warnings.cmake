# The presets make warnings errors. A newer compiler may have more of them: VH_WERROR=OFF lets them pass.
option(VH_WERROR "Warnings are errors" OFF)

# vh_warnings(TARGET): the warnings of this project.
function(vh_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion
        $<$<BOOL:${VH_WERROR}>:-Werror>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # GCC 12 has false positives in the concatenation of standard strings.
        target_compile_options(${target} PRIVATE -Wno-restrict)
    else()
        # For Clang, -Wconversion includes changes of sign; for GCC it does not.
        target_compile_options(${target} PRIVATE -Wno-sign-conversion)
    endif()
    # GetProcAddress returns one function type for all functions.
    target_compile_options(${target} PRIVATE -Wno-cast-function-type)
endfunction()
