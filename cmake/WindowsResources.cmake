# add_windows_resources(NAME SCRIPT) creates the target NAME. A program or module that links it contains the
# compiled resource script SCRIPT: a Windows program as its resource section, a POSIX program in the .res format
# as the section ".win32res", from which the simulator reads the resources. It is compiled with the headers of
# the platform, so that a POSIX build needs no compiler for Windows.
#
# Extra arguments are further files that the script includes: those beside it by their names, generated
# ones in CMAKE_CURRENT_BINARY_DIR by their full paths.
find_program(WINDRES i686-w64-mingw32-windres REQUIRED)

function(add_windows_resources name script)
    get_filename_component(script ${script} ABSOLUTE)
    get_filename_component(folder ${script} DIRECTORY)
    set(includes)
    foreach(file ${ARGN})
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${folder})
        list(APPEND includes ${file})
    endforeach()
    if(WIN32)
        set(object ${CMAKE_CURRENT_BINARY_DIR}/${name}.o)
        add_custom_command(
            OUTPUT ${object}
            COMMAND ${WINDRES} -I ${folder} -I ${CMAKE_CURRENT_BINARY_DIR} -O coff ${script} ${object}
            DEPENDS ${script} ${includes}
            VERBATIM)
    else()
        set(res ${CMAKE_CURRENT_BINARY_DIR}/${name}.res)
        set(object ${CMAKE_CURRENT_BINARY_DIR}/${name}.o)
        set(assembly ${CMAKE_CURRENT_BINARY_DIR}/${name}.s)
        file(WRITE ${assembly}.in
             ".section .win32res,\"a\",@progbits\n.incbin \"${res}\"\n.section .note.GNU-stack,\"\",@progbits\n")
        configure_file(${assembly}.in ${assembly} COPYONLY)
        add_custom_command(
            OUTPUT ${object}
            COMMAND ${WINDRES} -I ${folder} -I ${CMAKE_CURRENT_BINARY_DIR}
                -I ${CMAKE_SOURCE_DIR}/simulator/include -O res ${script} ${res}
            COMMAND ${CMAKE_CXX_COMPILER} -c ${assembly} -o ${object}
            DEPENDS ${script} ${includes} ${assembly}
            VERBATIM)
    endif()
    add_custom_target(${name}_object DEPENDS ${object})
    add_library(${name} INTERFACE)
    add_dependencies(${name} ${name}_object)
    set_source_files_properties(${object} PROPERTIES EXTERNAL_OBJECT TRUE GENERATED TRUE)
    target_link_libraries(${name} INTERFACE ${object})
    target_include_directories(${name} INTERFACE ${folder})
endfunction()
