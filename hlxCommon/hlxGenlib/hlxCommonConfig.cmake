# hlxCommon::hlxGenlib is the agent's common library. A program that reads XML or health documents needs the file
# hlxCommon_PARSER_LIBRARY beside it or in the agent's directory.
include(CMakeFindDependencyMacro)
if(NOT WIN32)
    find_dependency(Threads)
endif()
get_filename_component(hlxCommon_PARSER_LIBRARY ${CMAKE_CURRENT_LIST_DIR}/../../../bin/LIBEXPAT.dll ABSOLUTE)
if(NOT EXISTS ${hlxCommon_PARSER_LIBRARY})
    set(hlxCommon_FOUND FALSE)
    set(hlxCommon_NOT_FOUND_MESSAGE "the parser library ${hlxCommon_PARSER_LIBRARY} is missing")
    return()
endif()
include(${CMAKE_CURRENT_LIST_DIR}/hlxCommonTargets.cmake)
